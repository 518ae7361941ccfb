// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/sandbox/MapText.h"

#include <memory>

namespace quorvelkit::sandbox {

/// A map for search tests. Harbor Street runs 1 km east from (10, 20), with the houses 100 (at its
/// beginning, on the south side) and 200 (at its end). Another part of it is in Sankt Olaf, beyond
/// a boundary. The second half of the street has the opposite direction. A meter is about 1/111000
/// degree here.
inline std::shared_ptr<const MapData> searchTown() {
  const std::string onStreet = "; addr:street=Harbor Street; addr:city=Testville";
  auto map = std::make_shared<MapData>(test::mapFromText(
      ": 9.9998,20; addr:housenumber=100; addr:postcode=21231; addr:state=MD" + onStreet +
          "\n: 9.9998,20.009; addr:housenumber=200; addr:postcode=21231" + onStreet +
          "\nCafé Müller: 10.0002,20.003; amenity=cafe; addr:housenumber=133" + onStreet +
          "; phone=+1 555 0100; website=https://mueller.example" + R"(
          Harbor Point: 10,20.002; place=neighbourhood
          Testville: 10,20.005; place=town
          Grace Memorial Church: 10.01,20.004; amenity=place_of_worship
          Memorial Church: 10.012,20.004; amenity=place_of_worship
          First Bank: 10.013,20.004; amenity=bank
          First Bank: 10.05,20.004; amenity=bank
          Harbor Street: 10,20 10,20.004
          Harbor Street: 10,20.009 10,20.004
          Harbor Street: 10,20.102 10,20.108
          Plaça de l’Àncora: 10.02,20 10.02,20.009; highway=primary
          Coast Motorway: 9.97,20 9.97,20.1; highway=motorway)",
      [](double latitude, double longitude) {
        return Coordinate{latitude, longitude};
      }));
  MapArea area;
  area.id = 1;
  area.tags = Tags({{"boundary", "administrative"}, {"admin_level", "8"}, {"name", "Sankt Olaf"}});
  area.polygons = {{{{9.9, 20.1}, {9.9, 20.2}, {10.1, 20.2}, {10.1, 20.1}, {9.9, 20.1}}}};
  map->areas.push_back(area);
  return map;
}

}  // namespace quorvelkit::sandbox
