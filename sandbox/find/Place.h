// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sandbox/find/Localities.h"

#include <QuorvelPlatform/Coordinate.h>

#include <cstdint>
#include <string>
#include <vector>

namespace quorvelkit::sandbox {

/// A place that a search can find.
struct Place {
  enum class Kind {
    /// A house number that the map has.
    address,
    /// A house number that is interpolated between others.
    interpolatedAddress,
    street,
    /// A shop, a restaurant, a church, a park.
    pointOfInterest,
    /// A city, a village, a neighborhood.
    locality,
  };
  static constexpr std::uint32_t noStreet = UINT32_MAX;

  Kind kind = Kind::address;
  /// Unique in the map.
  std::string key;
  /// For an address, the address line.
  std::string name;
  /// The address line of a point of interest.
  std::string address;
  std::string otherNames;
  Locality locality;
  Coordinate position;
  std::vector<std::string> categories;
  std::string phone;
  std::string website;
  /// The index of the street of an address in the gazetteer.
  std::uint32_t street = noStreet;

  /// Example: "Ozra, 806 Stiles Street, Baltimore, Maryland, 21202".
  std::string label() const;
};

}  // namespace quorvelkit::sandbox
