// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/KeyView.h>

#include <concepts>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quorvelkit {

class JSONKey;

/// The integers that may stand as an index: all but bool and the character types.
template <class T>
concept JSONIndexInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                           !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                           !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// The types that become a key of a map without a detour.
template <class T>
concept JSONKeyText = std::is_convertible_v<const T&, KeyView>;

/// An application's own types that say which index or key they mean: by a member...
template <class T>
concept JSONKeyByMember = requires(const T& element) {
  { element.jsonKey() } -> std::same_as<JSONKey>;
};
/// ...or by a function beside the type.
template <class T>
concept JSONKeyByFunction = requires(const T& element) {
  { jsonKey(element) } -> std::same_as<JSONKey>;
};

/// The types that may stand between the brackets of a JSON value.
template <class T>
concept JSONSubscriptType =
    JSONIndexInteger<T> || JSONKeyText<T> || JSONKeyByMember<T> || JSONKeyByFunction<T>;

namespace detail {
template <class T>
auto foundJSONKey(const T& element) {
  return jsonKey(element);
}
}  // namespace detail

/// One step into a JSON value: an element's index or a member's key.
class JSONKey {
 public:
  enum class Case { index, key };

  static JSONKey index(std::int64_t index) { return JSONKey(Case::index, index, {}); }
  static JSONKey key(std::string key) { return JSONKey(Case::key, 0, std::move(key)); }

  template <class T>
  requires(JSONSubscriptType<T> && !std::same_as<T, JSONKey>) JSONKey(const T& element)
      : JSONKey(make(element)) {}

  Case kind() const noexcept { return case_; }
  /// The index; 0 for a key.
  std::int64_t index() const noexcept { return index_; }
  /// The key; empty for an index.
  const std::string& key() const noexcept { return key_; }

  JSONKey jsonKey() const { return *this; }

  friend bool operator==(const JSONKey& a, const JSONKey& b) = default;

  /// An integer as an index; one beyond 64 signed bits stays beyond every array.
  template <JSONIndexInteger I>
  static constexpr std::int64_t clampedIndex(I index) noexcept {
    if (std::cmp_greater(index, std::numeric_limits<std::int64_t>::max())) {
      return std::numeric_limits<std::int64_t>::max();
    }
    return static_cast<std::int64_t>(index);
  }

 private:
  JSONKey(Case kind, std::int64_t index, std::string key)
      : case_(kind), index_(index), key_(std::move(key)) {}

  template <class T>
  static JSONKey make(const T& element) {
    if constexpr (JSONIndexInteger<T>) {
      return index(clampedIndex(element));
    } else if constexpr (JSONKeyText<T>) {
      return key(std::string(KeyView(element).text()));
    } else if constexpr (requires { element.jsonKey(); }) {
      return element.jsonKey();
    } else {
      return detail::foundJSONKey(element);
    }
  }

  Case case_;
  std::int64_t index_;
  std::string key_;
};

/// The steps from a value to one below it.
using JSONPath = std::span<const JSONKey>;

}  // namespace quorvelkit
