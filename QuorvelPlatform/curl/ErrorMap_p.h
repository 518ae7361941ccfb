// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit {

/// The code of URLError for a transfer that the network library ended with a failure of its own.
std::int64_t urlErrorCode(CURLcode code, CURL* easy);

/// What the network library says of such a failure in its error buffer, in printable characters;
/// for authorities that cannot be read, also why.
std::string networkErrorText(CURLcode code, std::string_view errorBuffer,
                             const std::string& caFile);

}  // namespace quorvelkit
