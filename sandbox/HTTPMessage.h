// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/RouteQuery.h"

#include <QuorvelKit/JSON/JSON.h>

#include <functional>
#include <string>
#include <string_view>

namespace quorvelkit::sandbox {

/// A request as the services see it: path and parameters are decoded.
struct HTTPRequest {
  std::string method;
  std::string path;
  QueryParameters parameters;
  std::string body;
  /// The value of a header field; empty when it is missing. Names are compared without regard to
  /// case. Valid as long as the request is being answered.
  std::function<std::string(const std::string& name)> header;
};

struct HTTPAnswer {
  int status = 200;
  std::string contentType = "application/json";
  std::string body;

  static HTTPAnswer json(const JSON& body, int status = 200);
  /// {"code": ..., "message": ...}, which all three servers send for what they refuse.
  static HTTPAnswer failure(int status, int code, const std::string& message);
};

/// Answers requests on any threads at once.
using HTTPHandler = std::function<HTTPAnswer(const HTTPRequest&)>;

}  // namespace quorvelkit::sandbox
