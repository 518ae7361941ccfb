// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <curl/curl.h>

#include <cstdint>

namespace quorvelkit {

/// The code of URLError for a transfer that the network library ended with a failure of its own.
std::int64_t urlErrorCode(CURLcode code, CURL* easy);

}  // namespace quorvelkit
