// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBaseObject.h>

#include <utility>

namespace quorvelkit {

QVBaseObject::QVBaseObject(std::optional<JSON> json) : json_(std::move(json)) {}
QVBaseObject::~QVBaseObject() = default;

const std::optional<JSON>& QVBaseObject::json() const { return json_; }
void QVBaseObject::setJSON(std::optional<JSON> json) { json_ = std::move(json); }

std::optional<Value> QVBaseObject::getValue(KeyView key) const {
  const auto& own = json();
  if (!own) return std::nullopt;
  return (*own)[key].object();
}

std::optional<JSON> QVBaseObject::child(KeyView key) const {
  if (!json_) return std::nullopt;
  JSON member = (*json_)[key];
  if (member.type() == JSON::Type::null) return std::nullopt;
  return member;
}

}  // namespace quorvelkit
