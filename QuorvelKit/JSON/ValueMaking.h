// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelKit/JSON/Value.h>

#include <concepts>
#include <iterator>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#ifndef __GLIBCXX__
// The span header of that library declares the concepts of ranges; this one takes longer to
// compile.
#include <ranges>
#endif

namespace quorvelkit {

namespace detail {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

// A pair of a key and a member.
template <class T>
concept KeyedPair = requires(const T& pair) {
  { pair.first } -> JSONKeyText;
  pair.second;
};

// Returns true if a T can be made into a value: it converts to one, or it is an optional or a range
// of such types, or a range of pairs of a key and such a type.
template <class T>
consteval bool makesValue() {
  if constexpr (std::is_convertible_v<const T&, Value>) {
    return true;
  } else if constexpr (isOptional<T>) {
    return makesValue<typename T::value_type>();
  } else if constexpr (std::ranges::input_range<const T>) {
    using Element = std::ranges::range_value_t<const T>;
    if constexpr (KeyedPair<Element>) {
      return makesValue<std::remove_cvref_t<decltype(Element::second)>>();
    } else {
      // A filesystem path is a range of paths.
      return !std::same_as<Element, T> && makesValue<Element>();
    }
  } else {
    return false;
  }
}

}  // namespace detail

/// The ranges that JSON::makeArray accepts: ranges of numbers, texts, values, and of optionals and
/// ranges of these.
template <class R>
concept JSONElements = std::ranges::input_range<R> &&
    detail::makesValue<std::ranges::range_value_t<R>>();

/// The ranges that JSON::makeDictionary accepts: ranges of pairs of a key and one of the same
/// types.
template <class R>
concept JSONMembers = std::ranges::input_range<R> &&
    detail::KeyedPair<std::ranges::range_value_t<R>> &&
    detail::makesValue<std::remove_cvref_t<decltype(std::ranges::range_value_t<R>::second)>>();

namespace detail {

Value makeArray(auto& elements);
Value makeMap(auto& members);

template <class T>
Value makeValue(const T& element) {
  if constexpr (std::is_convertible_v<const T&, Value>) {
    return element;
  } else if constexpr (isOptional<T>) {
    return element ? makeValue(*element) : Value();
  } else if constexpr (KeyedPair<std::ranges::range_value_t<const T>>) {
    return makeMap(element);
  } else {
    return makeArray(element);
  }
}

Value makeArray(auto& elements) {
  ValueArray array;
  if constexpr (std::ranges::sized_range<decltype(elements)>) {
    array.reserve(static_cast<std::size_t>(std::ranges::size(elements)));
  }
  // Some ranges return proxies instead of elements, such as std::vector<bool>.
  for (auto&& element : elements)
    array.push_back(makeValue<std::ranges::range_value_t<decltype(elements)>>(element));
  return Value(std::move(array));
}

Value makeMap(auto& members) {
  ValueMap map;
  if constexpr (std::ranges::sized_range<decltype(members)>) {
    map.reserve(static_cast<std::size_t>(std::ranges::size(members)));
  }
  for (auto&& member : members)
    map.set(KeyView(member.first).text(), makeValue(member.second));
  return Value(std::move(map));
}

}  // namespace detail
}  // namespace quorvelkit
