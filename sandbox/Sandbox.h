// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/BackendService.h"
#include "sandbox/HTTPServer.h"
#include "sandbox/MapData.h"
#include "sandbox/MapService.h"
#include "sandbox/RouteService.h"
#include "sandbox/find/FindService.h"
#include "sandbox/page/PageService.h"

#include <memory>
#include <string>

namespace quorvelkit::sandbox {

/// A local backend on one loopback port: the backend service, the navigation server, the find
/// server, a map style server and a page for people. Applications use it with
/// QVBackendless::setBaseURL(sandbox.url()).
///
///     Sandbox sandbox(MapData::builtInTown());
///     sandbox.start(0);
class Sandbox {
 public:
  explicit Sandbox(std::shared_ptr<const MapData> map, HTTPServer::Log log = nullptr);

  /// Starts the server on a port of 127.0.0.1, 0 for any free one. Returns false if the port is in
  /// use.
  bool start(int port);
  /// The base URL without a slash at the end, such as "http://127.0.0.1:40123". Empty before
  /// start().
  const std::string& url() const { return url_; }
  void stop() { server_.stop(); }

  const RouteService& routes() const { return routes_; }

 private:
  HTTPAnswer answer(const HTTPRequest& request);

  std::string url_;
  BackendService backend_;
  RouteService routes_;
  FindService find_;
  MapService maps_;
  PageService page_;
  HTTPServer server_;
};

}  // namespace quorvelkit::sandbox
