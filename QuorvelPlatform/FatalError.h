// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <string_view>

namespace quorvelkit {

/// Stops the process because of a programming error: writes the message and a line end to standard
/// error, then calls std::abort. Thread-safe.
[[noreturn]] QUORVELKIT_EXPORT void fatalError(std::string_view message) noexcept;

/// The message of fatalError if a required value is absent.
inline constexpr std::string_view unwrappedAbsentValue =
    "unexpectedly found nil while unwrapping an Optional value";

}  // namespace quorvelkit
