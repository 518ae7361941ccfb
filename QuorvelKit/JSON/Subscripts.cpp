// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Failure_p.h>
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelPlatform/FatalError.h>

namespace quorvelkit {

using detail::FailureReason;
using detail::ValueAccess;
using detail::ValueTag;

namespace {

// Returns a null value with an error. The value owns the reference of the bits, if there is one.
JSON failed(const detail::ValueBits& bits) {
  JSON json;
  ValueAccess::bits(ValueAccess::value(json)) = bits;
  return json;
}

// Returns the result of a read that does not fit the kind of the value: the value with the error
// that it has already, or a null with a new error.
template <class Step>
JSON failedOnWrongKind(const JSON& json, const Value& value, FailureReason reason, Step step) {
  switch (ValueAccess::tag(value)) {
    case ValueTag::unknown: return failed(detail::failureBits(FailureReason::unsupported));
    case ValueTag::failure:
    case ValueTag::longFailure: return json;
    default: return failed(detail::failureBits(reason, step));
  }
}

// Returns the child at a step; absent() if there is none.
ValueView childAt(ValueView value, const JSONKey& step) {
  if (step.kind() == JSONKey::Case::key) return ValueAccess::find(value, step.key());
  const bool inside = ValueAccess::isArray(value) && step.index() >= 0 &&
                      static_cast<std::size_t>(step.index()) < value.size();
  return inside ? value.element(static_cast<std::size_t>(step.index())) : ValueAccess::absent();
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

// Writes to an element or a member. Does nothing if the step does not fit the container.
void store(Value& container, const JSONKey& step, Value object) {
  if (step.kind() == JSONKey::Case::key) {
    if (ValueAccess::isMap(container)) {
      ValueAccess::mutableMembers(container).set(step.key(), std::move(object));
    }
  } else if (hasElement(container, step.index())) {
    const auto index = static_cast<std::size_t>(step.index());
    ValueAccess::mutableElements(container)[index] = std::move(object);
  }
}

}  // namespace

JSON JSON::elementAt(std::int64_t index) const {
  if (!ValueAccess::isArray(value_)) {
    return failedOnWrongKind(*this, value_, FailureReason::notAnArray, index);
  }
  if (index >= 0 && static_cast<std::size_t>(index) < value_.size()) {
    return JSON(value_.element(static_cast<std::size_t>(index)));
  }
  return failed(detail::failureBits(FailureReason::indexOutOfBounds, index));
}

JSON JSON::operator[](const KeyView& key) const {
  if (!ValueAccess::isMap(value_)) {
    return failedOnWrongKind(*this, value_, FailureReason::notADictionary, key.text());
  }
  const ValueView member = ValueAccess::find(value_, key);
  if (!ValueAccess::isAbsent(member)) return JSON(member);
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
    // The first step that fails determines the error.
    if (ValueAccess::isAbsent(child)) {
      return apply(&step == path.data() ? *this : JSON(current), step);
    }
    current = child;
  }
  return JSON(current);
}

void JSON::setElement(std::int64_t index, const JSON& value) {
  if (!hasError(value.value_) && ValueAccess::isArray(value_))
    store(value_, JSONKey(index), value.object());
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

void JSON::set(JSONPath path, const JSON& value) & {
  if (path.empty()) return;
  const JSONPath parents = path.first(path.size() - 1);
  // Checks all steps before the first copy, so that a write that fails copies nothing.
  ValueView parent = value_;
  for (const JSONKey& step : parents) {
    parent = childAt(parent, step);
    if (ValueAccess::isAbsent(parent)) return;
  }
  const JSONKey& last = path.back();
  const bool fits = last.kind() == JSONKey::Case::key ? ValueAccess::isMap(parent)
                                                      : hasElement(parent, last.index());
  if (!fits) return;
  Value object = value.object();
  Value* container = &value_;
  for (const JSONKey& step : parents) {
    container =
        step.kind() == JSONKey::Case::key
            ? ValueAccess::mutableMembers(*container).find(step.key())
            : &ValueAccess::mutableElements(*container)[static_cast<std::size_t>(step.index())];
  }
  store(*container, last, std::move(object));
}

}  // namespace quorvelkit
