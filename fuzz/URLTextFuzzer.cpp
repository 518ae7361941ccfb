// SPDX-License-Identifier: Apache-2.0
#include "Fuzzing.h"

#include <QuorvelPlatform/URL.h>

#include <sstream>

using namespace quorvelkit;
using namespace quorvelkit::fuzz;

// Input: a URL, and a relative reference on a second line. The parts of the URL make up its text;
// the resolved reference keeps the host.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text = textOf(bytes, size);
  const std::string first = text.substr(0, text.find('\n'));
  const auto url = URL::parse(first);
  if (!url) return 0;
  require(url->absoluteString() == first);
  require(first.find_first_of(std::string(" \"<>\\^`{|}\0\x7F", 12)) == std::string::npos);
  const auto isIn = [&](const auto& part, const std::string& before, const std::string& behind) {
    return !part || first.find(before + std::string(*part) + behind) != std::string::npos;
  };
  const bool isBracketed = url->host() && url->host()->find(':') != std::string_view::npos;
  require(isIn(url->scheme(), "", ":") && isIn(url->userInfo(), "//", "@") &&
          isIn(url->host(), isBracketed ? "[" : "", isBracketed ? "]" : ""));
  std::string end(url->path());
  if (url->query()) end.append("?").append(*url->query());
  if (url->fragment()) end.append("#").append(*url->fragment());
  require(first.ends_with(end));
  std::ostringstream printed;
  printed << *url;
  require(printed.str().size() + (url->userInfo() ? url->userInfo()->size() + 1 : 0) ==
          first.size());

  const auto reference = URL::parse(text.substr(std::min(first.size() + 1, text.size())));
  if (!reference) return 0;
  const auto target = url->resolving(*reference);
  require(!target || target->scheme());
  require(url->scheme() || !target);
  if (!target || !url->host()) return 0;
  require(("/" + std::string(target->path()) + "/").find("/../") == std::string::npos);
  const bool isElsewhere = reference->scheme() || reference->host();
  require(isElsewhere || (target->host() == url->host() && target->port() == url->port()));
  return 0;
}
