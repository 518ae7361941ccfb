// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/Localities.h"

#include <QuorvelPlatform/Coordinate.h>

#include <cstdint>
#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// Something that a search can find.
struct Place {
  enum class Kind {
    /// A house number that the map knows.
    address,
    /// A house number worked out from its neighbors.
    interpolatedAddress,
    street,
    /// A shop, a restaurant, a church, a park.
    pointOfInterest,
    /// A city, a village, a neighborhood.
    locality,
  };
  static constexpr std::uint32_t noStreet = UINT32_MAX;

  Kind kind = Kind::address;
  /// Tells this place from all others of the map.
  std::string key;
  /// What it is called; for an address that is the address line.
  std::string name;
  /// The address line of something that has a name of its own besides.
  std::string address;
  std::string otherNames;
  Locality locality;
  Coordinate position;
  std::vector<std::string> categories;
  std::string phone;
  std::string website;
  /// The street of an address, by its number in the gazetteer.
  std::uint32_t street = noStreet;

  /// "Ozra, 806 Stiles Street, Baltimore, Maryland, 21202".
  std::string label() const;
};

}  // namespace quorvelkit::sandbox
