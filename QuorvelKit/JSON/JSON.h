// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONError.h>
#include <QuorvelKit/JSON/JSONIndex.h>
#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelKit/JSON/JSONNumericAccessors.h>
#include <QuorvelKit/JSON/JSONOptions.h>
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

/// A JSON value that is read without ever failing: a subscript that does not fit the data gives a
/// null value that carries an error, and every typed read comes as a pair, an optional form for
/// exactly that kind and a form with a default and conversions.
///
///     const JSON json(data);
///     const double latitude = json[{"points", 0, "lat"}].doubleValue();
///
/// Copies are independent values and cost a reference count. Const members may run on any threads
/// at once. A value keeps the whole document alive that it was read from. Assignments and setters
/// take lvalues only: `json["a"] = 5` would change a copy of the member and does not compile;
/// `json.set("a", 5)` changes the value. Arguments may be parts of the value they are given to.
class QUORVELKIT_EXPORT JSON : public JSONNumericAccessors<JSON> {
 public:
  enum class Type : int { number, string, bool_, array, dictionary, null, unknown };
  /// The type of a raw value of 0 to 6; absent for every other.
  static std::optional<Type> typeFromRawValue(std::int64_t rawValue) noexcept;

  /// Null.
  JSON() noexcept = default;
  JSON(const JSON&) noexcept = default;
  JSON(JSON&&) noexcept = default;
  JSON& operator=(const JSON&) & noexcept = default;
  JSON& operator=(JSON&&) & noexcept = default;
  ~JSON() = default;
  /// Parses bytes (RFC 8259). What is no document gives a plain null, and the parser's error in
  /// the slot when there is one: domain ErrorDomain, code ErrorInvalidJSON; a document clears the
  /// slot. UTF-8 only, a leading byte-order mark is skipped; of members with the same key the last
  /// wins; at most 512 levels; integers beyond 64 bits become doubles.
  explicit JSON(const Data& data, JSONReadingOptions options = JSONReadingOptions::allowFragments,
                std::optional<Error>* error = nullptr);
  /// Parses a copy of a text the same way. (The constructor from a text makes a string value.)
  static JSON parse(std::string_view text,
                    JSONReadingOptions options = JSONReadingOptions::allowFragments,
                    std::optional<Error>* error = nullptr);

  /// From an untyped value, and from everything that makes one: texts, numbers (a `float` is
  /// stored as the double that has its value), booleans, null, optionals of these. Containers must
  /// be converted explicitly: `std::vector<JSON>{list}` is a copy of the list, not a list in a
  /// list.
  JSON(Value object) noexcept : value_(std::move(object)) {
    if (value_.kind() == ValueView::Kind::unsupported) becomeUnknown();
  }
  /// Takes part in owning what the view shows.
  explicit JSON(const ValueView& object) noexcept : value_(object) {
    if (value_.kind() == ValueView::Kind::unsupported) becomeUnknown();
  }
  template <class T>
  requires(!std::same_as<std::remove_cvref_t<T>, JSON> &&
           !std::derived_from<std::remove_cvref_t<T>, ValueView> &&
           std::is_constructible_v<Value, T>) explicit(!std::is_convertible_v<T, Value>)
      JSON(T&& object)
      : JSON(Value(std::forward<T>(object))) {}
  explicit JSON(const std::vector<JSON>& elements);
  explicit JSON(const JSONMap& members);
  /// The literal forms; of pairs with the same key the last wins.
  static JSON makeArray(std::initializer_list<Value> elements);
  static JSON makeDictionary(std::initializer_list<std::pair<std::string, Value>> members);
  /// From an application's own ranges, of what makes a value or of such ranges again: an array of
  /// the elements; a map of pairs, as a std::map holds them. An optional without a value makes
  /// null.
  template <JSONElements R>
  static JSON makeArray(R&& elements) {
    return detail::makeArray(elements);
  }
  template <JSONMembers R>
  static JSON makeDictionary(R&& members) {
    return detail::makeMap(members);
  }
  /// The value of an object; absent when the object is of no JSON kind.
  static std::optional<JSON> fromRawValue(Value object);
  static JSON null() { return JSON(); }
  static JSON nullJSON() { return JSON(); }

  Type type() const noexcept;
  /// Why the value is null or unknown, when a read or an assignment made it so.
  std::optional<Error> error() const;
  /// False exactly when error() has the code ErrorNotExist.
  bool exists() const noexcept;

  /// The untyped value; null for the kinds null and unknown.
  Value object() const noexcept { return Value(view()); }
  Value rawValue() const noexcept { return object(); }
  /// The untyped value to look at, without taking part in owning it.
  const ValueView& view() const noexcept { return value_; }
  /// An object of no JSON kind makes the value unknown, with error ErrorUnsupportedType.
  void setObject(Value object) & noexcept { *this = JSON(std::move(object)); }

  /// Reads. Along a path the error of the first step that broke stays.
  template <JSONIndexInteger I>
  JSON operator[](I index) const {
    return elementAt(JSONKey::clampedIndex(index));
  }
  JSON operator[](const KeyView& key) const;
  template <JSONSubscriptType T>
  requires(!JSONIndexInteger<T> && !JSONKeyText<T>) JSON operator[](const T& element) const {
    const JSONKey step(element);
    return at(JSONPath(&step, 1));
  }
  JSON operator[](std::initializer_list<JSONKey> path) const {
    return at(JSONPath(path.begin(), path.size()));
  }
  JSON operator[](JSONPath path) const { return at(path); }

  /// Writes. An array is never extended, a map is; a value that carries an error is not stored,
  /// and what does not fit is ignored. A negative index is a programming error.
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
  /// Writes along a path: stores the value's object, so that one with an error is stored as null.
  /// Every step but the last must be there; an empty path does nothing.
  void set(std::initializer_list<JSONKey> path, const JSON& value) & {
    set(JSONPath(path.begin(), path.size()), value);
  }
  void set(JSONPath path, const JSON& value) &;

  /// The bytes of the document, UTF-8. Absent, with error ErrorInvalidJSON in the slot, unless the
  /// value is an array or a map of finite numbers, UTF-8 texts, booleans, nulls, arrays and maps.
  /// Bytes clear the slot.
  std::optional<Data> rawData(JSONWritingOptions options = JSONWritingOptions::none,
                              std::optional<Error>* error = nullptr) const;
  /// An array or a map: rawData() decoded with the encoding, absent when either step fails. A
  /// string itself; a number's decimal text; "true", "false", "null"; absent for unknown.
  std::optional<std::string> rawString(
      TextEncoding encoding = TextEncoding::utf8,
      JSONWritingOptions options = JSONWritingOptions::prettyPrinted) const;
  /// The pretty-printed rawString(), or "unknown".
  std::string description() const;
  std::string debugDescription() const { return description(); }

  /// A value as a collection of pairs: of an array the position in decimal and the element, of a
  /// map the key and the member; other kinds are empty. Pairs are made as they are read. A loop
  /// sees the value as it was when it began, whatever is written to it meanwhile.
  class Iterator;
  using value_type = std::pair<std::string, JSON>;
  using const_iterator = Iterator;
  Iterator begin() const noexcept;
  Iterator end() const noexcept;
  JSONIndex startIndex() const noexcept;
  JSONIndex endIndex() const noexcept;
  /// ("", null) at a null index; beyond the end is a programming error.
  value_type operator[](JSONIndex index) const;
  std::size_t size() const noexcept { return value_.size(); }
  bool empty() const noexcept { return size() == 0; }

  /// Typed reads and writes; JSONNumericAccessors holds those of the number types. Setting an
  /// absent value makes the value null: `setString({})` does, `setStringValue({})` sets "".
  std::optional<bool> bool_() const noexcept { return value_.boolean(); }
  void setBool(std::optional<bool> value) & { setOptional(value); }
  /// Of a number whether it is not zero, of a text whether it begins, after blanks, a sign and
  /// zeros, with one of YyTt1-9; otherwise false.
  bool boolValue() const;
  void setBoolValue(bool value) & { setObject(value); }

  std::optional<std::string> string() const;
  void setString(std::optional<std::string> value) & { setOptional(std::move(value)); }
  /// A text, a number's decimal text, "true" or "false", otherwise "".
  std::string stringValue() const;
  void setStringValue(std::string value) & { setObject(std::move(value)); }

  std::optional<Number> number() const { return value_.storedNumber(); }
  void setNumber(std::optional<Number> value) & { setOptional(value); }
  /// Of a text the decimal at its front (zero without one), otherwise the double 0.
  Number numberValue() const;
  void setNumberValue(const Number& value) & { setObject(value); }

  std::optional<Null> null_() const noexcept;
  /// Makes the value null, whatever is given.
  void setNull(std::optional<Null>) & { setObject(Null()); }

  /// A text, percent-encoded for a query, as a URL.
  std::optional<URL> url() const;
  void setURL(const std::optional<URL>& value) &;

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

  /// Equality and order exist between values of one kind only: numbers and texts (by bytes) are
  /// ordered; equal booleans, arrays, maps and nulls are also <= and >=. All else is false, also
  /// between two unknown values. Across kinds `<` is therefore no strict weak order: do not sort
  /// values of several kinds by it, and do not make them keys of a std::map.
  friend QUORVELKIT_EXPORT bool operator==(const JSON& a, const JSON& b);
  friend QUORVELKIT_EXPORT std::partial_ordering operator<=>(const JSON& a, const JSON& b);

  /// Prints the description.
  friend QUORVELKIT_EXPORT std::ostream& operator<<(std::ostream& out, const JSON& json);

 private:
  void becomeUnknown() noexcept;
  JSON elementAt(std::int64_t index) const;
  JSON at(JSONPath path) const;
  void setElement(std::int64_t index, const JSON& value);
  void setStep(const JSONKey& step, const JSON& value);
  template <class T>
  void setOptional(std::optional<T> value) {
    setObject(value ? Value(*std::move(value)) : Value());
  }

  Value value_;

  friend struct detail::ValueCore;
};

}  // namespace quorvelkit

// Completes the class.
#include <QuorvelKit/JSON/JSONIterator.h>
