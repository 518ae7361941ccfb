// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/KeyView.h>

#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace quorvelkit {

class JSONKey;

/// The integer types of an index: all except bool and the character types.
template <class T>
concept JSONIndexInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                           !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                           !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// The types that convert to a key.
template <class T>
concept JSONKeyText = std::is_convertible_v<const T&, KeyView>;

/// Types of an application that convert to an index or a key by a member function `jsonKey()`...
template <class T>
concept JSONKeyByMember = requires(const T& element) {
  { element.jsonKey() } -> std::same_as<JSONKey>;
};
/// ...or by a function `jsonKey(element)` in the type's namespace.
template <class T>
concept JSONKeyByFunction = requires(const T& element) {
  { jsonKey(element) } -> std::same_as<JSONKey>;
};

/// The types that `JSON::operator[]` accepts as a step.
template <class T>
concept JSONSubscriptType =
    JSONIndexInteger<T> || JSONKeyText<T> || JSONKeyByMember<T> || JSONKeyByFunction<T>;

namespace detail {
template <class T>
auto jsonKeyByFunction(const T& element) {
  return jsonKey(element);
}
}  // namespace detail

/// One step of a path: the index of an element or the key of a member. Owns a copy of the key.
class JSONKey {
 public:
  /// The kinds of steps.
  enum class Case { index, key };

  /// Make a step to an element or to a member.
  static JSONKey index(std::int64_t index) { return JSONKey(Case::index, index, {}); }
  static JSONKey key(std::string key) { return JSONKey(Case::key, 0, std::move(key)); }

  /// Converts an index, a text, or a type of an application (JSONSubscriptType).
  template <class T>
  requires(JSONSubscriptType<T> && !std::same_as<T, JSONKey>) JSONKey(const T& element)
      : JSONKey(make(element)) {}

  /// Tells whether the step is an index or a key.
  Case kind() const noexcept { return case_; }
  /// The index; 0 for a key.
  std::int64_t index() const noexcept { return index_; }
  /// The key; empty for an index.
  const std::string& key() const noexcept { return key_; }

  /// Returns this step, so that a JSONKey is a subscript type too.
  JSONKey jsonKey() const { return *this; }

  friend bool operator==(const JSONKey& a, const JSONKey& b) = default;

  /// Converts an integer to an index. A value above INT64_MAX becomes INT64_MAX, which is out of
  /// the range of every array.
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
      return detail::jsonKeyByFunction(element);
    }
  }

  Case case_;
  std::int64_t index_;
  std::string key_;
};

/// The steps from a value to one inside it.
using JSONPath = std::span<const JSONKey>;

/// One step of a path in braces, such as `json[{"points", 0}]`. Converts from the same types as
/// JSONKey, without a copy of the key: valid as long as what it was made from.
class JSONPathStep {
 public:
  /// An index.
  template <JSONIndexInteger I>
  JSONPathStep(I index) noexcept
      : case_(JSONKey::Case::index), index_(JSONKey::clampedIndex(index)) {}
  /// A key.
  template <JSONKeyText T>
  JSONPathStep(const T& key) noexcept : key_(key) {}
  /// The same step as a JSONKey.
  JSONPathStep(const JSONKey& key) noexcept
      : case_(key.kind()), index_(key.index()), key_(key.key()) {}
  /// The step of an application's own type.
  template <class T>
  requires(!JSONIndexInteger<T> && !JSONKeyText<T> && !std::same_as<T, JSONKey> &&
           JSONSubscriptType<T>) JSONPathStep(const T& element)
      : converted_(element) {
    case_ = converted_->kind();
    index_ = converted_->index();
    key_ = converted_->key();
  }
  JSONPathStep(const JSONPathStep&) = delete;
  JSONPathStep& operator=(const JSONPathStep&) = delete;
  ~JSONPathStep() = default;

  /// Whether the step is a key or an index.
  JSONKey::Case kind() const noexcept { return case_; }
  /// The index; 0 for a key.
  std::int64_t index() const noexcept { return index_; }
  /// The key; empty for an index.
  const KeyView& key() const noexcept { return key_; }

 private:
  JSONKey::Case case_ = JSONKey::Case::key;
  std::int64_t index_ = 0;
  KeyView key_{""};
  std::optional<JSONKey> converted_;  // owns the key of an application's own type
};

}  // namespace quorvelkit
