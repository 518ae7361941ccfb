// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace quorvelkit {

/// The settings of a session. Certificates and host names are always verified; no setting
/// disables that.
struct QUORVELKIT_EXPORT URLSessionConfiguration {
  /// A time in seconds.
  using TimeInterval = std::chrono::duration<double>;

  /// The idle time-out of requests that do not set their own (URLRequest::timeoutInterval).
  TimeInterval timeoutIntervalForRequest = std::chrono::seconds(60);
  /// The longest time of a whole task.
  TimeInterval timeoutIntervalForResource = std::chrono::days(7);
  /// The largest body in bytes, after decoding. A larger one fails the task with
  /// URLError::dataLengthExceedsMaximum.
  std::size_t maximumBodySize = std::size_t{256} << 20U;
  /// The most memory in bytes for the document of an answer and its models while a service call
  /// builds its response. If they need more, the call fails with
  /// URLError::dataLengthExceedsMaximum. A route needs about two bytes per byte of its body. The
  /// body itself is not counted. Documents that a step of the application's response parses are
  /// counted, all others are not.
  std::size_t maximumDocumentSize = std::size_t{768} << 20U;
  /// A PEM file with the trusted certificate authorities. Empty: those of the system.
  std::string caFile = {};
  /// The URL of the proxy, such as "http://proxy.example:3128". Empty: no proxy. Environment
  /// variables are not read.
  std::string proxy = {};

  /// Returns the default settings, which the shared session uses: the values above, or those of
  /// setDefault(). Thread-safe.
  static URLSessionConfiguration defaultConfiguration();
  /// Changes the default settings. Has no effect on the shared session after its first use.
  /// Thread-safe.
  static void setDefault(URLSessionConfiguration configuration);
};

}  // namespace quorvelkit
