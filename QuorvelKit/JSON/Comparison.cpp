// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/ValueAccess_p.h>

#include <vector>

namespace quorvelkit {

namespace {

using detail::ValueAccess;
using detail::ValueTag;
using Kind = ValueView::Kind;

// Two containers whose children are being compared.
struct Pair {
  ValueView a;
  ValueView b;
  std::size_t nextChild;
};

bool isContainer(Kind kind) noexcept { return kind == Kind::array || kind == Kind::map; }

bool equalNumbers(const ValueView& a, const ValueView& b) {
  const detail::ValueBits& x = ValueAccess::bits(a);
  const detail::ValueBits& y = ValueAccess::bits(b);
  if (x.tag() == y.tag() && x.tag() == ValueTag::int64) return x.payload == y.payload;
  return Number::compare(*a.storedNumber(), *b.storedNumber()) == 0;
}

// Returns true if both values are the same node of one document, hence equal.
bool isSameNode(const ValueView& a, const ValueView& b) noexcept {
  const detail::ValueBits& x = ValueAccess::bits(a);
  const detail::ValueBits& y = ValueAccess::bits(b);
  return x.tag() >= ValueTag::frozenText && x.tag() == y.tag() && x.payload == y.payload &&
         x.node() == y.node();
}

// Compares two values without the children of containers.
bool equalExceptChildren(const ValueView& a, const ValueView& b) {
  if (a.kind() != b.kind()) return false;
  switch (a.kind()) {
    case Kind::null: return true;
    case Kind::boolean: return a.boolean() == b.boolean();
    case Kind::number: return equalNumbers(a, b);
    case Kind::text: return a.text() == b.text();
    case Kind::array:
    case Kind::map: return a.size() == b.size();
    case Kind::unsupported: return false;
  }
  return false;
}

}  // namespace

bool operator==(const ValueView& a, const ValueView& b) {
  if (!equalExceptChildren(a, b)) return false;
  if (!isContainer(a.kind())) return true;
  std::vector<Pair> open{{a, b, 0}};
  while (!open.empty()) {
    Pair& pair = open.back();
    if (pair.nextChild == pair.a.size() || isSameNode(pair.a, pair.b)) {
      open.pop_back();
      continue;
    }
    const std::size_t i = pair.nextChild++;
    Pair child{{}, {}, 0};
    if (ValueAccess::isArray(pair.a)) {
      child.a = pair.a.element(i);
      child.b = pair.b.element(i);
    } else {
      const auto [key, value] = pair.a.memberAt(i);
      const std::optional<ValueView> other = pair.b.member(key);
      if (!other) return false;
      child.a = value;
      child.b = *other;
    }
    if (!equalExceptChildren(child.a, child.b)) return false;
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
