// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVFindWireFormat_p.h>

#include <utility>

namespace quorvelkit {

QVCandidate::QVCandidate(std::optional<JSON> json) : QVBaseObject(std::move(json)) {
  if (const auto& own = QVBaseObject::json()) location_ = readLocation(*own);
}

std::optional<std::string> QVCandidate::attribute(const KeyView& key) const {
  const auto all = getValue(QVResponseKey::attributes);
  const auto value = all ? all->member(key) : std::nullopt;
  return value ? strictRead<std::string>(*value) : std::nullopt;
}

std::optional<std::string> QVCandidate::address() const {
  return read<std::string>(QVResponseKey::address);
}
std::optional<double> QVCandidate::score() const { return read<double>(QVResponseKey::score); }
std::optional<ValueMap> QVCandidate::attributes() const {
  return read<ValueMap>(QVResponseKey::attributes);
}
std::optional<std::string> QVCandidate::matchAddress() const {
  return attribute(QVResponseKey::matchAddress);
}
std::optional<std::string> QVCandidate::placeAddress() const {
  return attribute(QVResponseKey::magicKey);
}
std::optional<std::string> QVCandidate::addressType() const {
  return attribute(QVResponseKey::addressType);
}
QVOrigin QVCandidate::origin() const { return readCase<QVOrigin>(QVResponseKey::origin); }
std::optional<std::string> QVCandidate::provider() const {
  return read<std::string>(QVResponseKey::provider);
}
std::optional<double> QVCandidate::rating() const { return read<double>(QVResponseKey::rating); }
std::optional<std::int64_t> QVCandidate::reviewCount() const {
  return read<std::int64_t>(QVResponseKey::reviewCount);
}
std::optional<std::string> QVCandidate::providerUrl() const {
  return read<std::string>(QVResponseKey::providerUrl);
}
std::optional<std::string> QVCandidate::phone() const {
  return read<std::string>(QVResponseKey::phone);
}
std::vector<std::string> QVCandidate::categories() const {
  return read<std::vector<std::string>>(QVResponseKey::categories)
      .value_or(std::vector<std::string>());
}

}  // namespace quorvelkit
