// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONOptions.h>
#include <QuorvelKit/JSON/ValueView.h>

#include <string>

namespace quorvelkit::detail {

// Appends the JSON text of an array or a map. False when something in it cannot be written: a
// number that is not finite, a text that is not UTF-8, a thing of no JSON kind.
bool writeDocument(const ValueView& value, JSONWritingOptions options, std::string& out);

}  // namespace quorvelkit::detail
