// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Document_p.h>

#include <algorithm>

namespace quorvelkit::detail {

std::uint32_t Document::member(std::uint32_t map, const KeyView& key) const noexcept {
  const Node& container = nodes[map];
  const std::uint32_t first = container.first();
  const std::uint32_t size = container.count();
  if (size < indexedMembers) {
    for (std::uint32_t node = first; node < first + size; ++node) {
      if (nodes[node].hash() == key.hash() && isKey(nodes[node].key, key)) return node;
    }
    return noNode;
  }
  const std::uint32_t* const begin = index(container);
  const std::uint32_t* const end = begin + size;
  const std::uint32_t* const found =
      std::lower_bound(begin, end, key, [&](std::uint32_t position, const KeyView& sought) {
        const Node& node = nodes[first + position];
        if (node.hash() != sought.hash()) return node.hash() < sought.hash();
        return keyText(node.key) < sought.text();
      });
  if (found == end) return noNode;
  const std::uint32_t node = first + *found;
  if (nodes[node].hash() != key.hash() || !isKey(nodes[node].key, key)) {
    return noNode;
  }
  return node;
}

}  // namespace quorvelkit::detail
