// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/FindDocuments.h"

#include <cmath>
#include <string>

namespace quorvelkit::sandbox {
namespace {

JSON rounded(double number, double parts) { return std::round(number * parts) / parts; }

JSON locationOf(const Place& place) {
  constexpr double partsOfDegree = 1e7;
  JSON location = JSON::makeDictionary({});
  location.set("x", rounded(place.position.longitude, partsOfDegree));
  location.set("y", rounded(place.position.latitude, partsOfDegree));
  return location;
}

const char* typeOf(const Place& place) {
  switch (place.kind) {
    case Place::Kind::address: return "PointAddress";
    case Place::Kind::interpolatedAddress: return "StreetAddress";
    case Place::Kind::street: return "StreetName";
    case Place::Kind::pointOfInterest: return "POI";
    case Place::Kind::locality: return "Locality";
  }
  return "";
}

JSON spatialReference() { return JSON::makeDictionary({{"wkid", 4326}}); }

void addProvider(JSON& document, const PlaceSearch::Result& found, const MapSource& source,
                 const char* websiteKey) {
  const Place& place = found.place;
  document.set("score", rounded(found.score, 100));
  document.set("origin", source.origin);
  document.set("provide", source.provider);
  if (!place.website.empty()) document.set(websiteKey, place.website);
  if (!place.phone.empty()) document.set("phone", place.phone);
  if (place.categories.empty()) return;
  document.set("categories", JSON::makeArray(place.categories));
}

}  // namespace

JSON candidatesDocument(const std::vector<PlaceSearch::Result>& found, const MapSource& source) {
  std::vector<JSON> candidates;
  for (const PlaceSearch::Result& one : found) {
    const std::string label = one.place.label();
    JSON candidate = JSON::makeDictionary({{"Address", label}});
    candidate.set("location", locationOf(one.place));
    candidate.set("attributes", JSON::makeDictionary({{"Match_addr", label},
                                                      {"Addr_type", typeOf(one.place)},
                                                      {"magicKey", one.place.key}}));
    addProvider(candidate, one, source, "providerUrl");
    candidates.push_back(std::move(candidate));
  }
  JSON document = JSON::makeDictionary({});
  document.set("spatialReference", spatialReference());
  document.set("candidates", JSON::makeArray(candidates));
  return document;
}

JSON suggestionsDocument(const std::vector<PlaceSearch::Result>& found, const MapSource& source) {
  std::vector<JSON> suggestions;
  for (const PlaceSearch::Result& one : found) {
    JSON suggestion = JSON::makeDictionary(
        {{"text", one.place.label()}, {"magicKey", one.place.key}, {"isCollection", false}});
    addProvider(suggestion, one, source, "url");
    suggestions.push_back(std::move(suggestion));
  }
  JSON document = JSON::makeDictionary({});
  document.set("suggestions", JSON::makeArray(suggestions));
  return document;
}

JSON addressDocument(const Place& place) {
  JSON document = JSON::makeDictionary({});
  document.set("address", JSON::makeDictionary({{"Match_addr", place.label()},
                                                {"Address", place.name},
                                                {"Neighborhood", place.locality.neighborhood},
                                                {"City", place.locality.city},
                                                {"Region", place.locality.region},
                                                {"Postal", place.locality.postal},
                                                {"CountryCode", place.locality.country},
                                                {"Loc_name", typeOf(place)}}));
  JSON location = locationOf(place);
  location.set("spatialReference", spatialReference());
  document.set("location", location);
  return document;
}

}  // namespace quorvelkit::sandbox
