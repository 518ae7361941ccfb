// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/OrderedMap.h>

#include <cstring>
#include <random>

namespace quorvelkit::detail {

std::uint64_t seededHash(std::string_view text) noexcept {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return (std::uint64_t{device()} << 32U) | device() | 1U;
  }();
  const auto mixed = [](std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
    return (hash ^ (hash >> 32U)) * seed;
  };
  std::uint64_t hash = seed ^ text.size();
  while (text.size() >= sizeof hash) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data(), sizeof word);
    hash = mixed(hash, word);
    text.remove_prefix(sizeof word);
  }
  std::uint64_t word = 0;
  if (!text.empty()) std::memcpy(&word, text.data(), text.size());
  hash = mixed(hash, word);
  return hash ^ (hash >> 29U);
}

}  // namespace quorvelkit::detail
