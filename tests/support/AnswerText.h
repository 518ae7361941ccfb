// SPDX-License-Identifier: Apache-2.0
// Answers of HTTP/1.1 as they stand on the wire.
#pragma once

#include <cstddef>
#include <string>

namespace quorvelkit::test {

/// The head, the length of the body, and the body.
std::string withLength(const std::string& head, const std::string& body);
/// A body in chunks of that size.
std::string chunked(const std::string& body, std::size_t pieceSize);

}  // namespace quorvelkit::test
