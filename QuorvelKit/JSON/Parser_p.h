// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/Data.h>

#include <optional>
#include <string>

namespace quorvelkit::detail {

// The largest number of arrays and maps that may be nested in a document.
inline constexpr std::size_t maximumNesting = 512;

// Parses a JSON text (RFC 8259) and returns its value. On failure, returns nothing and sets
// `problem` to a message with the byte offset where parsing stopped. Throws
// MemoryBudget::Exceeded if the document does not fit the memory budget of the thread.
std::optional<Value> parseDocument(const Data& bytes, std::string& problem);

}  // namespace quorvelkit::detail
