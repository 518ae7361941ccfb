// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVRawValue.h>

namespace quorvelkit {

/// The data source of a candidate or a suggestion. `Quorvel` is the data of the find server;
/// `unknown` stands for every other text.
enum class QVOrigin { OSM, ArcGIS, Quorvel, Yelp, Foursquare, MapBox, unknown };

template <>
inline constexpr auto rawValues<QVOrigin> = std::to_array<RawValue<QVOrigin>>({
    {QVOrigin::OSM, "OSM"},
    {QVOrigin::ArcGIS, "ArcGIS"},
    {QVOrigin::Quorvel, "Quorvel"},
    {QVOrigin::Yelp, "Yelp"},
    {QVOrigin::Foursquare, "Foursquare"},
    {QVOrigin::MapBox, "MapBox"},
    {QVOrigin::unknown, ""},
});

}  // namespace quorvelkit
