// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Failure_p.h>
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelPlatform/FatalError.h>

namespace quorvelkit {

using detail::Document;
using detail::FailureReason;
using detail::Node;
using detail::ValueAccess;
using detail::ValueBits;
using detail::ValueTag;

namespace {

// Returns the bits of a child that a container holds, with a reference of their own.
ValueBits sharedBits(ValueView child) noexcept {
  const ValueBits& bits = ValueAccess::bits(child);
  if (bits.tag() < ValueTag::longFailure) return bits;
  if (bits.tag() == ValueTag::unsupported) return ValueBits::make(0, ValueTag::unknown);
  ValueAccess::sharedCell(bits)->count.fetch_add(1, std::memory_order_relaxed);
  return bits;
}

// Return the child at a step; absent() if there is none.
ValueView childAt(ValueView value, const KeyView& key) { return ValueAccess::find(value, key); }
ValueView childAt(ValueView value, std::int64_t index) {
  const auto position = static_cast<std::uint64_t>(index);  // out of range if the index is negative
  if (ValueAccess::tag(value) == ValueTag::frozenArray) {
    const Document& document = ValueAccess::document(value);
    const Node& array = document.nodes[ValueAccess::bits(value).node()];
    if (position >= array.count()) return ValueAccess::absent();
    const auto node = array.first() + static_cast<std::size_t>(position);
    return ValueAccess::view(document.bits(document.nodes[node]));
  }
  const bool inside = ValueAccess::isArray(value) && position < value.size();
  return inside ? value.element(static_cast<std::size_t>(position)) : ValueAccess::absent();
}
template <class Step>
ValueView childAtStep(ValueView value, const Step& step) {
  return step.kind() == JSONKey::Case::key ? childAt(value, step.key())
                                           : childAt(value, step.index());
}

// Returns the bits of the result of a read that does not fit the kind of the value: the error that
// the value has already, or a new one.
template <class Step>
ValueBits wrongKind(ValueView value, FailureReason reason, Step step) {
  switch (ValueAccess::tag(value)) {
    case ValueTag::unknown:
    case ValueTag::unsupported: return detail::failureBits(FailureReason::unsupported);
    case ValueTag::failure:
    case ValueTag::longFailure: return sharedBits(value);
    default: return detail::failureBits(reason, step);
  }
}

// Return the bits of a null with the error of a read that finds no child.
ValueBits noChild(ValueView value, const KeyView& key) {
  if (ValueAccess::isMap(value)) return detail::failureBits(FailureReason::notExist, key.text());
  return wrongKind(value, FailureReason::notADictionary, key.text());
}
ValueBits noChild(ValueView value, std::int64_t index) {
  if (ValueAccess::isArray(value)) {
    return detail::failureBits(FailureReason::indexOutOfBounds, index);
  }
  return wrongKind(value, FailureReason::notAnArray, index);
}

template <class Step>
ValueBits readChild(ValueView value, const Step& step) {
  const ValueView child = childAt(value, step);
  return ValueAccess::isAbsent(child) ? noChild(value, step) : sharedBits(child);
}

template <class Step>
ValueBits moveChild(Value& container, const Step& step) {
  const ValueView child = childAt(container, step);
  if (ValueAccess::isAbsent(child)) return noChild(container, step);
  // A text or a container of the same document.
  if (ValueAccess::tag(container) >= ValueTag::frozenText &&
      ValueAccess::tag(child) >= ValueTag::frozenText) {
    ValueAccess::bits(container) = {};
    return ValueAccess::bits(child);
  }
  return sharedBits(child);
}

template <class Step>
ValueBits readSteps(ValueView value, std::span<const Step> path) {
  for (const Step& step : path) {
    const ValueView child = childAtStep(value, step);
    // The first step that fails determines the error.
    if (ValueAccess::isAbsent(child)) {
      return step.kind() == JSONKey::Case::key ? noChild(value, step.key())
                                               : noChild(value, step.index());
    }
    value = child;
  }
  return sharedBits(value);
}

// Returns true if the value is an array with an element at the index. A negative index is a
// programming error.
bool hasElement(const ValueView& value, std::int64_t index) {
  if (!ValueAccess::isArray(value)) return false;
  if (index < 0) fatalError("Index out of range");
  return static_cast<std::size_t>(index) < value.size();
}

bool hasError(const Value& value) noexcept {
  const ValueTag tag = ValueAccess::tag(value);
  return tag == ValueTag::unknown || tag == ValueTag::failure || tag == ValueTag::longFailure;
}

std::string_view textOf(const std::string& key) { return key; }
std::string_view textOf(const KeyView& key) { return key.text(); }

// Returns the child at a step, for writing. It must exist. Copies one level of a shared container.
template <class Step>
Value& mutableChild(Value& container, const Step& step) {
  if (step.kind() == JSONKey::Case::key) {
    return *ValueAccess::mutableMembers(container).find(textOf(step.key()));
  }
  return ValueAccess::mutableElements(container)[static_cast<std::size_t>(step.index())];
}

template <class Step>
void writePath(Value& root, std::span<const Step> path, const JSON& value) {
  if (path.empty()) return;
  // Checks all steps before the first copy, so that a write that fails copies nothing.
  ValueView parent = root;
  for (const Step& step : path.first(path.size() - 1)) {
    parent = childAtStep(parent, step);
    if (ValueAccess::isAbsent(parent)) return;
  }
  const Step& last = path.back();
  const bool fits = last.kind() == JSONKey::Case::key ? ValueAccess::isMap(parent)
                                                      : hasElement(parent, last.index());
  if (!fits) return;
  Value object = value.object();
  Value* container = &root;
  // A key may refer to a text of the value itself: keeps what is copied alive until the end.
  Value original;
  const auto keepOriginal = [&] {
    if (original.isNull() && !ValueAccess::isUnsharedMutable(*container)) original = *container;
  };
  for (const Step& step : path.first(path.size() - 1)) {
    keepOriginal();
    container = &mutableChild(*container, step);
  }
  keepOriginal();
  if (last.kind() == JSONKey::Case::key) {
    ValueAccess::mutableMembers(*container).set(textOf(last.key()), std::move(object));
  } else {
    mutableChild(*container, last) = std::move(object);
  }
}

}  // namespace

namespace detail {

ValueBits readElement(ValueView array, std::int64_t index) { return readChild(array, index); }
ValueBits readMember(ValueView map, const KeyView& key) { return readChild(map, key); }
ValueBits readPath(ValueView value, JSONPath path) { return readSteps(value, path); }
ValueBits readPath(ValueView value, std::span<const JSONPathStep> path) {
  return readSteps(value, path);
}
ValueBits moveElement(Value& array, std::int64_t index) { return moveChild(array, index); }
ValueBits moveMember(Value& map, const KeyView& key) { return moveChild(map, key); }

}  // namespace detail

void JSON::setElement(std::int64_t index, const JSON& value) {
  if (hasError(value.value_) || !hasElement(value_, index)) return;
  Value object = value.object();
  ValueAccess::mutableElements(value_)[static_cast<std::size_t>(index)] = std::move(object);
}

void JSON::set(const KeyView& key, const JSON& value) & {
  if (hasError(value.value_) || !ValueAccess::isMap(value_)) return;
  Value object = value.object();
  // The key may refer to a text of the value itself: keeps the data alive while it is copied.
  const Value original = ValueAccess::isUnsharedMutable(value_) ? Value() : value_;
  ValueAccess::mutableMembers(value_).set(key.text(), std::move(object));
}

void JSON::setStep(const JSONKey& step, const JSON& value) {
  if (step.kind() == JSONKey::Case::key) {
    set(KeyView(step.key()), value);
  } else {
    setElement(step.index(), value);
  }
}

void JSON::set(JSONPath path, const JSON& value) & { writePath(value_, path, value); }
void JSON::setAt(std::span<const JSONPathStep> path, const JSON& value) {
  writePath(value_, path, value);
}

}  // namespace quorvelkit
