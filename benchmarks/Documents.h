// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace quorvelkit::bench {

/// Returns a route document like those of the navigation server, the same in every run, with about
/// 116 bytes per point. Every tenth point has a turn with a street and spoken texts; every third
/// street has a highway.
std::string routeDocument(std::size_t points);

/// Return bodies of the find server with `count` results.
std::string candidatesDocument(std::size_t count);
std::string suggestionsDocument(std::size_t count);

/// An object with the members "key0", "key1", ..., which are numbers; an array of numbers.
std::string objectDocument(std::size_t members);
std::string arrayDocument(std::size_t elements);

}  // namespace quorvelkit::bench
