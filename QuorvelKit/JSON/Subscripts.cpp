// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Failure_p.h>
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueCore_p.h>
#include <QuorvelPlatform/FatalError.h>

namespace quorvelkit {

using detail::FailureReason;
using detail::ValueCore;
using detail::ValueTag;

namespace {

// A null value with an error. The value takes over the count of the bits.
JSON failed(const detail::ValueBits& bits) {
  JSON json;
  ValueCore::bits(ValueCore::value(json)) = bits;
  return json;
}

// What a read of the wrong kind gives: the error that the value has already, or a new one.
template <class Step>
JSON failedOnWrongKind(const JSON& json, const Value& value, FailureReason reason, Step step) {
  switch (ValueCore::tag(value)) {
    case ValueTag::unknown: return failed(detail::failureBits(FailureReason::unsupported));
    case ValueTag::failure:
    case ValueTag::longFailure: return json;
    default: return failed(detail::failureBits(reason, step));
  }
}

// The child that the step leads to, absent() when there is none.
ValueView childAt(ValueView value, const JSONKey& step) {
  if (step.kind() == JSONKey::Case::key) return ValueCore::find(value, step.key());
  const bool inside = ValueCore::isArray(value) && step.index() >= 0 &&
                      static_cast<std::size_t>(step.index()) < value.size();
  return inside ? value.element(static_cast<std::size_t>(step.index())) : ValueCore::absent();
}

// Whether an array has room for a write at the index, which must not be negative.
bool takesIndex(const ValueView& value, std::int64_t index) {
  if (!ValueCore::isArray(value)) return false;
  if (index < 0) fatalError("Index out of range");
  return static_cast<std::size_t>(index) < value.size();
}

void store(Value& container, const JSONKey& step, Value object) {
  if (step.kind() == JSONKey::Case::key) {
    if (ValueCore::isMap(container)) {
      ValueCore::writableMembers(container).set(step.key(), std::move(object));
    }
  } else if (takesIndex(container, step.index())) {
    const auto index = static_cast<std::size_t>(step.index());
    ValueCore::writableElements(container)[index] = std::move(object);
  }
}

}  // namespace

JSON JSON::elementAt(std::int64_t index) const {
  if (!ValueCore::isArray(value_)) {
    return failedOnWrongKind(*this, value_, FailureReason::notAnArray, index);
  }
  if (index >= 0 && static_cast<std::size_t>(index) < value_.size()) {
    return JSON(value_.element(static_cast<std::size_t>(index)));
  }
  return failed(detail::failureBits(FailureReason::indexOutOfBounds, index));
}

JSON JSON::operator[](const KeyView& key) const {
  if (!ValueCore::isMap(value_)) {
    return failedOnWrongKind(*this, value_, FailureReason::notADictionary, key.text());
  }
  const ValueView member = ValueCore::find(value_, key);
  if (!ValueCore::isAbsent(member)) return JSON(member);
  return failed(detail::failureBits(FailureReason::notExist, key.text()));
}

JSON JSON::at(JSONPath path) const {
  const auto apply = [](const JSON& json, const JSONKey& step) {
    return step.kind() == JSONKey::Case::key ? json[KeyView(step.key())]
                                             : json.elementAt(step.index());
  };
  if (path.empty()) return *this;
  if (path.size() == 1) return apply(*this, path[0]);
  ValueView current = value_;
  for (const JSONKey& step : path) {
    const ValueView child = childAt(current, step);
    // The first step that does not fit decides about the error.
    if (ValueCore::isAbsent(child)) {
      return apply(&step == path.data() ? *this : JSON(current), step);
    }
    current = child;
  }
  return JSON(current);
}

void JSON::setElement(std::int64_t index, const JSON& value) {
  const ValueTag tag = ValueCore::tag(value.value_);
  const bool hasError =
      tag == ValueTag::unknown || tag == ValueTag::failure || tag == ValueTag::longFailure;
  if (!hasError && ValueCore::isArray(value_)) store(value_, JSONKey(index), value.object());
}

void JSON::set(const KeyView& key, const JSON& value) & {
  const ValueTag tag = ValueCore::tag(value.value_);
  const bool hasError =
      tag == ValueTag::unknown || tag == ValueTag::failure || tag == ValueTag::longFailure;
  if (hasError || !ValueCore::isMap(value_)) return;
  Value object = value.object();
  // The key may be a text of the members that a copy takes the place of.
  const Value before = ValueCore::isWritable(value_) ? Value() : value_;
  ValueCore::writableMembers(value_).set(key.text(), std::move(object));
}

void JSON::setStep(const JSONKey& step, const JSON& value) {
  if (step.kind() == JSONKey::Case::key) {
    set(KeyView(step.key()), value);
  } else {
    setElement(step.index(), value);
  }
}

void JSON::set(JSONPath path, const JSON& value) & {
  if (path.empty()) return;
  const JSONPath parents = path.first(path.size() - 1);
  // Look before anything is made writable, so that a write that fits nowhere copies nothing.
  ValueView seen = value_;
  for (const JSONKey& step : parents) {
    seen = childAt(seen, step);
    if (ValueCore::isAbsent(seen)) return;
  }
  const JSONKey& last = path.back();
  const bool fits =
      last.kind() == JSONKey::Case::key ? ValueCore::isMap(seen) : takesIndex(seen, last.index());
  if (!fits) return;
  Value object = value.object();
  Value* container = &value_;
  for (const JSONKey& step : parents) {
    container =
        step.kind() == JSONKey::Case::key
            ? ValueCore::writableMembers(*container).find(step.key())
            : &ValueCore::writableElements(*container)[static_cast<std::size_t>(step.index())];
  }
  store(*container, last, std::move(object));
}

}  // namespace quorvelkit
