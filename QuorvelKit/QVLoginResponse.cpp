// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVLoginResponse.h>

namespace quorvelkit {

QVLoginResponse::~QVLoginResponse() = default;

std::optional<std::int64_t> QVLoginResponse::code() const {
  return read<std::int64_t>(QVResponseKey::code);
}
std::optional<std::string> QVLoginResponse::message() const {
  return read<std::string>(QVResponseKey::message);
}
std::optional<std::string> QVLoginResponse::objectId() const {
  return read<std::string>(QVResponseKey::objectId);
}
std::optional<std::string> QVLoginResponse::userToken() const {
  return read<std::string>(QVResponseKey::userToken);
}

}  // namespace quorvelkit
