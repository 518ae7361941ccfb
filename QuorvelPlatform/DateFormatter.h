// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <string>

namespace quorvelkit {

/// Writes instants as text. Depends on neither the locale nor the time zone of the process.
/// Immutable: safe to use from any threads at once.
class QUORVELKIT_EXPORT DateFormatter {
 public:
  /// A formatter of RFC 3339 texts in UTC, whole seconds: "2017-03-01T14:05:00Z".
  static DateFormatter RFC3339DateFormatter();

  /// The instant as text. Fractions of a second are cut off toward the past.
  std::string string(std::chrono::system_clock::time_point instant) const;

 private:
  DateFormatter() = default;
};

}  // namespace quorvelkit
