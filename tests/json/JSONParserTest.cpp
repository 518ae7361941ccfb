// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>

#include <gmock/gmock.h>
#include <tests/support/JSONOracle.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <sstream>

namespace quorvelkit {
namespace {

using namespace std::string_literals;

// The text parsed, absent when it is no document.
std::optional<JSON> parsed(const std::string& text, std::string* problem = nullptr) {
  std::optional<Error> error;
  JSON json(Data(text), JSONReadingOptions::allowFragments, &error);
  if (error && problem) *problem = error->localizedDescription();
  return error ? std::nullopt : std::optional(std::move(json));
}

// Both parsers must accept the same texts and find the same values in them.
void expectLikeOracle(const std::string& text) {
  ASSERT_EQ(parsed(text), parsedByOracle(text)) << testing::PrintToString(text);
}

const char* const sampleText = R"( {"points" : [ {"lat":39.3002,"lon":-76.5403,"t":0.5e1,"d":1E-2,
  "edge":12,"node":-3,"turn":{"dir":"left","say":"Links \"ab\" \u00e9\ud83d\ude00\/\\\b\f\n\r\t"}},
  {"lat":1,"lon":2,"t":3,"d":4,"edge":5,"node":6}, true, false, null, [], {}, "", "größe €😀",
  18446744073709551615, -9223372036854775808, 123456789012345678901234567890]} )";

TEST(JSONParserTest, ReadsScalars) {
  const struct {
    std::string text;
    JSON value;
  } cases[] = {
      {"0", 0},
      {"-0", 0},
      {"-0.0", -0.0},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"9223372036854775808", 9223372036854775808U},
      {"18446744073709551615", UINT64_MAX},
      {"18446744073709551616", 18446744073709551616.0},
      {"36893488147419103232", 36893488147419103232.0},
      {"-9223372036854775809", -9223372036854775808.0},
      {"0.1", 0.1},
      {"9007199254740993.0", 9007199254740992.0},
      {"123456789012345678.5", 123456789012345678.5},
      {"1e22", 1e22},
      {"1e23", 1e23},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"5e-324", 5e-324},
      {"2.2250738585072011e-308", 2.2250738585072011e-308},
      {"1e-400", 0.0},
      {"-1e-400", -0.0},
      {"0e999999999999999999999", 0},
      {"1e-99999999999999999999", 0},
      {"0." + std::string(400, '0') + "1e400", 0.1},
      {"1" + std::string(400, '0') + "e-400", 1},
      {"\xEF\xBB\xBF\t\r\n true ", true},
      {R"("\u0000\u007f\u0080\u07ff\u0800\uffff\ud800\udc00\uDBFF\uDFFF")",
       "\0\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"s},
      {"\"\x7F\"", "\x7F"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const std::optional<JSON> json = parsed(c.text);
    ASSERT_TRUE(json);
    EXPECT_EQ(*json, c.value);
    if (c.value == 0) {
      EXPECT_EQ(std::signbit(json->doubleValue()), std::signbit(c.value.doubleValue()));
    }
  }
  EXPECT_EQ(parsed("3")->number()->storage(), Number::Storage::int64);
  EXPECT_EQ(parsed("3.0")->number()->storage(), Number::Storage::float64);
}

TEST(JSONParserTest, RefusesWhatIsNoDocument) {
  std::vector<std::string> texts = {"", " ", "1 2", "[1 2]", "{\"a\" 1}", "{\"a\":1 \"b\":2}",
                                    // Bytes that must not stand there.
                                    "\xEF\xBB\xBF", "\xEF\xBB[]", "\"\n\"", "\"\0\""s, "\"\x1F\"",
                                    "[]\0"s, "\"\xFF\"", "\"\xC0\x80\"", "\"\xED\xA0\x80\"",
                                    "\"\xF4\x90\x80\x80\"", "\"\xC3\"", "\xFE\xFF\0[\0]"s,
                                    "{\"\xFF\":1}", std::string(400, '9')};
  std::istringstream words(
      R"(nul truex True NaN Infinity - +1 01 -01 1. .5 1e 1e+ 0x10 1e400 -1e400 1e309 [1e999]
         1e99999999999999999999 [ ] [1 [1,] [,1] [1} []// { } {"a"} {"a":} {"a":1,} {a:1} {1:2}
         {"a":1] {"a":1,"\ 'a' " "a "\ "\x" "\u12" "\u12g4" "\ud800" "\udc00" "\ud800\u0041"
         "\ud800x")");
  texts.insert(texts.end(), std::istream_iterator<std::string>(words), {});
  for (const std::string& text : texts) {
    std::string problem;
    EXPECT_FALSE(parsed(text, &problem)) << testing::PrintToString(text);
    EXPECT_THAT(problem, testing::HasSubstr(" at byte "));
  }
}

TEST(JSONParserTest, OfRepeatedKeysTheLastWinsInTheFirstPlace) {
  EXPECT_EQ(parsed(R"({"a":1,"b":2,"a":{"a":3,"a":4},"c":5,"b":6})")
                ->rawString(TextEncoding::utf8, JSONWritingOptions::none),
            R"({"a":{"a":4},"b":6,"c":5})");
  EXPECT_EQ(parsed(R"({"\u0061":1,"a":2})")->size(), 1U);
  // Maps around the sizes at which they are indexed, with more than 64 keys in the document.
  for (const int count : {40, 63, 64, 65, 130}) {
    std::string text = "{";
    for (int i = 0; i < 2 * count; ++i) {
      text += (i ? ",\"" : "\"") + std::to_string(i % count) + "\":" + std::to_string(i);
    }
    const JSON map = parsed(text + "}").value();
    ASSERT_EQ(map.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(map[std::to_string(i)], count + i);
      EXPECT_EQ(map[JSONIndex::dictionary(static_cast<std::size_t>(i))].first, std::to_string(i));
    }
  }
}

TEST(JSONParserTest, GuessedKeysAreTheKeysThatStandThere) {
  // Each pair of keys follows another once before, so that a guess is made and is wrong.
  const std::string keys[] = {"a",        "ab",        "abcdefg", "abcdefgh",     "abcdefghi",
                              "abcdefgX", "abcdefghX", "a\\\"",   "a\\\\",        "\\u0061b",
                              "",         "\\u00e9",   "\u00E9e", "abcdefgh\\\"", "abcdefghij"};
  for (const std::string& first : keys) {
    for (const std::string& second : keys) {
      const std::string one = "{\"x\":0,\"" + first + "\":1}";
      const std::string two = "{\"x\":0,\"" + second + "\":2}";
      expectLikeOracle("[" + one + "," + two + "," + one + "," + one + "]");
    }
  }
  EXPECT_FALSE(parsed(R"([{"x":0,"a\"":1},{"x":0,"a"":1}])"));
  EXPECT_FALSE(parsed(R"([{"x":0,"abcdefgh":1},{"x":0,"abcdefgh)"));
}

TEST(JSONParserTest, AgreesOnEveryTruncationAndFlip) {
  const std::string text = sampleText;
  ASSERT_NO_FATAL_FAILURE(expectLikeOracle(text));
  for (std::size_t i = 0; i < text.size(); ++i) {
    ASSERT_NO_FATAL_FAILURE(expectLikeOracle(text.substr(0, i)));
    std::string flipped = text;
    for (const unsigned bit : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
      flipped[i] = static_cast<char>(static_cast<unsigned char>(text[i]) ^ (1U << bit));
      ASSERT_NO_FATAL_FAILURE(expectLikeOracle(flipped));
    }
  }
}

TEST(JSONParserTest, AgreesOnMutatedDocuments) {
  std::istringstream words(R"({ } [ ] , : "a" "b" "lat": 1.5e3 -0 1e9 \u00e9 " null true)"
                           " \xC3 \xE2\x82\xAC 12345678901234567890");
  std::vector<std::string> pieces(std::istream_iterator<std::string>(words), {});
  pieces.emplace_back(" ");
  std::mt19937 random(42);
  for (int round = 0; round < 5000; ++round) {
    std::string text = sampleText;
    const auto changes = 1 + random() % 3;
    for (std::size_t i = 0; i < changes; ++i) {
      const std::size_t place = random() % text.size();
      const std::string& piece = pieces[random() % pieces.size()];
      text.replace(place, random() % 6, piece);
    }
    ASSERT_NO_FATAL_FAILURE(expectLikeOracle(text));
  }
}

TEST(JSONParserTest, ReadsWhatItWrites) {
  const JSON json = parsed(sampleText).value();
  EXPECT_EQ(JSON::parse(json.description()), json);
  EXPECT_EQ(JSON(json.rawData().value()), json);
}

}  // namespace
}  // namespace quorvelkit
