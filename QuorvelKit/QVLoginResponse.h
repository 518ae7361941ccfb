// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <optional>
#include <string>

namespace quorvelkit {

/// The answer to a login. A successful one has objectId() and userToken(), a refused one code()
/// and message(); a member that is missing or of another kind is absent.
class QUORVELKIT_EXPORT QVLoginResponse : public QVBaseResponse {
 public:
  using QVBaseResponse::QVBaseResponse;
  ~QVLoginResponse() override;

  std::optional<std::int64_t> code() const;
  std::optional<std::string> message() const;
  std::optional<std::string> objectId() const;
  /// A secret: the token that opens the backend service.
  std::optional<std::string> userToken() const;
};

}  // namespace quorvelkit
