// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/GrowingArray_p.h>
#include <QuorvelKit/JSON/KeyPositions_p.h>
#include <QuorvelKit/JSON/Value.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace quorvelkit::detail {

// The number and the hash of a member's key. The lowest byte of the second word is left free for
// the tag of a node. Values without a key, such as elements of arrays, have zeros.
struct MemberKey {
  std::uint32_t number = 0;
  std::uint32_t hashAndTag = 0;

  static MemberKey make(std::uint32_t number, std::uint32_t hash) noexcept {
    return {number, hash << 8U};
  }
  std::uint32_t hash() const noexcept { return hashAndTag >> 8U; }
};

// One value of a document. The payload holds a scalar itself. For a string it holds the range of
// its bytes in the string table, for a container the range of its children in the node array:
// first and count, 32 bits each.
struct Node {
  std::uint64_t payload = 0;
  MemberKey key;

  static Node make(std::uint64_t payload, ValueTag tag, MemberKey key) noexcept {
    return {payload, {key.number, key.hashAndTag | static_cast<std::uint32_t>(tag)}};
  }
  ValueTag tag() const noexcept { return static_cast<ValueTag>(key.hashAndTag & 0xFFU); }
  std::uint32_t first() const noexcept { return static_cast<std::uint32_t>(payload); }
  std::uint32_t count() const noexcept { return static_cast<std::uint32_t>(payload >> 32U); }

  static std::uint64_t range(std::size_t first, std::size_t count) noexcept {
    return (std::uint64_t{count} << 32U) | static_cast<std::uint32_t>(first);
  }
};
static_assert(sizeof(Node) == 16);

// A parsed document. Immutable once the parser has returned it, hence safe to read from any thread.
// The children of a container are contiguous in the node array. The last member of a large map is
// followed by one more node, whose range is the index of the map.
struct Document : ReferenceCounted {
  struct Key {
    std::uint64_t front;  // KeyView::front()
    std::uint32_t offset;
    std::uint32_t length;
  };
  // The number of members from which a map has an index.
  static constexpr std::uint32_t largeMapSize = 64;

  std::size_t memorySize() const noexcept {
    return sizeof(Document) + nodes.capacityBytes() + stringTable.capacityBytes() +
           keys.capacityBytes() + indexes.capacityBytes();
  }
  std::string_view keyText(std::uint32_t keyNumber) const noexcept {
    return {stringTable.data() + keys[keyNumber].offset, keys[keyNumber].length};
  }
  std::string_view nodeText(std::uint32_t node) const noexcept {
    const Node& n = nodes[node];
    return n.count() == 0 ? std::string_view()
                          : std::string_view(stringTable.data() + n.first(), n.count());
  }
  // The positions of the members of a large map, sorted by hash, then by text.
  const std::uint32_t* index(const Node& map) const noexcept {
    return indexes.data() + nodes[map.first() + map.count()].first();
  }
  // The bits of a value that refers to the node.
  ValueBits bits(const Node& node) const noexcept {
    const ValueTag tag = node.tag();
    if (tag < ValueTag::frozenText) return ValueBits::make(node.payload, tag);
    const auto* const self = static_cast<const ReferenceCounted*>(this);
    return ValueBits::make(reinterpret_cast<std::uintptr_t>(self), tag,
                           static_cast<std::uint32_t>(&node - nodes.data()));
  }

  // The member of a map with the key; null if there is none.
  const Node* member(const Node& map, const KeyView& key) const noexcept;
  // The same for a short key of a small map, which is the usual case. Inline, since it compares
  // only integers.
  static bool isShortKeyOfSmallMap(const Node& map, const KeyView& key) noexcept {
    return map.count() < largeMapSize && key.text().size() <= sizeof(Key::front);
  }
  const Node* memberByShortKey(const Node& map, const KeyView& key) const noexcept {
    return memberOfSmallMap(map, key, [&](const Node& node) {
      if (node.key.hash() != key.hash()) return false;
      const Key& found = keys[node.key.number];
      return found.front == key.front() && found.length == key.text().size();
    });
  }

  // The debugger's script reads the arrays by their offsets.
  KeyPositions keyPositions;  // Valid for small maps.
  GrowingArray<Node> nodes;
  GrowingArray<char> stringTable;
  GrowingArray<Key> keys;
  GrowingArray<std::uint32_t> indexes;  // of all large maps, back to back
  std::uint32_t root = 0;

 private:
  bool hasKey(const Node& node, const KeyView& key) const noexcept;

  template <class HasKey>
  const Node* memberOfSmallMap(const Node& map, const KeyView& key, HasKey hasKey) const noexcept {
    const Node* const members = nodes.data() + map.first();
    const KeyPositions::Range range = keyPositions.of(key.hash());
    const std::uint32_t end = std::min<std::uint32_t>(range.last + 1, map.count());
    for (std::uint32_t position = range.first; position < end; ++position) {
      if (hasKey(members[position])) return members + position;
    }
    return nullptr;
  }
};

}  // namespace quorvelkit::detail
