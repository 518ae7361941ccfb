// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace quorvelkit::bench {

/// A route of so many points as the navigation server would send it, the same one every time:
/// about 116 bytes a point; one point in ten has a turn with a street, words to say and to notify
/// of, and of these one in three a highway.
std::string routeDocument(std::size_t points);

/// Answers of the find server with so many results.
std::string candidatesDocument(std::size_t count);
std::string suggestionsDocument(std::size_t count);

/// A map of so many members "key0", "key1", ... with numbers, and an array of so many of them.
std::string mapDocument(std::size_t members);
std::string arrayDocument(std::size_t elements);

}  // namespace quorvelkit::bench
