// SPDX-License-Identifier: Apache-2.0
#include "Failure_p.h"
#include "ValueCore_p.h"

#include <cstring>
#include <string>

namespace quorvelkit::detail {

namespace {

// A short key stands at the front of the bits, in place of payload and node.
constexpr std::size_t longestInlineKey = offsetof(ValueBits, spare);

FailureReason reasonOf(const ValueBits& bits) noexcept {
  return static_cast<FailureReason>(bits.spare[0]);
}

std::string keyOf(const ValueView& view) {
  const ValueBits& bits = ValueCore::bits(view);
  if (bits.tag == ValueTag::longFailure) return ValueCore::cell<TextCell>(view).text;
  char key[longestInlineKey];
  std::memcpy(key, &bits, longestInlineKey);
  return std::string(key, bits.spare[1]);
}

std::string indexMessage(const ValueView& view, const char* rest) {
  const auto index = static_cast<std::int64_t>(ValueCore::bits(view).payload);
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
  ValueBits bits;
  bits.payload = static_cast<std::uint64_t>(index);
  bits.spare[0] = static_cast<std::uint8_t>(reason);
  bits.tag = ValueTag::failure;
  return bits;
}

ValueBits failureBits(FailureReason reason, std::string_view key) {
  ValueBits bits = failureBits(reason);
  if (key.size() <= longestInlineKey) {
    if (!key.empty()) std::memcpy(static_cast<void*>(&bits), key.data(), key.size());
    bits.spare[1] = static_cast<std::uint8_t>(key.size());
  } else {
    bits.payload = ValueCore::payload(new TextCell(std::string(key)));
    bits.tag = ValueTag::longFailure;
  }
  return bits;
}

std::optional<Error> failureError(const ValueView& view) {
  const ValueBits& bits = ValueCore::bits(view);
  const bool unknown = bits.tag == ValueTag::unknown;
  if (!unknown && bits.tag != ValueTag::failure && bits.tag != ValueTag::longFailure) {
    return std::nullopt;
  }
  switch (unknown ? FailureReason::unsupported : reasonOf(bits)) {
    case FailureReason::unsupported:
      break;
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
  const ValueBits& bits = ValueCore::bits(view);
  return (bits.tag == ValueTag::failure || bits.tag == ValueTag::longFailure) &&
         reasonOf(bits) == FailureReason::notExist;
}

}  // namespace quorvelkit::detail
