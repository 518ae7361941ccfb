// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONOptions.h>
#include <QuorvelKit/JSON/ValueView.h>

#include <string>

namespace quorvelkit::detail {

// Appends the JSON text of an array or a map, without recursion. Returns false if the value
// contains a number that is not finite, a text that is not UTF-8, or an unsupported value.
bool writeDocument(const ValueView& value, JSONWritingOptions options, std::string& out);

}  // namespace quorvelkit::detail
