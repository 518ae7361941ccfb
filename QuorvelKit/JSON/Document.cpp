// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Document_p.h>

namespace quorvelkit::detail {

bool Document::hasKey(const Node& node, const KeyView& key) const noexcept {
  if (node.key.hash() != key.hash()) return false;
  const Key& found = keys[node.key.number];
  const std::size_t length = key.text().size();
  if (found.front != key.front() || found.length != length) return false;
  return length <= sizeof found.front || keyText(node.key.number) == key.text();
}

const Node* Document::member(const Node& map, const KeyView& key) const noexcept {
  const std::uint32_t size = map.count();
  if (size < largeMapSize) {
    return memberOfSmallMap(map, key, [&](const Node& node) { return hasKey(node, key); });
  }
  const Node* const members = nodes.data() + map.first();
  const std::uint32_t* const begin = index(map);
  const std::uint32_t* const end = begin + size;
  const std::uint32_t* const found =
      std::lower_bound(begin, end, key, [&](std::uint32_t position, const KeyView& sought) {
        const Node& node = members[position];
        if (node.key.hash() != sought.hash()) return node.key.hash() < sought.hash();
        return keyText(node.key.number) < sought.text();
      });
  return found != end && hasKey(members[*found], key) ? members + *found : nullptr;
}

}  // namespace quorvelkit::detail
