// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace quorvelkit {

/// What a session may be told. Certificates and host names are always verified: no setting turns
/// that off.
struct QUORVELKIT_EXPORT URLSessionConfiguration {
  using TimeInterval = std::chrono::duration<double>;

  /// How long a transfer may stand still, for requests without an interval of their own.
  TimeInterval timeoutIntervalForRequest = std::chrono::seconds(60);
  /// How long a whole transfer may take.
  TimeInterval timeoutIntervalForResource = std::chrono::days(7);
  /// The largest body in bytes, counted after decoding; a longer one fails the task with
  /// URLError::dataLengthExceedsMaximum.
  std::size_t maximumBodySize = std::size_t{256} << 20U;
  /// The most memory in bytes that the document of an answer and the models built of it may take
  /// while a service call makes its response; a call whose answer needs more fails with
  /// URLError::dataLengthExceedsMaximum. A route takes some two bytes for each byte of its body.
  /// The body itself is not counted, nor is a document that an application parses on its own.
  std::size_t maximumDocumentSize = std::size_t{768} << 20U;
  /// A PEM file of the authorities to trust; empty: those of the system.
  std::string caFile;
  /// The proxy as a URL ("http://proxy.example:3128"); empty: none. The environment is not read.
  std::string proxy;

  /// What the shared session is made with: the values above unless setDefault() changed them.
  static URLSessionConfiguration defaultConfiguration();
  /// Call it before the first use of the shared session; later it has no effect on that session.
  static void setDefault(URLSessionConfiguration configuration);
};

}  // namespace quorvelkit
