// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/KeyPlaces_p.h>
#include <QuorvelKit/JSON/MemoryBudget.h>
#include <QuorvelKit/JSON/Value.h>
#include <QuorvelPlatform/MemoryPages_p.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace quorvelkit::detail {

// What says which member of its map a node is: the number of its key and, above room for the tag,
// the key's hash. Other nodes have an empty one.
struct Label {
  std::uint32_t key = 0;
  std::uint32_t hashAndTag = 0;

  static Label make(std::uint32_t key, std::uint32_t hash) noexcept { return {key, hash << 8U}; }
  std::uint32_t hash() const noexcept { return hashAndTag >> 8U; }
};

// A value of a parsed document. Scalars stand in the payload; that of a text is its place in the
// document's text, that of a container the place of its children: {offset or first, length or
// count}, 32 bits each.
struct Node {
  std::uint64_t payload = 0;
  Label label;

  static Node make(std::uint64_t payload, ValueTag tag, Label label) noexcept {
    return {payload, {label.key, label.hashAndTag | static_cast<std::uint32_t>(tag)}};
  }
  ValueTag tag() const noexcept { return static_cast<ValueTag>(label.hashAndTag & 0xFFU); }
  std::uint32_t key() const noexcept { return label.key; }
  std::uint32_t hash() const noexcept { return label.hash(); }
  std::uint32_t first() const noexcept { return static_cast<std::uint32_t>(payload); }
  std::uint32_t count() const noexcept { return static_cast<std::uint32_t>(payload >> 32U); }

  static std::uint64_t range(std::size_t first, std::size_t count) noexcept {
    return (std::uint64_t{count} << 32U) | static_cast<std::uint32_t>(first);
  }
};
static_assert(sizeof(Node) == 16);

// A growing run of trivial things, moved by realloc: big runs are moved without being copied. Its
// memory counts against the budget of the thread while it grows.
template <class T>
class Run {
 public:
  T* data() const noexcept { return data_.get(); }
  std::size_t size() const noexcept { return size_; }
  T& operator[](std::size_t i) const noexcept { return data_[i]; }

  std::size_t room() const noexcept { return capacity_ - size_; }
  std::size_t bytes() const noexcept { return capacity_ * sizeof(T); }
  void reserve(std::size_t capacity) {
    if (capacity > capacity_) resizeCapacity(capacity);
  }
  // Room for more things; doubles when there is none, or comes nearer to what may be had.
  void reserveMore(std::size_t more) {
    if (room() >= more) return;
    const std::size_t most = capacity_ + MemoryBudget::rest() / sizeof(T) / 4;
    resizeCapacity(std::max(size_ + more, std::min(size_ * 2, most)));
  }
  void append(const T* things, std::size_t count) {
    if (count == 0) return;
    reserveMore(count);
    std::memcpy(data_.get() + size_, things, count * sizeof(T));
    size_ += count;
  }
  void push(const T& thing) {
    if (size_ == capacity_) reserveMore(1);
    data_[size_++] = thing;
  }
  void shrinkTo(std::size_t size) noexcept { size_ = size; }
  // Gives back room that was not needed. A little of it stays: the C library keeps a large block
  // for the next document only when it is freed as large as it was asked for.
  void fit() {
    if (room() > size_ / 32) resizeCapacity(size_);
  }

 private:
  // Memory of large blocks moves page by page in realloc, where new would copy it.
  // NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  struct Free {
    void operator()(T* data) const noexcept { std::free(data); }
  };

  void resizeCapacity(std::size_t capacity) {
    if (capacity > capacity_) MemoryBudget::take((capacity - capacity_) * sizeof(T));
    if (capacity == 0) {
      data_.reset();
    } else {
      void* moved = std::realloc(data_.get(), capacity * sizeof(T));
      if (!moved) throw std::bad_alloc();
      static_cast<void>(data_.release());
      data_.reset(static_cast<T*>(moved));
      preferLargePages(moved, capacity * sizeof(T));
    }
    capacity_ = capacity;
  }
  // NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)

  std::unique_ptr<T[], Free> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

// A parsed document, never changed. Children of a container are contiguous; behind the members of
// a map of indexedMembers or more stands one node more, with the place of its index.
struct Document : Counted {
  struct Key {
    std::uint64_t front;  // as that of a KeyView
    std::uint32_t offset;
    std::uint32_t length;
  };
  static constexpr std::uint32_t indexedMembers = 64;

  std::size_t bytes() const noexcept {
    return sizeof(Document) + nodes.bytes() + text.bytes() + keys.bytes() + order.bytes();
  }
  std::string_view keyText(std::uint32_t key) const noexcept {
    return {text.data() + keys[key].offset, keys[key].length};
  }
  bool isKey(std::uint32_t key, const KeyView& view) const noexcept {
    const Key& k = keys[key];
    const std::size_t length = view.text().size();
    if (k.front != view.front() || k.length != length) return false;
    return length <= sizeof k.front || keyText(key) == view.text();
  }
  std::string_view nodeText(std::uint32_t node) const noexcept {
    const Node& n = nodes[node];
    return n.count() == 0 ? std::string_view()
                          : std::string_view(text.data() + n.first(), n.count());
  }
  // The places of a large map's members among them, in the order of hash and text.
  const std::uint32_t* index(const Node& map) const noexcept {
    return order.data() + nodes[map.first() + map.count()].first();
  }
  ValueBits bits(const Node& node) const noexcept {
    const ValueTag tag = node.tag();
    if (tag < ValueTag::frozenText) return ValueBits::make(node.payload, tag);
    const auto* const self = static_cast<const Counted*>(this);
    return ValueBits::make(reinterpret_cast<std::uintptr_t>(self), tag,
                           static_cast<std::uint32_t>(&node - nodes.data()));
  }
  // Most maps are small, and most keys short: then the hash and one word tell.
  static bool isQuick(const Node& map, const KeyView& key) noexcept {
    return map.count() < indexedMembers && key.text().size() <= sizeof(Key::front);
  }
  bool isQuickKey(const Node& node, const KeyView& key) const noexcept {
    if (node.hash() != key.hash()) return false;
    const Key& found = keys[node.key()];
    return found.front == key.front() && found.length == key.text().size();
  }
  const Node* quickMember(const Node& map, const KeyView& key) const noexcept {
    return memberOfSmall(map, key, [&](const Node& node) { return isQuickKey(node, key); });
  }
  // A map's member, null when there is none.
  const Node* memberOfAnySize(const Node& map, const KeyView& key) const noexcept;

  KeyPlaces places;  // At least where the members of small maps stand.
  Run<Node> nodes;
  Run<char> text;
  Run<Key> keys;
  Run<std::uint32_t> order;
  std::uint32_t root = 0;

 private:
  template <class IsSought>
  const Node* memberOfSmall(const Node& map, const KeyView& key, IsSought isSought) const noexcept {
    const Node* const members = nodes.data() + map.first();
    const KeyPlaces::Range range = places.of(key.hash());
    const std::uint32_t end = std::min<std::uint32_t>(range.last + 1, map.count());
    for (std::uint32_t place = range.first; place < end; ++place) {
      if (isSought(members[place])) return members + place;
    }
    return nullptr;
  }
};

}  // namespace quorvelkit::detail
