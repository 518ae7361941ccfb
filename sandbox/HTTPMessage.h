// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RouteQuery.h"

#include <QuorvelKit/JSON/JSON.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit::sandbox {

/// A request with decoded path and parameters.
struct HTTPRequest {
  std::string method;
  std::string path;
  QueryParameters parameters;
  std::string body;
  /// Returns the value of a header field, empty if it is missing. Ignores the case of `name`. Valid
  /// until the request is answered.
  std::function<std::string(const std::string& name)> header;
  /// The path with the parameters, as it was received.
  std::string target{};
  /// The header fields, as they were received, sorted by name.
  std::vector<std::pair<std::string, std::string>> fields{};
};

struct HTTPAnswer {
  int status = 200;
  std::string contentType = "application/json";
  std::string body;

  static HTTPAnswer json(const JSON& body, int status = 200);
  /// The error format of all three servers: {"code": ..., "message": ...}.
  static HTTPAnswer failure(int status, int code, const std::string& message);
};

/// Replaces all bytes but printable ASCII characters, for a terminal or a JSON document.
std::string printable(std::string text);

/// Must be thread-safe.
using HTTPHandler = std::function<HTTPAnswer(const HTTPRequest&)>;

}  // namespace quorvelkit::sandbox
