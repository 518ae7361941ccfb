// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <vector>

namespace quorvelkit::detail {

// The keys of a document under construction: each text once, with a number of its own.
class KeyTable {
 public:
  struct Entry {
    // The first bytes of the text and its closing quotation mark, and which bytes of a word they
    // fill. Those of a text that was escaped, and of none_, match no bytes.
    std::uint64_t front;
    std::uint64_t frontMask;
    std::uint32_t length;
    std::uint32_t number;
    std::uint64_t bit;  // one of 64, by the number
    std::size_t place;  // where its last member stood in its map
    Label label;        // of a member with this key
    // The keys that came behind this one: the first, and the last other one.
    Entry* follower;
    Entry* otherFollower;
  };

  explicit KeyTable(Document& document) : document_(document) {}
  KeyTable(const KeyTable&) = delete;
  KeyTable& operator=(const KeyTable&) = delete;

  // The key that the bytes begin with, a quotation mark behind it, when it is one of the two that
  // followed the last key before: documents repeat themselves; otherwise null. The bytes stand
  // right behind a key's opening quotation mark.
  Entry* guess(const char* p, const char* end) const noexcept {
    std::uint64_t front = 0;
    if (end - p < static_cast<std::ptrdiff_t>(sizeof front)) return nullptr;
    std::memcpy(&front, p, sizeof front);
    if (begins(front, *last_->follower, p, end)) return last_->follower;
    if (begins(front, *last_->otherFollower, p, end)) return last_->otherFollower;
    return nullptr;
  }
  // The key whose text ends the document's text since `start`; the text is taken back when the key
  // is known. An unescaped one stood in the bytes letter for letter. The place is that of its
  // member in its map.
  Entry* find(std::size_t start, bool unescaped, std::size_t place);
  // Tells which key came last.
  void follow(Entry* key) noexcept {
    if (key != last_->follower) {
      (last_->follower == &none_ ? last_->follower : last_->otherFollower) = key;
    }
    last_ = key;
  }

 private:
  bool begins(std::uint64_t front, const Entry& key, const char* p,
              const char* end) const noexcept {
    if ((front & key.frontMask) != key.front) return false;
    return key.length < sizeof front || isWhole(key, p, end);
  }
  bool isWhole(const Entry& key, const char* p, const char* end) const noexcept;
  void grow();

  Document& document_;
  std::deque<Entry> entries_;  // They stay where they are.
  std::vector<Entry*> slots_;
  // Stands for followers that are not known, and in front of the first key.
  Entry none_{.front = 1,
              .frontMask = 0,
              .length = 0,
              .number = 0,
              .bit = 0,
              .place = 0,
              .label = {},
              .follower = &none_,
              .otherFollower = &none_};
  Entry* last_ = &none_;
};

}  // namespace quorvelkit::detail
