// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelKit/JSON/OrderedMap.h>
#include <QuorvelKit/JSON/ValueView.h>
#include <QuorvelPlatform/Export.h>

#include <any>
#include <atomic>
#include <bit>
#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace quorvelkit {

class JSON;
class Value;

/// The null marker.
struct Null {
  /// Always true.
  friend constexpr bool operator==(Null, Null) noexcept { return true; }
};

using ValueArray = std::vector<Value>;
using ValueMap = OrderedMap<Value>;

namespace detail {
/// The base of all objects that values share. Owned by the values that point to it.
struct ReferenceCounted {
  std::atomic<std::size_t> count{1};
};
}  // namespace detail

/// An untyped value that owns its data: null, a boolean, a number, a text, an array, a map, or an
/// unsupported value. 16 bytes. Copies are independent of each other and cost one reference count
/// (scalars: none): they share texts, arrays and maps until one of them is written to. A value that
/// was read from a document keeps the whole document alive.
///
/// Threads: const functions are safe to call from several threads at the same time, also on copies
/// of one value.
class QUORVELKIT_EXPORT Value : public ValueView {
 public:
  /// Null.
  Value() noexcept = default;
  Value(Null) noexcept {}
  Value(std::nullptr_t) noexcept {}

  /// A boolean.
  template <std::same_as<bool> B>
  Value(B value) noexcept {
    bits_ = detail::ValueBits::make(0, value ? detail::ValueTag::true_ : detail::ValueTag::false_);
  }
  /// A number. A `float` is stored as the double of the same value.
  template <JSONIndexInteger I>
  Value(I value) noexcept {
    bits_ = detail::ValueBits::make(
        static_cast<std::uint64_t>(value),
        std::cmp_greater(value, INT64_MAX) ? detail::ValueTag::uint64 : detail::ValueTag::int64);
  }
  template <std::floating_point F>
  Value(F value) noexcept {
    bits_ = detail::ValueBits::make(std::bit_cast<std::uint64_t>(static_cast<double>(value)),
                                    detail::ValueTag::float64);
  }
  template <class N>
  requires(std::same_as<N, Number> || std::same_as<N, Decimal>) Value(const N& number) {
    setNumber(number);
  }

  /// A text in UTF-8. Other bytes can be stored, but not written as JSON.
  template <class T>
  requires(std::is_convertible_v<const T&, std::string_view> && !std::same_as<T, std::nullptr_t>)
      Value(const T& text)
      : Value(std::string(std::string_view(text))) {}
  Value(std::string text);

  /// Explicit, so that `ValueArray{array}` is a copy of the array with every compiler, and never an
  /// array in an array.
  explicit Value(ValueArray elements);
  explicit Value(ValueMap members);
  /// The value of an optional; null if it is empty.
  template <class T>
  requires std::is_convertible_v<const T&, Value> Value(const std::optional<T>& value)
      : Value(value ? Value(*value) : Value()) {}
  /// The object of a JSON value.
  template <std::same_as<JSON> J>
  Value(const J& json) : Value(json.object()) {}
  /// An unsupported value. It can be stored in arrays and maps but not written as JSON. Assigned to
  /// a JSON, it makes the type `unknown`.
  static Value unsupported(std::any value);
  using ValueView::unsupported;

  /// Becomes an owner of the data that the view refers to.
  explicit Value(const ValueView& view) noexcept : ValueView(view) {
    if (bits_.tag() >= detail::ValueTag::decimal) {
      retain();
    } else if (bits_.tag() >= detail::ValueTag::unknown) {
      bits_ = {};
    }
  }

  /// Shares the data until one of the values is written to.
  Value(const Value& other) noexcept : ValueView(other) { retain(); }
  /// Moves the data; the other value becomes null.
  Value(Value&& other) noexcept : ValueView(other) { other.bits_ = {}; }
  /// Replaces the value by a copy, or by the moved data.
  Value& operator=(const Value& other) & noexcept {
    Value copy(other);
    std::swap(bits_, copy.bits_);
    return *this;
  }
  Value& operator=(Value&& other) & noexcept {
    Value moved(std::move(other));
    std::swap(bits_, moved.bits_);
    return *this;
  }
  ~Value() {
    if (bits_.tag() >= detail::ValueTag::longFailure) release();
  }

  /// A copy of the elements of an array or of the members of a map; absent for every other kind.
  /// Linear time.
  std::optional<ValueArray> elements() const;
  std::optional<ValueMap> members() const;

 private:
  void retain() const noexcept {
    if (bits_.tag() >= detail::ValueTag::longFailure) {
      sharedCell()->count.fetch_add(1, std::memory_order_relaxed);
    }
  }
  detail::ReferenceCounted* sharedCell() const noexcept {
    return std::bit_cast<detail::ReferenceCounted*>(bits_.payload);
  }
  void release() noexcept;
  void setNumber(const Number& number);

  // Bits that own the reference which they need. The constructor keeps lists of two scalars from
  // converting to bits.
  struct OwnedBits {
    explicit OwnedBits(const detail::ValueBits& owned) noexcept : bits(owned) {}
    detail::ValueBits bits;
  };
  explicit Value(const OwnedBits& owned) noexcept { bits_ = owned.bits; }

  friend class JSON;
  friend struct detail::ValueAccess;
};

static_assert(sizeof(Value) == 16 && sizeof(ValueView) == 16);

}  // namespace quorvelkit
