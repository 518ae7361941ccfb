// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Error.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::detail {

// The reason of a failed read, stored in the null value that the read returned. error() makes the
// Error from it. So a failed read is cheap, as it must be: applications read optional members.
enum class FailureReason : std::uint8_t {
  unsupported,
  indexOutOfBounds,
  notAnArray,
  notADictionary,
  notExist,
};

// Return the bits of a null value with an error about an index or a key. Bits of a key that is too
// long to be stored in them own a reference to a cell.
ValueBits failureBits(FailureReason reason) noexcept;
ValueBits failureBits(FailureReason reason, std::int64_t index) noexcept;
ValueBits failureBits(FailureReason reason, std::string_view key);

// The error of a value; absent if it has none.
std::optional<Error> failureError(const ValueView& view);
bool isNotExist(const ValueView& view) noexcept;

}  // namespace quorvelkit::detail
