// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Value.h>
#include <QuorvelKit/JSON/ValueCore_p.h>

namespace quorvelkit {

using detail::ArrayCell;
using detail::ContainerCell;
using detail::Counted;
using detail::DecimalCell;
using detail::destroyCell;
using detail::Document;
using detail::makeCell;
using detail::MapCell;
using detail::TextCell;
using detail::UnsupportedCell;
using detail::ValueCore;
using detail::ValueTag;

void Value::setNumber(const Number& number) {
  std::visit(
      [&](const auto& stored) {
        if constexpr (std::is_same_v<decltype(stored), const Decimal&>) {
          ValueCore::hold(*this, makeCell<DecimalCell>(stored), ValueTag::decimal);
        } else {
          *this = Value(stored);
        }
      },
      number.value());
}

Value::Value(std::string text) {
  ValueCore::hold(*this, makeCell<TextCell>(std::move(text)), ValueTag::text);
}

Value::Value(ValueArray elements) {
  ValueCore::hold(*this, makeCell<ArrayCell>(std::move(elements)), ValueTag::array);
}

Value::Value(ValueMap members) {
  ValueCore::hold(*this, makeCell<MapCell>(std::move(members)), ValueTag::map);
}

Value Value::unsupported(std::any thing) {
  Value value;
  ValueCore::hold(value, makeCell<UnsupportedCell>(std::move(thing)), ValueTag::unsupported);
  return value;
}

std::optional<ValueArray> Value::elements() const {
  if (bits_.tag() == ValueTag::array) return ValueCore::cell<ArrayCell>(*this).elements;
  if (bits_.tag() != ValueTag::frozenArray) return std::nullopt;
  ValueArray elements;
  const std::size_t count = size();
  elements.reserve(count);
  for (std::size_t i = 0; i < count; ++i)
    elements.emplace_back(Value(element(i)));
  return elements;
}

std::optional<ValueMap> Value::members() const {
  if (bits_.tag() == ValueTag::map) return ValueCore::cell<MapCell>(*this).members;
  if (bits_.tag() != ValueTag::frozenMap) return std::nullopt;
  ValueMap members;
  const std::size_t count = size();
  members.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto [key, value] = memberAt(i);
    members.set(key, Value(value));
  }
  return members;
}

namespace {

bool dropsLast(Counted* counted) noexcept {
  return counted->count.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

}  // namespace

void Value::release() noexcept {
  const ValueTag tag = bits_.tag();
  Counted* const cell = counted();
  bits_ = {};
  if (!dropsLast(cell)) return;
  switch (tag) {
    case ValueTag::decimal: destroyCell<DecimalCell>(cell); return;
    case ValueTag::longFailure:
    case ValueTag::text: destroyCell<TextCell>(cell); return;
    case ValueTag::unsupported: destroyCell<UnsupportedCell>(cell); return;
    case ValueTag::array:
    case ValueTag::map: ValueCore::destroy(static_cast<ContainerCell*>(cell), tag); return;
    default: destroyCell<Document>(cell); return;
  }
}

namespace detail {

// Containers below a dying one are not destroyed inside its destructor but after it, in a list
// that runs through them, so that depth costs neither stack nor memory.
void ValueCore::destroy(ContainerCell* cell, ValueTag tag) noexcept {
  cell->nextDead = nullptr;
  cell->tag = tag;
  const auto bury = [&](Value& child) {
    const ValueTag childTag = child.bits_.tag();
    if (childTag != ValueTag::array && childTag != ValueTag::map) return;
    auto* const childCell = static_cast<ContainerCell*>(child.counted());
    child.bits_ = {};
    if (!dropsLast(childCell)) return;
    childCell->tag = childTag;
    childCell->nextDead = cell;
    cell = childCell;
  };
  while (cell) {
    ContainerCell* const dying = std::exchange(cell, cell->nextDead);
    if (dying->tag == ValueTag::array) {
      auto* const array = static_cast<ArrayCell*>(dying);
      for (Value& element : array->elements)
        bury(element);
      destroyCell<ArrayCell>(array);
    } else {
      auto* const map = static_cast<MapCell*>(dying);
      for (std::size_t i = 0; i < map->members.size(); ++i)
        bury(map->members.valueAt(i));
      destroyCell<MapCell>(map);
    }
  }
}

Value ValueCore::take(Document* document) noexcept {
  const ValueBits bits = document->bits(document->nodes[document->root]);
  Value value;
  value.bits_ = bits;
  if (bits.tag() < ValueTag::frozenText) destroyCell<Document>(document);
  return value;
}

bool ValueCore::isWritable(const Value& value) noexcept {
  const ValueTag tag = value.bits_.tag();
  return (tag == ValueTag::array || tag == ValueTag::map) &&
         value.counted()->count.load(std::memory_order_acquire) == 1;
}

ValueArray& ValueCore::writableElements(Value& value) {
  if (!isWritable(value)) value = Value(*value.elements());
  return mutableCell<ArrayCell>(value).elements;
}

ValueMap& ValueCore::writableMembers(Value& value) {
  if (!isWritable(value)) value = Value(*value.members());
  return mutableCell<MapCell>(value).members;
}

}  // namespace detail
}  // namespace quorvelkit
