// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelKit/JSON/ValueView.h>

namespace quorvelkit {

using detail::ArrayCell;
using detail::DecimalCell;
using detail::Document;
using detail::MapCell;
using detail::Node;
using detail::TextCell;
using detail::ValueAccess;
using detail::ValueTag;

std::optional<Number> ValueView::storedNumber() const {
  switch (bits_.tag()) {
    case ValueTag::false_: return Number(false);
    case ValueTag::true_: return Number(true);
    case ValueTag::int64: return Number(static_cast<std::int64_t>(bits_.payload));
    case ValueTag::uint64: return Number(bits_.payload);
    case ValueTag::float64: return Number(std::bit_cast<double>(bits_.payload));
    case ValueTag::decimal: return Number(ValueAccess::cell<DecimalCell>(*this).decimal);
    default: return std::nullopt;
  }
}

// Converts a number that is not stored as int64. Returns false if it is not exactly an int64.
bool ValueView::convertToInt64(std::int64_t& integer) const {
  if (kind() != Kind::number) return false;
  const std::optional<std::int64_t> exact = storedNumber()->exactInt64();
  integer = exact.value_or(0);
  return exact.has_value();
}

std::optional<std::string_view> ValueView::text() const noexcept {
  if (bits_.tag() == ValueTag::frozenText)
    return ValueAccess::document(*this).nodeText(bits_.node());
  if (bits_.tag() == ValueTag::text)
    return std::string_view(ValueAccess::cell<TextCell>(*this).text);
  return std::nullopt;
}

std::size_t ValueView::size() const noexcept {
  switch (bits_.tag()) {
    case ValueTag::frozenArray:
    case ValueTag::frozenMap: return ValueAccess::document(*this).nodes[bits_.node()].count();
    case ValueTag::array: return ValueAccess::cell<ArrayCell>(*this).elements.size();
    case ValueTag::map: return ValueAccess::cell<MapCell>(*this).members.size();
    default: return 0;
  }
}

ValueView ValueView::elementOf(ValueView array, std::size_t index) noexcept {
  if (array.bits_.tag() == ValueTag::frozenArray) {
    const Document& document = ValueAccess::document(array);
    const Node& node = document.nodes[array.bits_.node()];
    if (index >= node.count()) return {};
    return ValueAccess::view(document.bits(document.nodes[node.first() + index]));
  }
  if (array.bits_.tag() == ValueTag::array) {
    const ValueArray& elements = ValueAccess::cell<ArrayCell>(array).elements;
    if (index < elements.size()) return elements[index];
  }
  return {};
}

std::pair<std::string_view, ValueView> ValueView::memberAt(std::size_t index) const noexcept {
  if (bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueAccess::document(*this);
    const Node& node = document.nodes[bits_.node()];
    if (index >= node.count()) return {};
    const Node& member = document.nodes[node.first() + index];
    return {document.keyText(member.key.number), ValueAccess::view(document.bits(member))};
  }
  if (bits_.tag() == ValueTag::map) {
    const ValueMap& members = ValueAccess::cell<MapCell>(*this).members;
    if (index < members.size()) return {members.at(index).first, members.at(index).second};
  }
  return {};
}

ValueView ValueView::find(ValueView map, const KeyView& key) noexcept {
  if (map.bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueAccess::document(map);
    const Node& node = document.nodes[map.bits_.node()];
    if (Document::isShortKeyOfSmallMap(node, key)) {
      const Node* const member = document.memberByShortKey(node, key);
      return ValueAccess::view(member ? document.bits(*member) : detail::ValueBits{0, absent});
    }
  }
  return findGeneral(map, key);
}

// A function of its own, so that find() calls no function for a short key of a small map.
ValueView ValueView::findGeneral(ValueView map, const KeyView& key) noexcept {
  if (map.bits_.tag() == ValueTag::frozenMap) {
    const Document& document = ValueAccess::document(map);
    const Node* const node = document.member(document.nodes[map.bits_.node()], key);
    if (node) return ValueAccess::view(document.bits(*node));
  } else if (map.bits_.tag() == ValueTag::map) {
    const Value* value = ValueAccess::cell<MapCell>(map).members.find(key.text());
    if (value) return *value;
  }
  return ValueAccess::view({0, absent});
}

const std::any* ValueView::unsupported() const noexcept {
  if (bits_.tag() != ValueTag::unsupported) return nullptr;
  return &ValueAccess::cell<detail::UnsupportedCell>(*this).value;
}

}  // namespace quorvelkit
