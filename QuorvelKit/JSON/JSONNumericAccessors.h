// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Number.h>

#include <concepts>
#include <cstdint>
#include <optional>

namespace quorvelkit {

/// The numeric accessors of JSON. They never fail. Number::to defines the conversions.
template <class Self>
class JSONNumericAccessors {
 public:
  /// Convert number(); absent unless the value is a number or a boolean.
  std::optional<double> double_() const { return get<double>(); }
  std::optional<float> float_() const { return get<float>(); }
  std::optional<std::int64_t> int_() const { return get<std::int64_t>(); }
  std::optional<std::uint64_t> uInt() const { return get<std::uint64_t>(); }
  std::optional<std::int8_t> int8() const { return get<std::int8_t>(); }
  std::optional<std::uint8_t> uInt8() const { return get<std::uint8_t>(); }
  std::optional<std::int16_t> int16() const { return get<std::int16_t>(); }
  std::optional<std::uint16_t> uInt16() const { return get<std::uint16_t>(); }
  std::optional<std::int32_t> int32() const { return get<std::int32_t>(); }
  std::optional<std::uint32_t> uInt32() const { return get<std::uint32_t>(); }
  std::optional<std::int64_t> int64() const { return get<std::int64_t>(); }
  std::optional<std::uint64_t> uInt64() const { return get<std::uint64_t>(); }

  /// Convert numberValue(), which also parses texts; 0 for every other kind.
  double doubleValue() const { return getValue<double>(); }
  float floatValue() const { return getValue<float>(); }
  std::int64_t intValue() const { return getValue<std::int64_t>(); }
  std::uint64_t uIntValue() const { return getValue<std::uint64_t>(); }
  std::int8_t int8Value() const { return getValue<std::int8_t>(); }
  std::uint8_t uInt8Value() const { return getValue<std::uint8_t>(); }
  std::int16_t int16Value() const { return getValue<std::int16_t>(); }
  std::uint16_t uInt16Value() const { return getValue<std::uint16_t>(); }
  std::int32_t int32Value() const { return getValue<std::int32_t>(); }
  std::uint32_t uInt32Value() const { return getValue<std::uint32_t>(); }
  std::int64_t int64Value() const { return getValue<std::int64_t>(); }
  std::uint64_t uInt64Value() const { return getValue<std::uint64_t>(); }

  /// Store a number. An absent value makes the JSON value null.
  void setDouble(std::optional<double> value) & { set(value); }
  void setFloat(std::optional<float> value) & { set(value); }
  void setInt(std::optional<std::int64_t> value) & { set(value); }
  void setUInt(std::optional<std::uint64_t> value) & { set(value); }
  void setInt8(std::optional<std::int8_t> value) & { set(value); }
  void setUInt8(std::optional<std::uint8_t> value) & { set(value); }
  void setInt16(std::optional<std::int16_t> value) & { set(value); }
  void setUInt16(std::optional<std::uint16_t> value) & { set(value); }
  void setInt32(std::optional<std::int32_t> value) & { set(value); }
  void setUInt32(std::optional<std::uint32_t> value) & { set(value); }
  void setInt64(std::optional<std::int64_t> value) & { set(value); }
  void setUInt64(std::optional<std::uint64_t> value) & { set(value); }

  /// Store a number.
  void setDoubleValue(double value) & { set<double>(value); }
  void setFloatValue(float value) & { set<float>(value); }
  void setIntValue(std::int64_t value) & { set<std::int64_t>(value); }
  void setUIntValue(std::uint64_t value) & { set<std::uint64_t>(value); }
  void setInt8Value(std::int8_t value) & { set<std::int8_t>(value); }
  void setUInt8Value(std::uint8_t value) & { set<std::uint8_t>(value); }
  void setInt16Value(std::int16_t value) & { set<std::int16_t>(value); }
  void setUInt16Value(std::uint16_t value) & { set<std::uint16_t>(value); }
  void setInt32Value(std::int32_t value) & { set<std::int32_t>(value); }
  void setUInt32Value(std::uint32_t value) & { set<std::uint32_t>(value); }
  void setInt64Value(std::int64_t value) & { set<std::int64_t>(value); }
  void setUInt64Value(std::uint64_t value) & { set<std::uint64_t>(value); }

 private:
  template <class T>
  std::optional<T> get() const {
    const std::optional<Number> number = static_cast<const Self*>(this)->number();
    return number ? std::optional<T>(number->template to<T>()) : std::nullopt;
  }
  template <class T>
  T getValue() const {
    // The usual cases, inline.
    if constexpr (std::floating_point<T>) {
      if (const auto number = static_cast<const Self*>(this)->view().number()) {
        return static_cast<T>(*number);
      }
    } else if (const auto integer = static_cast<const Self*>(this)->view().exactInt64()) {
      return static_cast<T>(*integer);
    }
    return static_cast<const Self*>(this)->numberValue().template to<T>();
  }
  template <class T>
  void set(std::optional<T> value) {
    static_cast<Self*>(this)->setNumber(value ? std::optional<Number>(*value) : std::nullopt);
  }

  JSONNumericAccessors() = default;
  friend Self;
};

}  // namespace quorvelkit
