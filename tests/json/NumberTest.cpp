// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Number.h>

#include <gmock/gmock.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>

namespace quorvelkit {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double positiveInfinity = std::numeric_limits<double>::infinity();

Number decimal(std::string_view text) { return Decimal::parse(text); }

TEST(NumberTest, OrderIsExactAcrossStorages) {
  // Groups of equal numbers in ascending order.
  const std::vector<std::vector<Number>> ascending = {
      {notANumber, Decimal::notANumber()},
      {-positiveInfinity},
      {-1e300},
      {-9223372036854777856.0},
      {INT64_MIN, -9223372036854775808.0, decimal("-9223372036854775808")},
      {-9007199254740993, decimal("-9007199254740993")},
      {-9007199254740992, -9007199254740992.0},
      {-1, -1.0, decimal("-1e0")},
      {decimal("-0.1")},
      {-1e-310},
      {Number(), 0, -0.0, 0.0, decimal("0"), decimal("-0.0")},
      {5e-324},
      {decimal("1e-128")},
      {decimal("0.1")},
      {0.1},
      {0.5, decimal("0.5")},
      {1, 1.0, decimal("1.000")},
      {9007199254740992, 9007199254740992.0},
      {9007199254740993, decimal("9007199254740993")},
      {9007199254740994.0},
      {INT64_MAX},
      {9223372036854775808U, 9223372036854775808.0, decimal("9223372036854775808")},
      {18446744073709549568.0},
      {UINT64_MAX},
      {18446744073709551616.0, decimal("18446744073709551616")},
      {decimal("12345678901234567890123456789012345677")},
      {decimal("12345678901234567890123456789012345678")},
      {decimal("1e127")},
      {decimal("1e128"), decimal("10e127")},
      {1e300},
      {positiveInfinity}};
  for (std::size_t i = 0; i < ascending.size(); ++i)
    for (std::size_t j = 0; j < ascending.size(); ++j)
      for (const Number& a : ascending[i]) {
        for (const Number& b : ascending[j]) {
          EXPECT_EQ(Number::compare(a, b), i <=> j) << a.text() << " and " << b.text();
          EXPECT_EQ(a == b, i == j);
          EXPECT_EQ(a < b, i < j);
        }
      }
}

TEST(NumberTest, BooleansCompareWithBooleansOnly) {
  EXPECT_TRUE(Number(false) < Number(true) && Number(true) == trueNumber);
  for (const Number& one : {Number(1), Number(1.0), decimal("1")}) {
    EXPECT_EQ(Number::compare(Number(true), one), std::weak_ordering::equivalent);
    EXPECT_FALSE(one == true || one < true || one > true || one <= true || one >= true);
    EXPECT_TRUE(one != true);
  }
}

TEST(NumberTest, TextHasFewestDigits) {
  EXPECT_EQ(Number(notANumber).text(), "nan");
  EXPECT_EQ(Number(true).text(), "1");
  // Pairs of a number and its text.
  std::istringstream cases(R"(
      0 0    -0.0 -0    42.0 42    0.1 0.1    100000.0 100000    1e-5 0.00001    9.5e-6 9.5e-06
      12345678901234567.0 12345678901234568    9.9e16 99000000000000000    1e17 1e+17
      -1.5e300 -1.5e+300    0.3333333333333333 0.3333333333333333    5e-324 5e-324)");
  std::string text;
  for (double value = 0; cases >> value >> text;)
    EXPECT_EQ(Number(value).text(), text);
  EXPECT_TRUE(cases.eof());

  // Compares with std::to_chars: random bits, short decimals and the doubles next to them.
  const auto expectFewest = [](double value) {
    if (!std::isfinite(value)) return;
    const double size = std::fabs(value);
    const bool isFixed = size == 0 || (size >= 1e-5 && size < 1e17);
    char digits[64];
    const char* const end =
        std::to_chars(digits, digits + sizeof digits, value,
                      isFixed ? std::chars_format::fixed : std::chars_format::scientific)
            .ptr;
    ASSERT_EQ(Number(value).text(), std::string_view(digits, end));
  };
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    expectFewest(std::bit_cast<double>(random()));
    const double power = std::pow(10.0, static_cast<double>(random() % 19));
    const double whole = std::floor(std::ldexp(static_cast<double>(random()), -64) * power);
    const double value = whole / std::pow(10.0, static_cast<double>(random() % 14));
    for (const double each :
         {value, -value, std::nextafter(value, 0.0), std::nextafter(value, positiveInfinity)})
      expectFewest(each);
  }
}

TEST(NumberTest, DecimalIsParsedFromStartOfText) {
  // Pairs of a text and the text of its number.
  std::istringstream cases(R"(
      12 12    12abc 12    +12.5e1x 125    -.5 -0.5    5. 5    1.2.3 1.2    1e 1    1e+ 1
      1E-2 0.01    007 7    0.000 0    -0 0    1e127 1e+127    1e-128 1e-128
      1e99999999999999999999 0    0e99999999999999999999 0    9e39 9e+39    1e120 1e+120
      1e128 1e+128    100e127 1e+129    1000e126 1e+129    0.1e129 1e+128    -12e128 -1.2e+129
      1e164 1e+164    1e165 0    12e163 1.2e+164    12e164 0    0e200 0    1.5e128 1.5e+128
      1e-129 0    4e-129 0    -5e-129 -1e-128    15e-129 2e-128    149e-130 1e-128    995e-130 1e-127
      9e-130 0    0.5e-128 1e-128    -0.1e-128 0    1e-99999999999999999999 0
      49999999999999999999999999999999999999999e-169 0
      12345678901234567890123456789012345678    12345678901234567890123456789012345678
      123456789012345678901234567890123456784   1.2345678901234567890123456789012345678e+38
      0.123456789012345678901234567890123456785 0.12345678901234567890123456789012345679
      9999999999999999999999999999999999999999  1e+40
      12.50 12.5    -0.000012 -0.000012    0.0000012 1.2e-06    1e3 1000    1e40 1e+40
      - nan    . nan    e5 nan    abc nan    nan nan)");
  for (std::string text, result; cases >> text >> result;) {
    const Decimal decimal = Decimal::parse(text);
    EXPECT_EQ(decimal.isNotANumber(), result == "nan") << text;
    EXPECT_EQ(decimal.text(), result) << text;
    EXPECT_EQ(Number(decimal).boolValue(), result != "0") << text;
  }
  EXPECT_EQ(Decimal::parse(" \t\n+12.5e1x").text(), "125");
  EXPECT_EQ(Decimal::parse("1" + std::string(120, '0')).text(), "1e+120");
  for (const char* text : {"", " ", "- 1"})
    EXPECT_TRUE(Decimal::parse(text).isNotANumber()) << text;
}

}  // namespace
}  // namespace quorvelkit
