// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/Value.h>

#include <any>
#include <bit>
#include <memory>
#include <string>
#include <utility>

namespace quorvelkit::detail {

// What the payload of a changeable value points to.
struct DecimalCell : Counted {
  explicit DecimalCell(Decimal d) : decimal(d) {}
  Decimal decimal;
};
struct TextCell : Counted {
  explicit TextCell(std::string t) : text(std::move(t)) {}
  std::string text;
};
struct UnsupportedCell : Counted {
  explicit UnsupportedCell(std::any t) : thing(std::move(t)) {}
  std::any thing;
};
// The rest of a container serves its destruction alone.
struct ContainerCell : Counted {
  ContainerCell* nextDead = nullptr;
  ValueTag tag = ValueTag::null;
};
struct ArrayCell : ContainerCell {
  explicit ArrayCell(ValueArray e) : elements(std::move(e)) {}
  ValueArray elements;
};
struct MapCell : ContainerCell {
  explicit MapCell(ValueMap m) : members(std::move(m)) {}
  ValueMap members;
};

// Cells count their owners by themselves: the first of these makes the first owner, the second is
// for whoever drops the last.
template <class Cell, class... Arguments>
Cell* makeCell(Arguments&&... arguments) {
  return std::make_unique<Cell>(std::forward<Arguments>(arguments)...).release();
}
template <class Cell>
void destroyCell(Counted* cell) noexcept {
  const std::unique_ptr<Cell> last(static_cast<Cell*>(cell));
}

// Reach into values, for the sources of this folder.
struct ValueCore {
  static const ValueBits& bits(const ValueView& view) noexcept { return view.bits_; }
  static ValueBits& bits(ValueView& view) noexcept { return view.bits_; }
  static ValueTag tag(const ValueView& view) noexcept { return view.bits_.tag(); }
  static ValueView view(const ValueBits& bits) noexcept {
    ValueView view;
    view.bits_ = bits;
    return view;
  }
  static Value& value(JSON& json) noexcept { return json.value_; }

  // A member of a map, absent() when there is none: a view that goes through registers, as an
  // optional one does not.
  static ValueView find(ValueView map, const KeyView& key) noexcept {
    return ValueView::find(map, key);
  }
  static ValueView absent() noexcept { return view({0, ValueView::absent}); }
  static bool isAbsent(ValueView view) noexcept { return view.bits_.word == ValueView::absent; }

  template <class Cell>
  static const Cell& cell(const ValueView& view) noexcept {
    return *static_cast<const Cell*>(counted(view.bits_));
  }
  template <class Cell>
  static Cell& mutableCell(Value& value) noexcept {
    return *static_cast<Cell*>(counted(value.bits_));
  }
  static const Document& document(const ValueView& view) noexcept { return cell<Document>(view); }
  static Counted* counted(const ValueBits& bits) noexcept {
    return std::bit_cast<Counted*>(bits.payload);
  }
  static std::uint64_t payload(Counted* counted) noexcept {
    return std::bit_cast<std::uint64_t>(counted);
  }

  // Makes the value hold the cell, whose count it takes over; the value must hold nothing counted.
  static void hold(Value& value, Counted* cell, ValueTag tag) noexcept {
    value.bits_ = ValueBits::make(payload(cell), tag);
  }
  // The root of a new document; a scalar does not keep the document.
  static Value take(Document* document) noexcept;
  static void destroy(ContainerCell* cell, ValueTag tag) noexcept;

  // Whether a value is an array or a map that may be written in place: no document's, nobody
  // else's.
  static bool isWritable(const Value& value) noexcept;
  // Make an array or a map such a value. Only this level is copied. Values of other kinds must not
  // be given.
  static ValueArray& writableElements(Value& value);
  static ValueMap& writableMembers(Value& value);

  static bool isArray(const ValueView& view) noexcept {
    return view.kind() == ValueView::Kind::array;
  }
  static bool isMap(const ValueView& view) noexcept { return view.kind() == ValueView::Kind::map; }
};

}  // namespace quorvelkit::detail
