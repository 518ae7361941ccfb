// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Value.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>

namespace quorvelkit {

using detail::ArrayCell;
using detail::ContainerCell;
using detail::DecimalCell;
using detail::destroyCell;
using detail::Document;
using detail::makeCell;
using detail::MapCell;
using detail::ReferenceCounted;
using detail::TextCell;
using detail::UnsupportedCell;
using detail::ValueAccess;
using detail::ValueTag;

void Value::setNumber(const Number& number) {
  std::visit(
      [&](const auto& stored) {
        if constexpr (std::is_same_v<decltype(stored), const Decimal&>) {
          ValueAccess::setCell(*this, makeCell<DecimalCell>(stored), ValueTag::decimal);
        } else {
          *this = Value(stored);
        }
      },
      number.value());
}

Value::Value(std::string text) {
  ValueAccess::setCell(*this, makeCell<TextCell>(std::move(text)), ValueTag::text);
}

Value::Value(ValueArray elements) {
  ValueAccess::setCell(*this, makeCell<ArrayCell>(std::move(elements)), ValueTag::array);
}

Value::Value(ValueMap members) {
  ValueAccess::setCell(*this, makeCell<MapCell>(std::move(members)), ValueTag::map);
}

Value Value::unsupported(std::any value) {
  Value result;
  ValueAccess::setCell(result, makeCell<UnsupportedCell>(std::move(value)), ValueTag::unsupported);
  return result;
}

std::optional<ValueArray> Value::elements() const {
  if (bits_.tag() == ValueTag::array) return ValueAccess::cell<ArrayCell>(*this).elements;
  if (bits_.tag() != ValueTag::frozenArray) return std::nullopt;
  ValueArray elements;
  const std::size_t count = size();
  elements.reserve(count);
  for (std::size_t i = 0; i < count; ++i)
    elements.emplace_back(Value(element(i)));
  return elements;
}

std::optional<ValueMap> Value::members() const {
  if (bits_.tag() == ValueTag::map) return ValueAccess::cell<MapCell>(*this).members;
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

// Removes a reference. Returns true if it was the last one.
bool removeReference(ReferenceCounted* cell) noexcept {
  return cell->count.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

}  // namespace

void Value::release() noexcept {
  const ValueTag tag = bits_.tag();
  ReferenceCounted* const cell = sharedCell();
  bits_ = {};
  if (!removeReference(cell)) return;
  switch (tag) {
    case ValueTag::decimal: destroyCell<DecimalCell>(cell); return;
    case ValueTag::longFailure:
    case ValueTag::text: destroyCell<TextCell>(cell); return;
    case ValueTag::unsupported: destroyCell<UnsupportedCell>(cell); return;
    case ValueTag::array:
    case ValueTag::map: ValueAccess::destroy(static_cast<ContainerCell*>(cell), tag); return;
    default: destroyCell<Document>(cell); return;
  }
}

namespace detail {

// Destroys a mutable container and those inside it, one after the other. The containers to destroy
// form a linked list, so that a deep value needs neither stack nor memory.
void ValueAccess::destroy(ContainerCell* cell, ValueTag tag) noexcept {
  cell->nextToDestroy = nullptr;
  cell->tag = tag;
  const auto release = [&](Value& child) {
    const ValueTag childTag = child.bits_.tag();
    if (childTag != ValueTag::array && childTag != ValueTag::map) return;
    auto* const childCell = static_cast<ContainerCell*>(child.sharedCell());
    child.bits_ = {};
    if (!removeReference(childCell)) return;
    childCell->tag = childTag;
    childCell->nextToDestroy = cell;
    cell = childCell;
  };
  while (cell) {
    ContainerCell* const container = std::exchange(cell, cell->nextToDestroy);
    if (container->tag == ValueTag::array) {
      auto* const array = static_cast<ArrayCell*>(container);
      for (Value& element : array->elements)
        release(element);
      destroyCell<ArrayCell>(array);
    } else {
      auto* const map = static_cast<MapCell*>(container);
      for (std::size_t i = 0; i < map->members.size(); ++i)
        release(map->members.valueAt(i));
      destroyCell<MapCell>(map);
    }
  }
}

Value ValueAccess::fromDocument(Document* document) noexcept {
  const ValueBits bits = document->bits(document->nodes[document->root]);
  Value value;
  value.bits_ = bits;
  if (bits.tag() < ValueTag::frozenText) destroyCell<Document>(document);
  return value;
}

bool ValueAccess::isUnsharedMutable(const Value& value) noexcept {
  const ValueTag tag = value.bits_.tag();
  return (tag == ValueTag::array || tag == ValueTag::map) &&
         value.sharedCell()->count.load(std::memory_order_acquire) == 1;
}

ValueArray& ValueAccess::mutableElements(Value& value) {
  if (!isUnsharedMutable(value)) value = Value(*value.elements());
  return mutableCell<ArrayCell>(value).elements;
}

ValueMap& ValueAccess::mutableMembers(Value& value) {
  if (!isUnsharedMutable(value)) value = Value(*value.members());
  return mutableCell<MapCell>(value).members;
}

}  // namespace detail
}  // namespace quorvelkit
