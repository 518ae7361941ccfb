// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvelkit {

/// The response to a QVLoginRequest. After a success it has objectId() and userToken(), after a
/// failure code() and message(). A property is absent if its member is missing or has another type.
class QUORVELKIT_EXPORT QVLoginResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVLoginResponse() override;

  /// The number and the text of the failure.
  std::optional<std::int64_t> code() const;
  std::optional<std::string> message() const;
  /// The identifier of the account.
  std::optional<std::string> objectId() const;
  /// The token for further requests to the backend service. A secret.
  std::optional<std::string> userToken() const;
};

}  // namespace quorvelkit
