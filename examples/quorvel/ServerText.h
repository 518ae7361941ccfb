// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/URL.h>

#include <string>
#include <string_view>

/// Makes text of a server harmless for a terminal: line breaks and tabs become spaces, other
/// control characters (C0, DEL, C1) and bytes that are not UTF-8 become U+FFFD, and controls of the
/// writing direction are removed.
std::string printable(std::string_view text);

/// Prints the body of an answer and a line break on standard output: unchanged into a file or a
/// pipe, as printable() lines on a terminal.
void printBody(std::string_view body);

/// Returns a URL without user information.
std::string urlText(const quorvelkit::URL& url);
