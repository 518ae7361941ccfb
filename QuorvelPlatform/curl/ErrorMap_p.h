// SPDX-License-Identifier: Apache-2.0
// Maps failures of libcurl to errors of this library.
#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit {

/// Returns the URLError code for a transfer that libcurl ended with a failure.
std::int64_t urlErrorCode(CURLcode code, CURL* easy);

/// Returns libcurl's description of the failure with control characters replaced by spaces. If the
/// CA file cannot be used, the text also says why.
std::string networkErrorText(CURLcode code, std::string_view errorBuffer,
                             const std::string& caFile);

}  // namespace quorvelkit
