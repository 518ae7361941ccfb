// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVAddress.h>

namespace quorvelkit {

std::optional<std::string> QVAddress::region() const {
  return read<std::string>(QVResponseKey::region);
}
std::optional<std::string> QVAddress::postal() const {
  return read<std::string>(QVResponseKey::postal);
}
std::optional<std::string> QVAddress::matchAddress() const {
  return read<std::string>(QVResponseKey::matchAddress);
}
std::optional<std::string> QVAddress::locationName() const {
  return read<std::string>(QVResponseKey::locationName);
}
std::optional<std::string> QVAddress::address() const {
  return read<std::string>(QVResponseKey::address);
}
std::optional<std::string> QVAddress::countyCode() const {
  return read<std::string>(QVResponseKey::countyCode);
}
std::optional<std::string> QVAddress::postalExtension() const {
  return read<std::string>(QVResponseKey::postalExtension);
}
std::optional<std::string> QVAddress::neighborhood() const {
  return read<std::string>(QVResponseKey::neighborhood);
}
std::optional<std::string> QVAddress::subregion() const {
  return read<std::string>(QVResponseKey::subregion);
}
std::optional<std::string> QVAddress::city() const {
  return read<std::string>(QVResponseKey::city);
}

}  // namespace quorvelkit
