// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/URL.h>

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <regex>
#include <sstream>
#include <vector>

namespace quorvelkit {
namespace {

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// The expected components come from the regular expression of RFC 3986, appendix B.
TEST(URLTest, ParsesValidURLs) {
  const std::regex parts(R"((([^:/?#]+):)?(//([^/?#]*))?([^?#]*)(\?([^#]*))?(#(.*))?)");
  const std::regex authority(R"((.*@)?(\[(.*)\]|([^:]*))(:([0-9]*))?)");
  const auto matched = [](const std::ssub_match& part) {
    return part.matched ? std::optional(part.str()) : std::nullopt;
  };
  for (const std::string& text : words(R"(
      http://h.test/a?q=b#f HTTP://H.TEST/A http://h.test http://h.test?q http://h.test?
      http://h.test#f/? http://h.test/# http://h.test/?/?#/? http://h.test:8080/ http://h.test:0/
      http://h.test:65535/ http://h.test:/ http://[::1]:80/a http://[v7.x]/ http://1.2.3.4/
      http://256.1.1.1/ http://u:p:q@h.test/ http://h%41.test//a//b%C3%A9
      http://h.test/it's/a/../b;c=d ht+t-p.1://h.test/ //h.test/a /a/b a/b:c ../x ?q=1 #f http:
      http:a http:// http:///a http://?q file:///etc/hosts mailto:a@b.c)")) {
    SCOPED_TRACE(text);
    const auto url = URL::parse(text);
    ASSERT_TRUE(url);
    std::smatch of, in;
    ASSERT_TRUE(std::regex_match(text, of, parts));
    const std::string hostAndPort = of[4];
    ASSERT_TRUE(std::regex_match(hostAndPort, in, authority));
    const auto host = in[3].matched ? in[3] : in[4];
    EXPECT_EQ(url->absoluteString(), text);
    EXPECT_EQ(url->scheme(), matched(of[2]));
    EXPECT_EQ(url->host(), of[3].matched ? std::optional(host.str()) : std::nullopt);
    EXPECT_EQ(url->port() ? std::to_string(*url->port()) : "", in[6].str());
    EXPECT_EQ(url->path(), of[5].str());
    EXPECT_EQ(url->query(), matched(of[7]));
    EXPECT_EQ(url->fragment(), matched(of[9]));
    const URL copy = *url;
    EXPECT_EQ(copy.host(), url->host());
  }
}

TEST(URLTest, RejectsInvalidURLs) {
  std::vector<std::string> texts = words(
      R"(: :// ://h.test/ http://h.test/a"b http://h.test/<a> http://h.test/a[1]
         http://h.test/?a[0]=1 http://h.test/#a[0] http://h.test/a|b http://h.test/a^b
         http://h.test/a`b http://h.test/{id} http://h.test/a\b http://h.test/% http://h.test/a%2
         http://h.test/%zz http://h.test/#a#b http://[::1/a http://::1/a http://[zz]/ http://[]/
         http://h.test:65536/ http://h.test:99999999999/ http://h.test:8a/ http://h.test:-1/
         http://h.test:80:80/ http://u@@h.test/ 1http://h.test/ ht_tp://h.test/
         http://h.test/é http://é.test/)");
  for (const char* end : {"a b", " ", "a\nb", "\x7F", "a\r\nX-Y: 1"})
    texts.push_back(std::string("http://h.test/") + end);
  for (const std::string& text : {std::string(), std::string(" "), std::string(" http://h.test/"),
                                  std::string("http://h.test/\0", 15)})
    texts.push_back(text);
  for (const std::string& text : texts)
    EXPECT_FALSE(URL::parse(text)) << text;
}

// The examples of RFC 3986, sections 5.4.1 and 5.4.2.
TEST(URLTest, ResolvesReferences) {
  const auto base = URL::parse("http://a/b/c/d;p?q");
  std::istringstream references(R"(
      g:h            g:h                       g              http://a/b/c/g
      ./g            http://a/b/c/g            g/             http://a/b/c/g/
      /g             http://a/g                //g            http://g
      ?y             http://a/b/c/d;p?y        g?y            http://a/b/c/g?y
      #s             http://a/b/c/d;p?q#s      g#s            http://a/b/c/g#s
      g?y#s          http://a/b/c/g?y#s        ;x             http://a/b/c/;x
      g;x            http://a/b/c/g;x          g;x?y#s        http://a/b/c/g;x?y#s
      .              http://a/b/c/             ./             http://a/b/c/
      ..             http://a/b/               ../            http://a/b/
      ../g           http://a/b/g              ../..          http://a/
      ../../         http://a/                 ../../g        http://a/g
      ../../../g     http://a/g                ../../../../g  http://a/g
      /./g           http://a/g                /../g          http://a/g
      g.             http://a/b/c/g.           .g             http://a/b/c/.g
      g..            http://a/b/c/g..          ..g            http://a/b/c/..g
      ./../g         http://a/b/g              ./g/.          http://a/b/c/g/
      g/./h          http://a/b/c/g/h          g/../h         http://a/b/c/h
      g;x=1/./y      http://a/b/c/g;x=1/y      g;x=1/../y     http://a/b/c/y
      g?y/./x        http://a/b/c/g?y/./x      g?y/../x       http://a/b/c/g?y/../x
      g#s/./x        http://a/b/c/g#s/./x      g#s/../x       http://a/b/c/g#s/../x
      http:g         http:g                    //u:p@h.test:1 http://u:p@h.test:1
      http://[::1]:8/x? http://[::1]:8/x?)");
  for (std::string reference, target; references >> reference >> target;) {
    SCOPED_TRACE(reference);
    const auto resolved = base->resolving(*URL::parse(reference));
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->absoluteString(), target);
  }
  EXPECT_EQ(URL::parse("http://a")->resolving(*URL::parse("g"))->absoluteString(), "http://a/g");
  // Without an authority, the merged path may begin with dot segments, which are removed.
  EXPECT_EQ(URL::parse("m:x")->resolving(*URL::parse("../.././g"))->absoluteString(), "m:g");
  EXPECT_EQ(URL::parse("m:x")->resolving(*URL::parse(".."))->absoluteString(), "m:");
  EXPECT_FALSE(URL::parse("/no/scheme")->resolving(*URL::parse("g")));
}

}  // namespace
}  // namespace quorvelkit
