// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

#include <cstddef>
#include <cstdint>

namespace quorvelkit::detail {

// What the parser does with the members of a map that has duplicate keys or is large. Both
// functions sort, and count their memory against the memory budget of the thread.

// Removes duplicate keys from the members at the end of `pending`, which begin at `first`. A key
// keeps its first position and its last value. Updates the look-up hints of the document.
void removeDuplicateKeys(GrowingArray<Node>& pending, std::size_t first, Document& document);

// Appends the index of a large map, and the node with the range of the index. The members are the
// last nodes of the document; they begin at `first`.
void appendIndex(Document& document, std::uint32_t first, std::uint32_t count);

}  // namespace quorvelkit::detail
