// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Document_p.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <vector>

namespace quorvelkit::detail {

// Interns the keys of a document while it is parsed: stores each key text once and gives it a
// number. Predicts each key from the one before, because the maps of a document resemble each
// other.
class KeyTable {
 public:
  struct Entry {
    // The first bytes of the key text and its closing quotation mark, and a mask of the bytes they
    // fill. Match no input for a key that was first read from escaped text, and for `unknown_`.
    std::uint64_t front;
    std::uint64_t frontMask;
    std::uint32_t length;
    std::uint32_t number;
    std::uint64_t bit;     // 1 << (number % 64)
    std::size_t position;  // the position of the latest member with this key in its map
    MemberKey memberKey;
    // Predictions: the first key that came after this one, and the latest different one.
    Entry* next;
    Entry* alternative;
  };

  explicit KeyTable(Document& document) : document_(document) {}
  KeyTable(const KeyTable&) = delete;
  KeyTable& operator=(const KeyTable&) = delete;

  // Compares the input after the opening quotation mark of a key with the two predictions. Returns
  // the one that matches, including its closing quotation mark; otherwise null.
  Entry* predict(const char* p, const char* end) const noexcept {
    std::uint64_t front = 0;
    if (end - p < static_cast<std::ptrdiff_t>(sizeof front)) return nullptr;
    std::memcpy(&front, p, sizeof front);
    if (matches(*current_->next, front, p, end)) return current_->next;
    if (matches(*current_->alternative, front, p, end)) return current_->alternative;
    return nullptr;
  }
  // Interns the key whose text was appended to the string table at `start`. If the key is known
  // already, removes that text again. `unescaped`: the input contained the text without escapes.
  // `position`: the position of the member in its map.
  Entry* intern(std::size_t start, bool unescaped, std::size_t position);
  // Makes the key the current one, from which the next key is predicted.
  void advance(Entry* key) noexcept {
    if (key != current_->next) {
      (current_->next == &unknown_ ? current_->next : current_->alternative) = key;
    }
    current_ = key;
  }

 private:
  bool matches(const Entry& key, std::uint64_t front, const char* p,
               const char* end) const noexcept {
    if ((front & key.frontMask) != key.front) return false;
    return key.length < sizeof front || matchesLongKey(key, p, end);
  }
  bool matchesLongKey(const Entry& key, const char* p, const char* end) const noexcept;
  std::size_t firstSlot(std::string_view text) const noexcept;
  void growSlots();

  Document& document_;
  std::deque<Entry> entries_;  // A deque keeps the addresses of its elements.
  std::vector<Entry*> slots_;  // A hash table with linear probing.
  // Stands for a missing prediction, and for the key before the first one.
  Entry unknown_{.front = 1,
                 .frontMask = 0,
                 .length = 0,
                 .number = 0,
                 .bit = 0,
                 .position = 0,
                 .memberKey = {},
                 .next = &unknown_,
                 .alternative = &unknown_};
  Entry* current_ = &unknown_;
};

}  // namespace quorvelkit::detail
