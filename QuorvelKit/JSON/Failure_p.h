// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Error.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvelkit::detail {

// Why a value is null. The error itself is made when it is asked for: a failed read must stay
// cheap, since looking for a member that may be missing is how answers are read.
enum class FailureReason : std::uint8_t {
  unsupported,
  indexOutOfBounds,
  notAnArray,
  notADictionary,
  notExist,
};

ValueBits failureBits(FailureReason reason) noexcept;
ValueBits failureBits(FailureReason reason, std::int64_t index) noexcept;
// The bits own a count when the key is too long to stand in them.
ValueBits failureBits(FailureReason reason, std::string_view key);

std::optional<Error> failureError(const ValueView& view);
bool isNotExist(const ValueView& view) noexcept;

}  // namespace quorvelkit::detail
