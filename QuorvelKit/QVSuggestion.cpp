// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVSuggestion.h>

namespace quorvelkit {

std::optional<std::string> QVSuggestion::text() const {
  return read<std::string>(QVResponseKey::text);
}
std::optional<std::string> QVSuggestion::magicKey() const {
  return read<std::string>(QVResponseKey::magicKey);
}
std::optional<bool> QVSuggestion::isCollection() const {
  return read<bool>(QVResponseKey::isCollection);
}
QVOrigin QVSuggestion::origin() const { return readCase<QVOrigin>(QVResponseKey::origin); }
std::optional<std::string> QVSuggestion::provider() const {
  return read<std::string>(QVResponseKey::provider);
}
std::optional<double> QVSuggestion::score() const { return read<double>(QVResponseKey::score); }
std::optional<double> QVSuggestion::rating() const { return read<double>(QVResponseKey::rating); }
std::optional<std::int64_t> QVSuggestion::reviewCount() const {
  return read<std::int64_t>(QVResponseKey::reviewCount);
}
std::optional<std::int64_t> QVSuggestion::price() const {
  return read<std::int64_t>(QVResponseKey::price);
}
std::optional<std::string> QVSuggestion::providerUrl() const {
  return read<std::string>(QVResponseKey::providerUrl);
}
std::optional<std::string> QVSuggestion::menuUrl() const {
  return read<std::string>(QVResponseKey::menuUrl);
}
std::optional<std::string> QVSuggestion::url() const {
  return read<std::string>(QVResponseKey::url);
}
std::optional<std::string> QVSuggestion::phone() const {
  return read<std::string>(QVResponseKey::phone);
}
std::vector<std::string> QVSuggestion::categories() const {
  return read<std::vector<std::string>>(QVResponseKey::categories)
      .value_or(std::vector<std::string>());
}

}  // namespace quorvelkit
