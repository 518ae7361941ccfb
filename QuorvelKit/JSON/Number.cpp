// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Number.h>
#include <QuorvelKit/JSON/NumberText_p.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace quorvelkit {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

// The integer part of a decimal without its sign, clamped to 64 bits.
std::uint64_t integerPart(const Decimal& decimal) {
  std::string digits = decimal.digits();
  if (decimal.exponent() < 0) {
    const auto fractionDigits = static_cast<std::size_t>(-decimal.exponent());
    digits.resize(digits.size() - std::min(digits.size(), fractionDigits));
  } else {
    digits.append(static_cast<std::size_t>(decimal.exponent()), '0');
  }
  if (digits.empty()) return 0;
  std::uint64_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return result.ec == std::errc() ? value : std::numeric_limits<std::uint64_t>::max();
}

std::int64_t clamped(double value) noexcept {
  if (std::isnan(value)) return 0;
  if (value >= twoTo63) return std::numeric_limits<std::int64_t>::max();
  if (value < -twoTo63) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

std::int64_t clamped(const Decimal& value) {
  const std::uint64_t magnitude = integerPart(value);
  constexpr std::uint64_t maximum = std::numeric_limits<std::int64_t>::max();
  if (!value.isNegative()) return static_cast<std::int64_t>(std::min(magnitude, maximum));
  return magnitude > maximum ? std::numeric_limits<std::int64_t>::min()
                             : -static_cast<std::int64_t>(magnitude);
}

std::weak_ordering compareDoubles(double a, double b) noexcept {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(b) <=> std::isnan(a);
  if (a == b) return std::weak_ordering::equivalent;
  return a < b ? std::weak_ordering::less : std::weak_ordering::greater;
}

template <class Integer>
std::weak_ordering compareWithDouble(Integer a, double b) noexcept {
  constexpr bool isSigned = std::is_signed_v<Integer>;
  if (std::isnan(b) || b < (isSigned ? -twoTo63 : 0.0)) return std::weak_ordering::greater;
  if (b >= (isSigned ? twoTo63 : twoTo64)) return std::weak_ordering::less;
  const double whole = std::trunc(b);
  const auto integer = static_cast<Integer>(whole);
  if (a != integer) return a <=> integer;
  return compareDoubles(0, b - whole);
}

// A finite number, exactly: sign x 0.digits x 10^power. The digits have no leading and no trailing
// zeros; zero has none.
struct Digits {
  int sign = 0;
  std::int64_t power = 0;
  std::string digits;
};

Digits makeDigits(bool negative, std::string digits, std::int64_t exponent) {
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.empty()) return {};
  const std::int64_t power = static_cast<std::int64_t>(digits.size()) + exponent;
  digits.erase(digits.find_last_not_of('0') + 1);
  return {negative ? -1 : 1, power, std::move(digits)};
}

Digits digitsOf(double value) {
  // A double has at most 767 significant digits.
  char text[800];
  const auto end =
      std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific, 766);
  const std::string_view all(text, end.ptr);
  const std::size_t mark = all.find('e');
  int exponent = 0;
  const std::size_t sign = all[mark + 1] == '+' ? 1 : 0;
  std::from_chars(all.data() + mark + 1 + sign, end.ptr, exponent);
  std::string digits(1, all[0]);
  digits += all.substr(2, mark - 2);
  return makeDigits(value < 0, digits, exponent - static_cast<std::int64_t>(digits.size()) + 1);
}
Digits digitsOf(std::int64_t value) {
  std::string text = std::to_string(value);
  return makeDigits(value < 0, value < 0 ? text.substr(1) : text, 0);
}
Digits digitsOf(std::uint64_t value) { return makeDigits(false, std::to_string(value), 0); }
Digits digitsOf(bool value) { return digitsOf(std::int64_t{value}); }
Digits digitsOf(const Decimal& value) {
  return makeDigits(value.isNegative(), value.digits(), value.exponent());
}

std::weak_ordering compareDigits(const Digits& a, const Digits& b) {
  if (a.sign != b.sign) return a.sign <=> b.sign;
  const std::weak_ordering magnitude =
      a.power != b.power ? a.power <=> b.power : a.digits.compare(b.digits) <=> 0;
  return a.sign < 0 ? 0 <=> magnitude : magnitude;
}

}  // namespace

Number::Storage Number::storage() const noexcept {
  constexpr Storage storages[] = {Storage::boolean, Storage::int64, Storage::uint64,
                                  Storage::float64, Storage::decimal};
  return storages[value_.index()];
}

std::int64_t Number::int64Value() const {
  return std::visit(Overloaded{
                        [](bool value) { return std::int64_t{value}; },
                        [](std::int64_t value) { return value; },
                        [](std::uint64_t) { return std::numeric_limits<std::int64_t>::max(); },
                        [](double value) { return clamped(value); },
                        [](const Decimal& value) { return clamped(value); },
                    },
                    value_);
}

std::uint64_t Number::uint64Value() const {
  return std::visit(Overloaded{
                        [](bool value) { return std::uint64_t{value}; },
                        [](std::int64_t value) { return static_cast<std::uint64_t>(value); },
                        [](std::uint64_t value) { return value; },
                        [](double value) {
                          if (value >= twoTo64) return std::numeric_limits<std::uint64_t>::max();
                          if (value >= twoTo63) return static_cast<std::uint64_t>(value);
                          return static_cast<std::uint64_t>(clamped(value));
                        },
                        [](const Decimal& value) {
                          return value.isNegative() ? static_cast<std::uint64_t>(clamped(value))
                                                    : integerPart(value);
                        },
                    },
                    value_);
}

double Number::doubleValue() const {
  return std::visit(Overloaded{
                        [](const Decimal& value) { return value.doubleValue(); },
                        [](auto value) { return static_cast<double>(value); },
                    },
                    value_);
}

bool Number::boolValue() const {
  return std::visit(Overloaded{
                        [](const Decimal& value) { return !value.isZero(); },
                        [](auto value) { return value != decltype(value){0}; },
                    },
                    value_);
}

std::optional<std::int64_t> Number::exactInt64() const {
  const std::int64_t value = int64Value();
  if (compare(Number(value), *this) != 0) return std::nullopt;
  return value;
}

std::string Number::text() const {
  std::string text;
  std::visit([&](const auto& value) { detail::appendText(text, value); }, value_);
  return text;
}

std::weak_ordering Number::compare(const Number& a, const Number& b) {
  const auto isNotANumber = [](const Number& n) {
    const Decimal* const decimal = std::get_if<Decimal>(&n.value_);
    const double* const real = std::get_if<double>(&n.value_);
    return (decimal && decimal->isNotANumber()) || (real && std::isnan(*real));
  };
  const auto isInfinite = [](const Number& n) {
    const double* const real = std::get_if<double>(&n.value_);
    return real && std::isinf(*real);
  };
  const auto integer = [](const Number& n) {
    const bool* const truth = std::get_if<bool>(&n.value_);
    return truth ? Number(std::int64_t{*truth}) : n;
  };
  if (isNotANumber(a) || isNotANumber(b)) return isNotANumber(b) <=> isNotANumber(a);
  if (isInfinite(a) || isInfinite(b)) return compareDoubles(a.doubleValue(), b.doubleValue());
  return std::visit(
      Overloaded{
          [](double x, double y) { return compareDoubles(x, y); },
          [](std::int64_t x, std::int64_t y) -> std::weak_ordering { return x <=> y; },
          [](std::uint64_t x, std::uint64_t y) -> std::weak_ordering { return x <=> y; },
          [](std::int64_t, std::uint64_t) { return std::weak_ordering::less; },
          [](std::uint64_t, std::int64_t) { return std::weak_ordering::greater; },
          [](std::int64_t x, double y) { return compareWithDouble(x, y); },
          [](std::uint64_t x, double y) { return compareWithDouble(x, y); },
          [](double x, std::int64_t y) { return 0 <=> compareWithDouble(y, x); },
          [](double x, std::uint64_t y) { return 0 <=> compareWithDouble(y, x); },
          [](const auto& x, const auto& y) { return compareDigits(digitsOf(x), digitsOf(y)); },
      },
      integer(a).value_, integer(b).value_);
}

}  // namespace quorvelkit
