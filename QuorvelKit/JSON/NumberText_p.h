// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/ValueView.h>

#include <string>

namespace quorvelkit::detail {

// Append the decimal text of a number in the format of Number::text().
void appendText(std::string& out, double value);
void appendText(std::string& out, std::int64_t value);
void appendText(std::string& out, std::uint64_t value);
void appendText(std::string& out, const Decimal& value);
void appendText(std::string& out, bool value);

}  // namespace quorvelkit::detail
