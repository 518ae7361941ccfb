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

// The reference-counted cells that values outside a document point to. The debugger's script reads
// their layout.
struct DecimalCell : ReferenceCounted {
  explicit DecimalCell(Decimal d) : decimal(d) {}
  Decimal decimal;
};
struct TextCell : ReferenceCounted {
  explicit TextCell(std::string t) : text(std::move(t)) {}
  std::string text;
};
struct UnsupportedCell : ReferenceCounted {
  explicit UnsupportedCell(std::any v) : value(std::move(v)) {}
  std::any value;
};
// A mutable container. The members here are used only for destruction: a list of cells to destroy.
struct ContainerCell : ReferenceCounted {
  ContainerCell* nextToDestroy = nullptr;
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

// Returns a cell with a reference count of 1.
template <class Cell, class... Arguments>
Cell* makeCell(Arguments&&... arguments) {
  return std::make_unique<Cell>(std::forward<Arguments>(arguments)...).release();
}
// Destroys a cell or a document whose reference count has become 0.
template <class Cell>
void destroyCell(ReferenceCounted* cell) noexcept {
  const std::unique_ptr<Cell> owner(static_cast<Cell*>(cell));
}

// Gives the sources of this folder access to the private members of values.
struct ValueAccess {
  static const ValueBits& bits(const ValueView& view) noexcept { return view.bits_; }
  static ValueBits& bits(ValueView& view) noexcept { return view.bits_; }
  static ValueTag tag(const ValueView& view) noexcept { return view.bits_.tag(); }
  static ValueView view(const ValueBits& bits) noexcept {
    ValueView view;
    view.bits_ = bits;
    return view;
  }
  static Value& value(JSON& json) noexcept { return json.value_; }
  static bool isArray(const ValueView& view) noexcept {
    return view.kind() == ValueView::Kind::array;
  }
  static bool isMap(const ValueView& view) noexcept { return view.kind() == ValueView::Kind::map; }

  // Returns the member of a map, or absent(). Faster than an optional, because a view is returned
  // in registers.
  static ValueView find(ValueView map, const KeyView& key) noexcept {
    return ValueView::find(map, key);
  }
  static ValueView absent() noexcept { return view({0, ValueView::absent}); }
  static bool isAbsent(ValueView view) noexcept { return view.bits_.word == ValueView::absent; }

  template <class Cell>
  static const Cell& cell(const ValueView& view) noexcept {
    return *static_cast<const Cell*>(sharedCell(view.bits_));
  }
  template <class Cell>
  static Cell& mutableCell(Value& value) noexcept {
    return *static_cast<Cell*>(sharedCell(value.bits_));
  }
  static const Document& document(const ValueView& view) noexcept { return cell<Document>(view); }
  static ReferenceCounted* sharedCell(const ValueBits& bits) noexcept {
    return std::bit_cast<ReferenceCounted*>(bits.payload);
  }
  static std::uint64_t payload(ReferenceCounted* cell) noexcept {
    return std::bit_cast<std::uint64_t>(cell);
  }

  // Makes the value an owner of the cell without changing the reference count. The value must be a
  // scalar before.
  static void setCell(Value& value, ReferenceCounted* cell, ValueTag tag) noexcept {
    value.bits_ = ValueBits::make(payload(cell), tag);
  }
  // Returns the root value of a new document. Destroys the document if the root is a scalar.
  static Value fromDocument(Document* document) noexcept;
  static void destroy(ContainerCell* cell, ValueTag tag) noexcept;

  // Returns true if the value is a mutable container with one owner: it can be written in place.
  static bool isUnsharedMutable(const Value& value) noexcept;
  // Return the elements or members for writing. Copy one level of the container first, unless it is
  // isUnsharedMutable(). The value must be an array or a map, respectively.
  static ValueArray& mutableElements(Value& value);
  static ValueMap& mutableMembers(Value& value);
};

}  // namespace quorvelkit::detail
