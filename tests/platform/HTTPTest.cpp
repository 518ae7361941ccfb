// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/Error.h>
#include <QuorvelPlatform/HTTPURLResponse.h>
#include <QuorvelPlatform/URLRequest.h>

#include <gtest/gtest.h>

#include <set>

namespace quorvelkit {
namespace {

URLRequest someRequest() { return URLRequest(*URL::parse("http://h.test/")); }

TEST(URLRequestTest, SetReplacesAndAddJoins) {
  using Fields = std::vector<HTTPHeaderFields::Field>;
  URLRequest request = someRequest();
  EXPECT_EQ(request.cachePolicy(), URLRequest::CachePolicy::useProtocolCachePolicy);
  request.setValue("one", "x-name");
  request.setValue("two", "X-Name");
  EXPECT_EQ(request.headerFields().all(), (Fields{{"X-Name", "two"}}));
  EXPECT_EQ(request.value("x-NAME"), "two");
  request.addValue("three", "x-name");
  request.addValue("", "X-NAME");
  EXPECT_EQ(request.headerFields().all(), (Fields{{"X-Name", "two,three,"}}));
  request.setValue("", "X-Name");
  EXPECT_EQ(request.value("x-name"), "");
  request.setValue(std::nullopt, "x-NAME");
  request.setValue(std::nullopt, "absent");
  EXPECT_EQ(request.headerFields().all(), Fields());
}

// The fault table has fields with line ends.
TEST(URLRequestTest, InvalidFieldsAreIgnored) {
  URLRequest request = someRequest();
  request.setValue("good", "Name");
  const std::string_view names[] = {
      "", "a b", "a:", "a\r\nb", "\xC3\xA9", "a(b)", std::string_view("a\0", 2)};
  for (const std::string_view name : names) {
    request.setValue("x", name);
    request.addValue("x", name);
  }
  request.setValue("a\n", "Name");
  request.addValue(std::string_view("a\0b", 3), "Name");
  EXPECT_EQ(request.headerFields().all(), (std::vector<HTTPHeaderFields::Field>{{"Name", "good"}}));
  request.setValue("tab\tand \xC3\xA9 are allowed", "!#$%&'*+-.^_`|~09azAZ");
  EXPECT_EQ(request.headerFields().all().size(), 2U);
}

TEST(URLRequestTest, InvalidMethodsAreIgnored) {
  URLRequest request = someRequest();
  request.setHTTPMethod("connect");
  for (const char* method : {"", "A B", "A\r\nX: y"}) {
    request.setHTTPMethod(method);
    EXPECT_EQ(request.httpMethod(), "CONNECT");
  }
}

TEST(HTTPURLResponseTest, EveryStatusHasAText) {
  const std::string_view classes[] = {"informational", "success", "redirected", "client error"};
  std::string own;
  for (int status = -200; status < 1200; ++status) {
    const std::string phrase(HTTPURLResponse::localizedString(status));
    const bool hasClass = status >= 100 && status < 500;
    if (phrase != (hasClass ? classes[status / 100 - 1] : "server error"))
      own += std::to_string(status) + ' ' + phrase + '\n';
  }
  EXPECT_EQ(own,
            "100 continue\n101 switching protocols\n200 no error\n201 created\n202 accepted\n"
            "203 non-authoritative information\n204 no content\n205 reset content\n"
            "206 partial content\n300 multiple choices\n301 moved permanently\n302 found\n"
            "303 see other\n304 not modified\n305 needs proxy\n307 temporarily redirected\n"
            "400 bad request\n401 unauthorized\n402 payment required\n403 forbidden\n"
            "404 not found\n405 method not allowed\n406 unacceptable\n"
            "407 proxy authentication required\n408 request timed out\n409 conflict\n"
            "410 no longer exists\n411 length required\n412 precondition failed\n"
            "413 request too large\n414 requested URL too long\n415 unsupported media type\n"
            "416 requested range not satisfiable\n417 expectation failed\n"
            "500 internal server error\n501 unimplemented\n502 bad gateway\n"
            "503 service unavailable\n504 gateway timed out\n505 unsupported version\n");
}

TEST(HTTPURLResponseTest, ReadsTypeEncodingAndLength) {
  using Text = std::optional<std::string>;
  const std::tuple<const char*, const char*, Text, Text, std::optional<std::int64_t>> cases[] = {
      {"Text/HTML; Charset=\"UTF-8\"", "12", "text/html", "UTF-8", 12},
      {"text/plain;a=b; charset=latin1 ;c", " 0 ", "text/plain", "latin1", 0},
      {"  ; charset=x", "-1", {}, "x", {}},
      {"", "12a", {}, {}, {}},
      {"a/b; charsets=x", "99999999999999999999", "a/b", {}, {}},
  };
  for (const auto& [contentType, length, mimeType, encoding, expected] : cases) {
    SCOPED_TRACE(contentType);
    HTTPHeaderFields fields;
    fields.set("content-type", contentType);
    fields.set("CONTENT-LENGTH", length);
    const HTTPURLResponse response(*URL::parse("http://h.test/"), 200, fields);
    EXPECT_EQ(response.mimeType(), mimeType);
    EXPECT_EQ(response.textEncodingName(), encoding);
    EXPECT_EQ(response.expectedContentLength(), expected);
  }
}

TEST(ErrorTest, ComparesAllPartsAndHasDescription) {
  const Error plain("Domain", 7);
  EXPECT_EQ(plain, Error("Domain", 7));
  EXPECT_NE(plain, Error::described("Domain", 7, "text"));
  EXPECT_NE(plain, Error("Domain", 8));
  EXPECT_NE(plain.localizedDescription().find("Domain"), std::string::npos);
}

}  // namespace
}  // namespace quorvelkit
