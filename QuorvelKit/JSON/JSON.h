// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONError.h>
#include <QuorvelKit/JSON/JSONIndex.h>
#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelKit/JSON/JSONNumericAccessors.h>
#include <QuorvelKit/JSON/JSONOptions.h>
#include <QuorvelKit/JSON/JSONSubscripts.h>
#include <QuorvelKit/JSON/TextEncoding.h>
#include <QuorvelKit/JSON/Value.h>
#include <QuorvelKit/JSON/ValueMaking.h>
#include <QuorvelPlatform/Data.h>
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/URL.h>

#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace quorvelkit {

class JSON;
using JSONMap = OrderedMap<JSON>;

/// A JSON value: parses, reads, changes and writes JSON.
///
///     std::optional<Error> error;
///     JSON json(data, JSONReadingOptions::allowFragments, &error);
///     const double latitude = json[{"points", 0, "lat"}].doubleValue();  // 0 if there is none
///     json.set("visited", true);
///
/// Errors: reads never fail. A subscript that does not fit the data returns a null value with an
/// error(); further subscripts keep that error. Each typed read has two forms: `double_()` is
/// absent unless the value has that type, `doubleValue()` converts and has a default.
///
/// Cost: 16 bytes. Copies are independent values; a copy costs one atomic increment (scalars:
/// none), the first write to it copies one level of the container (copy on write). A value that was
/// read from a document keeps the whole document alive. To read many values fast, use view().
///
/// Threads: const functions are safe to call from several threads at the same time, also on copies
/// of one value. Writing needs exclusive access to that copy.
///
/// Writing: setters and assignments need an lvalue. `json["a"] = 5` would change a temporary copy
/// and does not compile; use `json.set("a", 5)`. Arguments may be parts of the value itself.
class QUORVELKIT_EXPORT JSON : public JSONNumericAccessors<JSON> {
 public:
  /// The types of values; `unknown` stands for an unsupported value.
  enum class Type : int { number, string, bool_, array, dictionary, null, unknown };
  /// The type with a raw value from 0 to 6; absent for other raw values.
  static std::optional<Type> typeFromRawValue(std::int64_t rawValue) noexcept;

  // --- construction

  /// Null.
  JSON() noexcept = default;
  JSON(const JSON&) noexcept = default;
  JSON(JSON&&) noexcept = default;
  JSON& operator=(const JSON&) & noexcept = default;
  JSON& operator=(JSON&&) & noexcept = default;
  ~JSON() = default;

  /// Parses a JSON text (RFC 8259) in UTF-8; skips a byte-order mark at the start. On success,
  /// resets `error`. On failure, the value is null without an error(), and `error` is set: domain
  /// ErrorDomain, code ErrorInvalidJSON. Of members with the same key, the last one sets the value.
  /// Integers that do not fit 64 bits become doubles. Limits: 512 levels of containers, 4 GiB.
  explicit JSON(const Data& data, JSONReadingOptions options = JSONReadingOptions::allowFragments,
                std::optional<Error>* error = nullptr);
  /// Parses a copy of a text. (The constructor from a text makes a string value.)
  static JSON parse(std::string_view text,
                    JSONReadingOptions options = JSONReadingOptions::allowFragments,
                    std::optional<Error>* error = nullptr);

  /// Converts an untyped value, and every type that converts to one: texts, numbers (a `float` is
  /// stored as the double of the same value), booleans, null, optionals of these. An unsupported
  /// value makes the type `unknown`, with the error ErrorUnsupportedType. The conversion of
  /// containers is explicit: `std::vector<JSON>{list}` is a copy of the list, not a list in a list.
  JSON(Value object) noexcept : value_(std::move(object)) { checkSupport(); }
  /// Becomes an owner of the data that the view refers to.
  explicit JSON(const ValueView& object) noexcept : value_(object) { checkSupport(); }
  template <class T>
  requires(!std::same_as<std::remove_cvref_t<T>, JSON> &&
           !std::derived_from<std::remove_cvref_t<T>, ValueView> &&
           std::is_constructible_v<Value, T>) explicit(!std::is_convertible_v<T, Value>)
      JSON(T&& object)
      : JSON(Value(std::forward<T>(object))) {}
  explicit JSON(const std::vector<JSON>& elements);
  explicit JSON(const JSONMap& members);
  /// Make an array or a map from a list in braces. The last pair with a key sets its value.
  static JSON makeArray(std::initializer_list<Value> elements);
  static JSON makeDictionary(std::initializer_list<std::pair<std::string, Value>> members);
  /// Make an array from a range of values, or a map from a range of pairs such as std::map. The
  /// values may be optionals (empty: null) and ranges themselves.
  template <JSONElements R>
  static JSON makeArray(R&& elements) {
    return detail::makeArray(elements);
  }
  template <JSONMembers R>
  static JSON makeDictionary(R&& members) {
    return detail::makeMap(members);
  }
  /// Converts an untyped value; absent if it is an unsupported value.
  static std::optional<JSON> fromRawValue(Value object);
  /// Null.
  static JSON null() { return JSON(); }
  static JSON nullJSON() { return JSON(); }

  // --- type, error, untyped value

  /// The type of the value.
  Type type() const noexcept;
  /// The error of the read or the assignment that made the value null or unknown; otherwise absent.
  std::optional<Error> error() const;
  /// Returns false if error() has the code ErrorNotExist.
  bool exists() const noexcept;

  /// The untyped value; null for the types null and unknown.
  Value object() const noexcept { return Value(view()); }
  Value rawValue() const noexcept { return object(); }
  /// A non-owning reference to the untyped value. Valid until this value is written to or
  /// destroyed.
  const ValueView& view() const noexcept { return value_; }
  /// An unsupported value makes the type `unknown`, with the error ErrorUnsupportedType.
  void setObject(Value object) & noexcept { *this = JSON(std::move(object)); }

  // --- subscripts

  /// Return the element at an index, the member with a key, or the value at the end of a path. On
  /// failure, return null with an error(): ErrorIndexOutOfBounds, ErrorNotExist or ErrorWrongType.
  /// The first step of a path that fails sets the error.
  template <JSONIndexInteger I>
  JSON operator[](I index) const& {
    return JSON(Owned{detail::readElement(value_, JSONKey::clampedIndex(index))});
  }
  JSON operator[](const KeyView& key) const& {
    return JSON(Owned{detail::readMember(value_, key)});
  }
  /// The same for a temporary: moves its reference on. Assign a moved variable before its next use.
  template <JSONIndexInteger I>
  JSON operator[](I index) && {
    return JSON(Owned{detail::moveElement(value_, JSONKey::clampedIndex(index))});
  }
  JSON operator[](const KeyView& key) && { return JSON(Owned{detail::moveMember(value_, key)}); }
  template <JSONSubscriptType T>
  requires(!JSONIndexInteger<T> && !JSONKeyText<T>) JSON operator[](const T& element) const {
    const JSONKey step(element);
    return JSON(Owned{detail::readPath(value_, JSONPath(&step, 1))});
  }
  JSON operator[](std::initializer_list<JSONPathStep> path) const {
    return JSON(Owned{detail::readPath(value_, {path.begin(), path.size()})});
  }
  JSON operator[](JSONPath path) const { return JSON(Owned{detail::readPath(value_, path)}); }

  /// Replace an element, or replace or add a member. Do nothing if this value is not a container of
  /// that kind, if the index is not less than size(), or if the new value has an error(). A
  /// negative index is a programming error.
  template <JSONIndexInteger I>
  void set(I index, const JSON& value) & {
    setElement(JSONKey::clampedIndex(index), value);
  }
  void set(const KeyView& key, const JSON& value) &;
  template <JSONSubscriptType T>
  requires(!JSONIndexInteger<T> && !JSONKeyText<T>) void set(const T& element,
                                                             const JSON& value) & {
    setStep(JSONKey(element), value);
  }
  /// Write to the end of a path. All steps but the last must exist. Do nothing if a step does not
  /// fit or the path is empty. A value with an error() is stored as null.
  void set(std::initializer_list<JSONPathStep> path, const JSON& value) & {
    setAt({path.begin(), path.size()}, value);
  }
  void set(JSONPath path, const JSON& value) &;

  // --- output

  /// Writes the value as a JSON text in UTF-8 and resets `error`. Absent, with `error` set to
  /// ErrorInvalidJSON, if the value is not an array or a map, or if it contains a number that is
  /// not finite, a text that is not UTF-8 or an unsupported value.
  std::optional<Data> rawData(JSONWritingOptions options = JSONWritingOptions::none,
                              std::optional<Error>* error = nullptr) const;
  /// Array and map: the bytes of rawData(), decoded with the encoding; absent if either step fails.
  /// String: its text. Number: decimal text. Boolean or null: its JSON text. Unknown: absent.
  std::optional<std::string> rawString(
      TextEncoding encoding = TextEncoding::utf8,
      JSONWritingOptions options = JSONWritingOptions::prettyPrinted) const;
  /// The pretty-printed rawString(), or "unknown".
  std::string description() const;
  std::string debugDescription() const { return description(); }

  // --- iteration

  /// An array is a collection of pairs of position (as decimal text) and element, a map is a
  /// collection of pairs of key and member, every other value is an empty collection. A loop
  /// iterates over the value as it was at its start, even if the value is written to in the loop.
  /// Each dereference makes a new pair.
  class Iterator;
  using value_type = std::pair<std::string, JSON>;
  using const_iterator = Iterator;
  Iterator begin() const noexcept;
  Iterator end() const noexcept;
  JSONIndex startIndex() const noexcept;
  JSONIndex endIndex() const noexcept;
  /// The pair at an index; ("", null) at a null index. An index out of range is a programming
  /// error.
  value_type operator[](JSONIndex index) const;
  /// The number of elements or members; 0 for every other value.
  std::size_t size() const noexcept { return value_.size(); }
  bool empty() const noexcept { return size() == 0; }

  // --- typed reads and writes; see JSONNumericAccessors for the number types

  /// The optional form is absent unless the value has the type. Setting an absent value makes this
  /// value null: `setString({})` does, `setStringValue({})` sets "".
  std::optional<bool> bool_() const noexcept { return value_.boolean(); }
  void setBool(std::optional<bool> value) & { setOptional(value); }
  /// Number: true if it is not zero. String: true if its first character after white space, a sign
  /// and zeros is one of YyTt1-9. Otherwise false.
  bool boolValue() const;
  void setBoolValue(bool value) & { setObject(value); }

  /// Absent unless the value is a string.
  std::optional<std::string> string() const;
  void setString(std::optional<std::string> value) & { setOptional(std::move(value)); }
  /// String: its text. Number: decimal text. Boolean: "true" or "false". Otherwise "".
  std::string stringValue() const;
  void setStringValue(std::string value) & { setObject(std::move(value)); }

  /// Present for numbers and booleans.
  std::optional<Number> number() const { return value_.storedNumber(); }
  void setNumber(std::optional<Number> value) & { setOptional(value); }
  /// String: the decimal number at its start (see Decimal::parse), zero if there is none. Number
  /// and boolean: its number. Otherwise the double 0.
  Number numberValue() const;
  void setNumberValue(const Number& value) & { setObject(value); }

  /// Present if the value is null.
  std::optional<Null> null_() const noexcept;
  /// Makes the value null, with either argument.
  void setNull(std::optional<Null>) & { setObject(Null()); }

  /// Percent-encodes a string for a query and parses it as a URL; absent for other types and on
  /// failure.
  std::optional<URL> url() const;
  void setURL(const std::optional<URL>& value) &;

  /// Containers are copied: linear time.
  std::optional<std::vector<JSON>> array() const;
  void setArray(const std::optional<std::vector<JSON>>& value) &;
  std::vector<JSON> arrayValue() const { return array().value_or(std::vector<JSON>()); }
  void setArrayValue(const std::vector<JSON>& value) & { *this = JSON(value); }
  std::optional<ValueArray> arrayObject() const { return value_.elements(); }
  void setArrayObject(std::optional<ValueArray> value) & { setOptional(std::move(value)); }
  std::optional<JSONMap> dictionary() const;
  void setDictionary(const std::optional<JSONMap>& value) &;
  JSONMap dictionaryValue() const { return dictionary().value_or(JSONMap()); }
  void setDictionaryValue(const JSONMap& value) & { *this = JSON(value); }
  std::optional<ValueMap> dictionaryObject() const { return value_.members(); }
  void setDictionaryObject(std::optional<ValueMap> value) & { setOptional(std::move(value)); }

  // --- comparison

  /// Only values of the same type are equal or ordered. Numbers are ordered by value, strings by
  /// bytes. Equal booleans, arrays, maps and nulls are also <= and >=. All other values are unequal
  /// and unordered, also two unknown values. `<` is not a strict weak order across types: sort only
  /// values of one type, also as keys of a std::map.
  friend QUORVELKIT_EXPORT bool operator==(const JSON& a, const JSON& b);
  friend QUORVELKIT_EXPORT std::partial_ordering operator<=>(const JSON& a, const JSON& b);
  /// Prints the description.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const JSON& json);

 private:
  using Owned = Value::OwnedBits;
  explicit JSON(const Owned& bits) noexcept : value_(bits) {}
  void checkSupport() noexcept {
    if (value_.kind() == ValueView::Kind::unsupported) becomeUnknown();
  }
  void becomeUnknown() noexcept;
  void setAt(std::span<const JSONPathStep> path, const JSON& value);
  void setElement(std::int64_t index, const JSON& value);
  void setStep(const JSONKey& step, const JSON& value);
  template <class T>
  void setOptional(std::optional<T> value) {
    setObject(value ? Value(*std::move(value)) : Value());
  }

  Value value_;
  friend struct detail::ValueAccess;
};

}  // namespace quorvelkit

// Completes the class.
#include <QuorvelKit/JSON/JSONIterator.h>
