// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/ValueCore_p.h>
#include <QuorvelKit/JSON/ValueView.h>

namespace quorvelkit {

using detail::ArrayCell;
using detail::DecimalCell;
using detail::Document;
using detail::MapCell;
using detail::Node;
using detail::TextCell;
using detail::ValueCore;
using detail::ValueTag;

std::optional<Number> ValueView::storedNumber() const {
  switch (bits_.tag()) {
    case ValueTag::false_: return Number(false);
    case ValueTag::true_: return Number(true);
    case ValueTag::int64: return Number(static_cast<std::int64_t>(bits_.payload));
    case ValueTag::uint64: return Number(bits_.payload);
    case ValueTag::float64: return Number(std::bit_cast<double>(bits_.payload));
    case ValueTag::decimal: return Number(ValueCore::cell<DecimalCell>(*this).decimal);
    default: return std::nullopt;
  }
}

// Whether a number that is not stored as such an integer is exactly one.
bool ValueView::otherInt64(std::int64_t& integer) const {
  if (kind() != Kind::number) return false;
  const std::optional<std::int64_t> exact = storedNumber()->exactInt64();
  integer = exact.value_or(0);
  return exact.has_value();
}

std::optional<std::string_view> ValueView::text() const noexcept {
  if (bits_.tag() == ValueTag::frozenText) return ValueCore::document(*this).nodeText(bits_.node());
  if (bits_.tag() == ValueTag::text) return std::string_view(ValueCore::cell<TextCell>(*this).text);
  return std::nullopt;
}

std::size_t ValueView::size() const noexcept {
  switch (bits_.tag()) {
    case ValueTag::frozenArray:
    case ValueTag::frozenMap: return ValueCore::document(*this).nodes[bits_.node()].count();
    case ValueTag::array: return ValueCore::cell<ArrayCell>(*this).elements.size();
    case ValueTag::map: return ValueCore::cell<MapCell>(*this).members.size();
    default: return 0;
  }
}

ValueView ValueView::elementOf(ValueView array, std::size_t index) noexcept {
  if (array.bits_.tag() == ValueTag::frozenArray) {
    const Document& document = ValueCore::document(array);
    const Node& node = document.nodes[array.bits_.node()];
    if (index >= node.count()) return {};
    return ValueCore::view(document.bits(document.nodes[node.first() + index]));
  }
  if (array.bits_.tag() == ValueTag::array) {
    const ValueArray& elements = ValueCore::cell<ArrayCell>(array).elements;
    if (index < elements.size()) return elements[index];
  }
  return {};
}

std::pair<std::string_view, ValueView> ValueView::memberAt(std::size_t index) const noexcept {
  if (bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueCore::document(*this);
    const Node& node = document.nodes[bits_.node()];
    if (index >= node.count()) return {};
    const Node& member = document.nodes[node.first() + index];
    return {document.keyText(member.key()), ValueCore::view(document.bits(member))};
  }
  if (bits_.tag() == ValueTag::map) {
    const ValueMap& members = ValueCore::cell<MapCell>(*this).members;
    if (index < members.size()) return {members.at(index).first, members.at(index).second};
  }
  return {};
}

ValueView ValueView::find(ValueView map, const KeyView& key) noexcept {
  if (map.bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueCore::document(map);
    const Node& node = document.nodes[map.bits_.node()];
    if (Document::isQuick(node, key)) {
      const Node* const member = document.quickMember(node, key);
      return ValueCore::view(member ? document.bits(*member) : detail::ValueBits{0, absent});
    }
  }
  return findInAny(map, key);
}

// Apart, so that the quick way calls nothing.
ValueView ValueView::findInAny(ValueView map, const KeyView& key) noexcept {
  if (map.bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueCore::document(map);
    const Node* const node = document.memberOfAnySize(document.nodes[map.bits_.node()], key);
    if (node) return ValueCore::view(document.bits(*node));
  } else if (map.bits_.tag() == ValueTag::map) {
    const Value* value = ValueCore::cell<MapCell>(map).members.find(key.text());
    if (value) return *value;
  }
  return ValueCore::view({0, absent});
}

const std::any* ValueView::unsupported() const noexcept {
  if (bits_.tag() != ValueTag::unsupported) return nullptr;
  return &ValueCore::cell<detail::UnsupportedCell>(*this).thing;
}

}  // namespace quorvelkit
