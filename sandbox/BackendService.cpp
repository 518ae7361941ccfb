// SPDX-License-Identifier: Apache-2.0
#include "sandbox/BackendService.h"

#include <chrono>
#include <random>
#include <string_view>

namespace quorvelkit::sandbox {
namespace {

/// The ids of the application and of the service account with which the library logs in.
constexpr std::string_view applicationId = "5E2C9F14-7A03-41BD-C8E6-0F93D27A61B5";
constexpr std::string_view secretKey = "D41F06A3-92BE-4C57-AB08-6E1D3C5F7092";
constexpr std::string_view accountLogin = "sdk-service@quorvel.example";
constexpr std::string_view accountPassword = "kvm40972";
constexpr std::string_view accountId = "9B1D7C20-63E4-4F0A-8A55-2C7E90D3F418";

/// Returns a text of 36 characters, such as "1B9D6BCD-BBFD-4B2D-9B5D-AB8DFBBD4BED".
std::string randomToken() {
  std::random_device random;
  std::string token = "xxxxxxxx-xxxx-4xxx-8xxx-xxxxxxxxxxxx";
  for (char& c : token) {
    if (c == 'x') c = "0123456789ABCDEF"[random() % 16];
  }
  return token;
}

std::int64_t millisecondsNow() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace

std::optional<HTTPAnswer> BackendService::answer(const HTTPRequest& request,
                                                 const std::string& rootURL) {
  const bool isLogin = request.path == "/v1/users/login";
  const bool isConfiguration = request.path == "/" + std::string(applicationId) +
                                                   "/v1/files/configuration/configuration.json";
  if (!isLogin && !isConfiguration) return std::nullopt;
  if (request.method != (isLogin ? "POST" : "GET")) {
    return HTTPAnswer::failure(405, 405,
                               "This resource does not support the method " + request.method + ".");
  }
  return isLogin ? login(request) : configuration(request, rootURL);
}

HTTPAnswer BackendService::login(const HTTPRequest& request) {
  if (request.header("application-id") != applicationId ||
      request.header("secret-key") != secretKey) {
    return HTTPAnswer::failure(400, 2002, "application id or secret key is wrong");
  }
  if (request.header("application-type") != "REST") {
    return HTTPAnswer::failure(400, 2003, "application type is missing or unknown");
  }
  const JSON body{Data(request.body)};
  const auto login = body["login"].string();
  const auto password = body["password"].string();
  if (!login || !password) {
    return HTTPAnswer::failure(400, 3011, "the body is not a JSON object with login and password");
  }
  if (*login != accountLogin || *password != accountPassword) {
    return HTTPAnswer::failure(401, 3003, "Invalid login or password");
  }
  const std::string token = randomToken();
  {
    const std::lock_guard lock(mutex_);
    tokens_.insert(token);
  }
  return HTTPAnswer::json(JSON::makeDictionary({{"objectId", accountId},
                                                {"ownerId", accountId},
                                                {"user-token", token},
                                                {"email", accountLogin},
                                                {"lastLogin", millisecondsNow()},
                                                {"userStatus", "ENABLED"},
                                                {"___class", "Users"}}));
}

HTTPAnswer BackendService::configuration(const HTTPRequest& request, const std::string& rootURL) {
  {
    const std::lock_guard lock(mutex_);
    if (!tokens_.contains(request.header("user-token"))) {
      return HTTPAnswer::failure(401, 3064, "the user token is missing or not valid: log in first");
    }
  }
  return HTTPAnswer::json(JSON::makeDictionary(
      {{"quorvel-navigation-root-url", rootURL}, {"quorvel-find-root-url", rootURL}}));
}

}  // namespace quorvelkit::sandbox
