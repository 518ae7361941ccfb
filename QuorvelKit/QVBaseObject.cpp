// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVBaseObject.h>
#include <QuorvelPlatform/MemoryPages_p.h>

#include <utility>

namespace quorvelkit {

QVBaseObject::QVBaseObject(std::optional<JSON> json) : json_(std::move(json)) {}
QVBaseObject::~QVBaseObject() = default;

const std::optional<JSON>& QVBaseObject::json() const { return json_; }
void QVBaseObject::setJSON(std::optional<JSON> json) { json_ = std::move(json); }

std::optional<Value> QVBaseObject::getValue(const KeyView& key) const {
  const auto& own = json();
  if (!own) return std::nullopt;
  // Equals (*own)[key].object(), but creates no error for a missing member.
  const ValueView member = own->view().memberOrNull(key);
  if (member.kind() == ValueView::Kind::unsupported) return Value();
  return Value(member);
}

std::optional<JSON> QVBaseObject::child(const KeyView& key) const {
  const auto& own = json();
  if (!own) return std::nullopt;
  const ValueView member = own->view().memberOrNull(key);
  if (member.isNull()) return std::nullopt;
  return JSON(member);
}

void QVBaseObject::preferLargePages(void* block, std::size_t size) noexcept {
  detail::preferLargePages(block, size);
}

}  // namespace quorvelkit
