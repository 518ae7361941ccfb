// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>

#include <algorithm>
#include <cstring>

namespace quorvelkit::detail {

std::uint32_t KeyTable::number(std::size_t start, bool unescaped) {
  Run<char>& text = document_.text;
  const std::string_view key(text.data() + start, text.size() - start);
  if (entries_.size() * 2 >= slots_.size()) grow();
  std::size_t slot = static_cast<std::size_t>(secretHash(key)) & (slots_.size() - 1);
  while (slots_[slot] != none) {
    if (document_.keyText(slots_[slot]) == key) {
      text.shrinkTo(start);
      return slots_[slot];
    }
    slot = (slot + 1) & (slots_.size() - 1);
  }
  const auto number = static_cast<std::uint32_t>(entries_.size());
  slots_[slot] = number;

  Entry entry{.front = 1,
              .frontMask = 0,
              .length = static_cast<std::uint32_t>(key.size()),
              .hash = KeyView(key).hash(),
              .next = {}};
  if (unescaped) {
    char front[sizeof entry.front] = {};
    char mask[sizeof entry.front] = {};
    const std::size_t length = std::min(key.size(), sizeof front);
    std::copy_n(key.data(), length, front);
    if (length < sizeof front) front[length] = '"';
    std::fill_n(mask, std::min(length + 1, sizeof mask), '\xFF');
    std::memcpy(&entry.front, front, sizeof front);
    std::memcpy(&entry.frontMask, mask, sizeof mask);
  }
  entries_.push_back(entry);
  document_.keys.push({KeyView(key).front(), static_cast<std::uint32_t>(start), entry.length});
  return number;
}

bool KeyTable::isWhole(std::uint32_t key, const char* p, const char* end) const noexcept {
  const std::string_view text = document_.keyText(key);
  const std::string_view bytes(p, end);
  return bytes.size() > text.size() && bytes[text.size()] == '"' && bytes.starts_with(text);
}

void KeyTable::grow() {
  slots_.assign(std::max<std::size_t>(64, slots_.size() * 2), none);
  for (std::uint32_t number = 0; number < entries_.size(); ++number) {
    std::size_t slot =
        static_cast<std::size_t>(secretHash(document_.keyText(number))) & (slots_.size() - 1);
    while (slots_[slot] != none)
      slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = number;
  }
}

}  // namespace quorvelkit::detail
