// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <chrono>
#include <string>

namespace quorvelkit {

/// Formats points in time as text. Does not depend on the locale or the time zone of the process.
/// Immutable and thread-safe.
class QUORVELKIT_EXPORT DateFormatter {
 public:
  /// Returns a formatter for RFC 3339 texts in UTC with whole seconds: "2017-03-01T14:05:00Z".
  static DateFormatter RFC3339DateFormatter();

  /// Formats a point in time. Rounds down to whole seconds.
  std::string string(std::chrono::system_clock::time_point instant) const;

 private:
  DateFormatter() = default;
};

}  // namespace quorvelkit
