// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/ValueCore_p.h>

#include <vector>

namespace quorvelkit {

namespace {

using detail::ValueCore;
using detail::ValueTag;
using Kind = ValueView::Kind;

// Two containers on the way through their children.
struct Pair {
  ValueView a;
  ValueView b;
  std::size_t next;
};

bool isContainer(Kind kind) noexcept { return kind == Kind::array || kind == Kind::map; }

bool sameNumber(const ValueView& a, const ValueView& b) {
  const detail::ValueBits& x = ValueCore::bits(a);
  const detail::ValueBits& y = ValueCore::bits(b);
  if (x.tag() == y.tag() && x.tag() == ValueTag::int64) return x.payload == y.payload;
  return Number::compare(*a.storedNumber(), *b.storedNumber()) == 0;
}

// Whether both are the same node of one document, hence equal without a look at the children.
bool sameNode(const ValueView& a, const ValueView& b) noexcept {
  const detail::ValueBits& x = ValueCore::bits(a);
  const detail::ValueBits& y = ValueCore::bits(b);
  return x.tag() >= ValueTag::frozenText && x.tag() == y.tag() && x.payload == y.payload &&
         x.node() == y.node();
}

// Whether both are the same as far as this level shows.
bool sameSurface(const ValueView& a, const ValueView& b) {
  if (a.kind() != b.kind()) return false;
  switch (a.kind()) {
    case Kind::null: return true;
    case Kind::boolean: return a.boolean() == b.boolean();
    case Kind::number: return sameNumber(a, b);
    case Kind::text: return a.text() == b.text();
    case Kind::array:
    case Kind::map: return a.size() == b.size();
    case Kind::unsupported: return false;
  }
  return false;
}

}  // namespace

bool operator==(const ValueView& a, const ValueView& b) {
  if (!sameSurface(a, b)) return false;
  if (!isContainer(a.kind())) return true;
  std::vector<Pair> open{{a, b, 0}};
  while (!open.empty()) {
    Pair& pair = open.back();
    if (pair.next == pair.a.size() || sameNode(pair.a, pair.b)) {
      open.pop_back();
      continue;
    }
    const std::size_t i = pair.next++;
    Pair child{{}, {}, 0};
    if (ValueCore::isArray(pair.a)) {
      child.a = pair.a.element(i);
      child.b = pair.b.element(i);
    } else {
      const auto [key, value] = pair.a.memberAt(i);
      const std::optional<ValueView> other = pair.b.member(key);
      if (!other) return false;
      child.a = value;
      child.b = *other;
    }
    if (!sameSurface(child.a, child.b)) return false;
    if (isContainer(child.a.kind())) open.push_back(child);
  }
  return true;
}

bool operator==(const JSON& a, const JSON& b) {
  return a.type() == b.type() && a.type() != JSON::Type::unknown && a.view() == b.view();
}

std::partial_ordering operator<=>(const JSON& a, const JSON& b) {
  if (a.type() == b.type()) {
    if (a.type() == JSON::Type::number) return *a.number() <=> *b.number();
    if (a.type() == JSON::Type::string) return *a.view().text() <=> *b.view().text();
  }
  return a == b ? std::partial_ordering::equivalent : std::partial_ordering::unordered;
}

}  // namespace quorvelkit
