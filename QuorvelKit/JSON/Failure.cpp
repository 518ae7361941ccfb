// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Failure_p.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace quorvelkit::detail {

namespace {

// The longest key that is stored in the bits themselves: in the payload and the node. The detail
// holds the reason in its low byte and the length of the key in its high byte.
constexpr std::size_t longestInlineKey = sizeof(std::uint64_t) + sizeof(std::uint32_t);

FailureReason reasonOf(const ValueBits& bits) noexcept {
  return static_cast<FailureReason>(bits.detail() & 0xFFU);
}

std::string keyOf(const ValueView& view) {
  const ValueBits& bits = ValueAccess::bits(view);
  if (bits.tag() == ValueTag::longFailure) return ValueAccess::cell<TextCell>(view).text;
  char key[longestInlineKey];
  const std::uint32_t rest = bits.node();
  std::memcpy(key, &bits.payload, sizeof bits.payload);
  std::memcpy(key + sizeof bits.payload, &rest, sizeof rest);
  return std::string(key, bits.detail() >> 8U);
}

std::string indexMessage(const ValueView& view, const char* rest) {
  const auto index = static_cast<std::int64_t>(ValueAccess::bits(view).payload);
  return "Array[" + std::to_string(index) + rest;
}

std::string keyMessage(const ValueView& view, const char* rest) {
  return "Dictionary[\"" + keyOf(view) + rest;
}

Error makeError(std::int64_t code, std::string message) {
  return Error::described(std::string(ErrorDomain), code, std::move(message));
}

}  // namespace

ValueBits failureBits(FailureReason reason) noexcept { return failureBits(reason, 0); }

ValueBits failureBits(FailureReason reason, std::int64_t index) noexcept {
  return ValueBits::make(static_cast<std::uint64_t>(index), ValueTag::failure, 0,
                         static_cast<std::uint32_t>(reason));
}

ValueBits failureBits(FailureReason reason, std::string_view key) {
  const auto detail = static_cast<std::uint32_t>(reason);
  if (key.size() > longestInlineKey) {
    return ValueBits::make(ValueAccess::payload(makeCell<TextCell>(std::string(key))),
                           ValueTag::longFailure, 0, detail);
  }
  char inlined[longestInlineKey] = {};
  std::copy(key.begin(), key.end(), inlined);
  std::uint64_t front = 0;
  std::uint32_t rest = 0;
  std::memcpy(&front, inlined, sizeof front);
  std::memcpy(&rest, inlined + sizeof front, sizeof rest);
  return ValueBits::make(front, ValueTag::failure, rest,
                         detail | (static_cast<std::uint32_t>(key.size()) << 8U));
}

std::optional<Error> failureError(const ValueView& view) {
  const ValueBits& bits = ValueAccess::bits(view);
  const bool unknown = bits.tag() == ValueTag::unknown;
  if (!unknown && bits.tag() != ValueTag::failure && bits.tag() != ValueTag::longFailure) {
    return std::nullopt;
  }
  switch (unknown ? FailureReason::unsupported : reasonOf(bits)) {
    case FailureReason::unsupported: break;
    case FailureReason::indexOutOfBounds:
      return makeError(ErrorIndexOutOfBounds, indexMessage(view, "] is out of bounds"));
    case FailureReason::notAnArray:
      return makeError(ErrorWrongType, indexMessage(view, "] failure, It is not an array"));
    case FailureReason::notADictionary:
      return makeError(ErrorWrongType, keyMessage(view, "\"] failure, It is not an dictionary"));
    case FailureReason::notExist:
      return makeError(ErrorNotExist, keyMessage(view, "\"] does not exist"));
  }
  return makeError(ErrorUnsupportedType, "It is a unsupported type");
}

bool isNotExist(const ValueView& view) noexcept {
  const ValueBits& bits = ValueAccess::bits(view);
  return (bits.tag() == ValueTag::failure || bits.tag() == ValueTag::longFailure) &&
         reasonOf(bits) == FailureReason::notExist;
}

}  // namespace quorvelkit::detail
