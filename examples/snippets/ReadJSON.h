// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>

#include <string>

/// Returns the sum of the members "price" in a list. Reads views, which is the fastest way; the
/// JSON value keeps them valid.
inline double totalPrice(const quorvelkit::JSON& list) {
  using namespace quorvelkit;
  static constexpr KeyView price = "price";  // hashed by the compiler
  double total = 0;
  const ValueView& view = list.view();
  for (std::size_t i = 0; i < view.size(); ++i)
    total += view.element(i).memberOrNull(price).number().value_or(0);
  return total;
}

/// Returns the members of an object as "key=value", each with a space behind it.
inline std::string summary(const quorvelkit::JSON& object) {
  using namespace quorvelkit;
  std::string text;
  for (JSON::Iterator at = object.begin(); at != object.end(); ++at) {
    const auto [key, value] = *at;
    const Number number = value.numberValue();
    text += key + "=" + (value.number() ? number.text() : value.stringValue()) + " ";
  }
  return text;
}

/// Counts how often each text of a list occurs, in the order of their first occurrence.
inline quorvelkit::OrderedMap<int> countTexts(const quorvelkit::JSON& list) {
  using namespace quorvelkit;
  OrderedMap<int> counts;
  for (JSONIndex at = list.startIndex(); at != list.endIndex(); at = at.next())
    ++counts[list[at].second.stringValue()];
  return counts;
}

/// Increments the number at the end of a path that is known at run time only.
inline void increment(quorvelkit::JSON& document, const std::string& list, int position) {
  using namespace quorvelkit;
  const JSONKey path[] = {JSONKey::key(list), JSONKey::index(position)};
  document.set(JSONPath(path), document[JSONPath(path)].intValue() + 1);
}

/// Parses a price without the rounding of a double. Returns false for "free".
inline bool isPrice(const std::string& text) {
  const quorvelkit::Decimal price = quorvelkit::Decimal::parse(text);
  return !price.isNotANumber() && !price.isNegative();
}
