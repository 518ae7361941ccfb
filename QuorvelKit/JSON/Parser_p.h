// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Data.h>

#include <optional>
#include <string>

namespace quorvelkit::detail {

// The deepest nesting of arrays and maps that a document may have.
inline constexpr std::size_t deepestNesting = 512;

// Reads a JSON document (RFC 8259). On failure returns nothing and sets the problem, a sentence
// with the offset of the byte where reading stopped.
std::optional<Value> parseDocument(const Data& bytes, std::string& problem);

}  // namespace quorvelkit::detail
