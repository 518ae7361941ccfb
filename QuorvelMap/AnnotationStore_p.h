// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quorvelkit {

/// A list of different items in insertion order, each with its appearance. Cost: add() is O(1),
/// remove() is O(number of items).
template <class Item, class Appearance, class Hash = std::hash<Item>>
class AnnotationStore {
 public:
  const std::vector<Item>& items() const { return items_; }
  const std::vector<Appearance>& appearances() const { return appearances_; }
  bool contains(const Item& item) const { return itemSet_.contains(item); }

  /// Returns false and adds nothing if the store contains the item.
  bool add(Item item, Appearance appearance) {
    if (!itemSet_.insert(item).second) return false;
    items_.push_back(std::move(item));
    appearances_.push_back(std::move(appearance));
    return true;
  }

  /// The argument may be items().
  void remove(const std::vector<Item>& unwanted) {
    for (const Item& item : unwanted)
      itemSet_.erase(item);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      if (!contains(items_[i])) continue;
      std::swap(items_[kept], items_[i]);
      std::swap(appearances_[kept], appearances_[i]);
      ++kept;
    }
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(kept), items_.end());
    appearances_.erase(appearances_.begin() + static_cast<std::ptrdiff_t>(kept),
                       appearances_.end());
  }

 private:
  std::vector<Item> items_;
  std::vector<Appearance> appearances_;
  std::unordered_set<Item, Hash> itemSet_;
};

}  // namespace quorvelkit
