// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/Error.h>

#include <ostream>
#include <utility>

namespace quorvelkit {

struct Error::Fields {
  std::string domain;
  std::int64_t code;
  UserInfo userInfo;

  bool operator==(const Fields&) const = default;
};

Error::Error(std::string domain, std::int64_t code, UserInfo userInfo)
    : fields_(
          std::make_shared<const Fields>(Fields{std::move(domain), code, std::move(userInfo)})) {}

Error Error::described(std::string domain, std::int64_t code, std::string description) {
  UserInfo userInfo;
  userInfo.emplace(localizedDescriptionKey, std::move(description));
  return {std::move(domain), code, std::move(userInfo)};
}

const std::string& Error::domain() const noexcept { return fields_->domain; }
std::int64_t Error::code() const noexcept { return fields_->code; }
const Error::UserInfo& Error::userInfo() const noexcept { return fields_->userInfo; }

std::string Error::localizedDescription() const {
  const auto found = userInfo().find(localizedDescriptionKey);
  if (found != userInfo().end()) return found->second;
  return "The operation could not be completed (" + domain() + " error " + std::to_string(code()) +
         ").";
}

std::optional<std::string> Error::technicalDescription() const {
  const auto found = userInfo().find(technicalDescriptionKey);
  return found == userInfo().end() ? std::nullopt : std::optional(found->second);
}

bool operator==(const Error& a, const Error& b) noexcept {
  return a.fields_ == b.fields_ || *a.fields_ == *b.fields_;
}

std::ostream& operator<<(std::ostream& out, const Error& error) {
  return out << error.domain() << ' ' << error.code() << ": " << error.localizedDescription();
}

}  // namespace quorvelkit
