// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelPlatform/FatalError.h>

namespace quorvelkit {

namespace {

using detail::ValueAccess;

// Makes an index of the case that fits the kind of the value.
JSONIndex makeIndex(const ValueView& value, std::size_t position) noexcept {
  if (ValueAccess::isArray(value)) return JSONIndex::array(position);
  if (ValueAccess::isMap(value)) return JSONIndex::dictionary(position);
  return JSONIndex::null();
}

JSON::value_type pairAt(const ValueView& value, JSONIndex index) {
  const std::size_t position = index.position();
  switch (index.kind()) {
    case JSONIndex::Case::array:
      if (!ValueAccess::isArray(value) || position >= value.size()) break;
      return {std::to_string(position), JSON(value.element(position))};
    case JSONIndex::Case::dictionary: {
      if (!ValueAccess::isMap(value) || position >= value.size()) break;
      const auto [key, member] = value.memberAt(position);
      return JSON::value_type(key, JSON(member));
    }
    case JSONIndex::Case::null: return {};
  }
  fatalError("Index out of range");
}

}  // namespace

JSONIndex JSON::startIndex() const noexcept { return makeIndex(value_, 0); }
JSONIndex JSON::endIndex() const noexcept { return makeIndex(value_, value_.size()); }
JSON::Iterator JSON::begin() const noexcept { return {value_, startIndex()}; }
JSON::Iterator JSON::end() const noexcept { return {Value(), endIndex()}; }
JSON::value_type JSON::operator[](JSONIndex index) const { return pairAt(value_, index); }
JSON::value_type JSON::Iterator::operator*() const { return pairAt(value_, index_); }

}  // namespace quorvelkit
