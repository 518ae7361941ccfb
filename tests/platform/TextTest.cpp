// SPDX-License-Identifier: Apache-2.0
// Numbers, dates and encodings as text, in different locales and time zones.
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/DateFormatter.h>
#include <QuorvelPlatform/DoubleText.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/PercentEncoding.h>
#include <QuorvelPlatform/UTF8.h>

#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <locale>

namespace quorvelkit {
namespace {

using namespace std::chrono_literals;

// A locale with decimal commas and grouping dots, for systems without such a locale.
struct Commas : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

class TextTest : public testing::TestWithParam<bool> {
 protected:
  TextTest() {
    if (!GetParam()) return;
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "tr_TR.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) != nullptr) break;
    }
    std::locale::global(std::locale(std::locale::classic(), new Commas));
    setenv("TZ", "Pacific/Chatham", 1);
    tzset();
  }
};

INSTANTIATE_TEST_SUITE_P(OfTheProcess, TextTest, testing::Bool(), [](const auto& kind) {
  return kind.param ? "OtherLocaleAndTimeZone" : "DefaultLocale";
});

TEST_P(TextTest, DoublesHaveDefaultText) {
  for (const std::string text :
       {"0.0", "-0.0", "34.0", "-1.0", "1.5", "0.1", "39.2904", "-76.6122", "0.0001", "1e-05",
        "123456.789", "100000000000000.0", "1e+15", "1e+300", "inf", "-inf"}) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(defaultText(value), text);
  }
  const std::pair<double, const char*> cases[] = {{0.1 + 0.2, "0.3"},
                                                  {1.0 / 3, "0.333333333333333"},
                                                  {2.0 / 3, "0.666666666666667"},
                                                  {123456789012345678, "1.23456789012346e+17"},
                                                  {5e-324, "4.94065645841247e-324"},
                                                  {std::nan(""), "nan"},
                                                  {-std::nan(""), "nan"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(defaultText(value), text);
}

TEST_P(TextTest, TimePointsAreFormattedInUTC) {
  using std::chrono::sys_days;
  const std::pair<std::chrono::sys_time<std::chrono::milliseconds>, const char*> cases[] = {
      {sys_days(2017y / 3 / 1) + 14h + 5min, "2017-03-01T14:05:00Z"},
      {sys_days(1970y / 1 / 1), "1970-01-01T00:00:00Z"},
      {sys_days(1970y / 1 / 1) - 1ms, "1969-12-31T23:59:59Z"},
      {sys_days(2016y / 3 / 1) - 1ms, "2016-02-29T23:59:59Z"},
      {sys_days(2000y / 12 / 31) + 9h + 8min + 7s, "2000-12-31T09:08:07Z"},
      {sys_days(1800y / 6 / 15) + 12h, "1800-06-15T12:00:00Z"}};
  for (const auto& [when, text] : cases)
    EXPECT_EQ(DateFormatter::RFC3339DateFormatter().string(when), text);
}

TEST_P(TextTest, QueriesArePercentEncoded) {
  std::string allowed, allowedInValue;
  for (int c = 0; c < 128; ++c) {
    const std::string one(1, static_cast<char>(c));
    const auto encoded = percentEncodedForQuery(one);
    ASSERT_TRUE(encoded);
    if (*encoded == one) allowed += one;
    if (encodeQueryValue(one).encoded() == one) allowedInValue += one;
  }
  EXPECT_EQ(allowed,
            "!$&'()*+,-./0123456789:;=?@ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~");
  EXPECT_EQ(allowedInValue, "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~");
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"", ""},
      {" %20#[]", "%20%2520%23%5B%5D"},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "%C3%A9%E2%82%AC%F0%9F%98%80"},
      {std::string_view("\0\x7F", 2), "%00%7F"}};
  for (const auto& [text, encoded] : cases) {
    EXPECT_EQ(percentEncodedForQuery(text), encoded);
    EXPECT_EQ(urlEncode(text), encoded);
    EXPECT_EQ(encodeQueryValue(text).encoded(), encoded);
  }
  EXPECT_EQ(encodeQueryValue("&\xFF").encoded(), "%26%FF");
  EXPECT_FALSE(percentEncodedForQuery("\xFF"));
}

TEST(UTF8Test, DistinguishesValidAndInvalidUTF8) {
  const std::pair<std::string_view, std::size_t> counts[] = {
      {"", 0},
      {"abc", 3},
      {std::string_view("\0", 1), 1},
      {"\xC2\x80\xDF\xBF", 2},
      {"\xE0\xA0\x80\xEF\xBF\xBF", 2},
      {"\xED\x9F\xBF\xEE\x80\x80", 2},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 2}};
  for (const auto& [bytes, characters] : counts) {
    EXPECT_TRUE(isUTF8(bytes)) << testing::PrintToString(bytes);
    EXPECT_EQ(characterCount(bytes), characters);
  }
  for (const char* bytes :
       {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80", "a\xC3", "\xE2\x82", "\xF0\x9F\x98",
        "\xC3\x28", "\xE2\x28\xA1", "\xFF"}) {
    EXPECT_FALSE(isUTF8(bytes)) << testing::PrintToString(bytes);
  }
}

TEST(ASCIITest, IgnoresCaseOfASCIILettersOnly) {
  EXPECT_TRUE(equalsIgnoringASCIICase("Content-TYPE", "content-type"));
  EXPECT_FALSE(equalsIgnoringASCIICase("a", "ab"));
  EXPECT_FALSE(equalsIgnoringASCIICase("@[", "`{"));
  EXPECT_FALSE(equalsIgnoringASCIICase("\xC3\x89", "\xC3\xA9"));
}

TEST(FatalErrorDeathTest, PrintsMessageAndAborts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(fatalError("some reason"), testing::KilledBySignal(SIGABRT), "^some reason\n");
  EXPECT_DEATH(urlEncode("\xFF"),
               "unexpectedly found nil while unwrapping an Optional value: .* not UTF-8");
}

}  // namespace
}  // namespace quorvelkit
