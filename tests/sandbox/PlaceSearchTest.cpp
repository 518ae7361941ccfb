// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/PlaceSearch.h"
#include "sandbox/find/ReverseGeocoder.h"
#include "tests/sandbox/SearchTown.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::shared_ptr<const Gazetteer>& gazetteerOfTown() {
  static const auto& gazetteer = *new auto(std::make_shared<const Gazetteer>(searchTown()));
  return gazetteer;
}

const PlaceSearch& town() {
  static const auto& search = *new PlaceSearch(gazetteerOfTown());
  return search;
}

std::vector<std::string> labels(const std::vector<PlaceSearch::Found>& found) {
  std::vector<std::string> result;
  for (const auto& one : found)
    result.push_back(one.place.label());
  return result;
}

constexpr Coordinate west{10, 20};

TEST(PlaceSearchTest, FindsPlacesByText) {
  const char* const cafe = "Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231";
  const char* const square = "Pla\u00E7a de l\u2019\u00C0ncora, Testville, Maryland";
  const char* const house = "100 Harbor Street, Testville, Maryland, 21231";
  const char* const between = "150 Harbor Street, Testville, Maryland, 21231";
  // The best place, its score at least and at most, and texts that find it.
  const std::tuple<const char*, double, double, std::vector<const char*>> cases[] = {
      {house, 100, 100, {"100 Harbor Street", "harbor st 100"}},
      {house,
       100,
       100,
       {"100 Harbor Street, Testville, MD 21231", "100 Harbor St, Testville, USA"}},
      // "Atlantis" is nowhere.
      {house, 60, 80, {"100 Harbor Street Atlantis"}},
      {between, 90, 90, {"150 Harbor Street", "150 Harbor Street, Testville 21231"}},
      // Beyond the street's last number the street itself is the answer.
      {"Harbor Street, Testville, Maryland", 70, 80, {"9999 Harbor Street"}},
      {"Coast Motorway, Sankt Olaf, Maryland", 80, 90, {"12 Coast Motorway"}},
      {"Harbor Street, Sankt Olaf, Maryland", 100, 100, {"Harbor Street Sankt Olaf"}},
      {cafe, 100, 100, {"cafe muller"}},
      {cafe, 30, 50, {"Caf\u00E9", "cafe harbor"}},
      {square, 100, 100, {"Placa de l'Ancora"}},
      {square, 40, 60, {"ancora"}},
      {"Memorial Church, Testville, Maryland", 100, 100, {"Memorial Church"}},
      {"Testville, Maryland", 100, 100, {"Testville"}},
      {"First Bank, Testville, Maryland", 40, 50, {"bank"}}};
  for (const auto& [best, leastScore, mostScore, texts] : cases) {
    for (const char* text : texts) {
      SCOPED_TRACE(text);
      const auto found = town().candidates(text, {west, {}});
      ASSERT_FALSE(found.empty());
      EXPECT_EQ(found.front().place.label(), best);
      EXPECT_GE(found.front().score, leastScore);
      EXPECT_LE(found.front().score, mostScore);
    }
  }
  for (const char* text : {"Atlantis", "", "!?", "Maryland"})
    EXPECT_THAT(town().candidates(text, {west, {}}), IsEmpty()) << text;
}

TEST(PlaceSearchTest, RanksByScoreThenDistance) {
  EXPECT_THAT(labels(town().candidates("Memorial Church", {{10.01, 20.004}, {}})),
              ElementsAre("Memorial Church, Testville, Maryland"))
      << "the nearer church matches much less";
  for (const double latitude : {10.0, 10.06}) {
    const auto banks = town().candidates("first bank", {{latitude, 20.004}, {}});
    ASSERT_THAT(banks, SizeIs(2));
    EXPECT_LT(banks[0].meters, banks[1].meters);
  }
}

TEST(PlaceSearchTest, KeepsInsideTheExtent) {
  const Extent north{{10.04, 19}, {11, 21}};
  const auto banks = town().candidates("first bank", {west, north});
  ASSERT_THAT(banks, SizeIs(1));
  EXPECT_EQ(banks.front().place.position.latitude, 10.05);
  EXPECT_THAT(town().candidates("150 Harbor Street", {west, north}), IsEmpty());
  EXPECT_THAT(town().suggestions("Harbor", {west, north}), IsEmpty());
  const Extent acrossTheDateLine{{-10, 170}, {10, -170}};
  EXPECT_TRUE(acrossTheDateLine.contains({0, 179}));
  EXPECT_TRUE(acrossTheDateLine.contains({0, -179}));
  EXPECT_FALSE(acrossTheDateLine.contains({0, 0}));
}

TEST(PlaceSearchTest, SuggestsWhatTheTextMayBecome) {
  EXPECT_THAT(labels(town().suggestions("Harbor P", {west, {}})),
              ElementsAre("Harbor Point, Testville, Maryland"));
  EXPECT_THAT(labels(town().suggestions("Harb", {west, {}})),
              ElementsAre("Harbor Point, Testville, Maryland", "Harbor Street, Testville, Maryland",
                          "Harbor Street, Sankt Olaf, Maryland",
                          "100 Harbor Street, Testville, Maryland, 21231",
                          "133 Harbor Street, Testville, Maryland, 21231"));
  // What it is comes before what begins like it, and equal labels are one suggestion.
  EXPECT_THAT(labels(town().suggestions("First Bank", {west, {}})), SizeIs(1));
  EXPECT_THAT(labels(town().suggestions("10", {west, {}})),
              ElementsAre("100 Harbor Street, Testville, Maryland, 21231"));
  EXPECT_THAT(town().suggestions("10 ", {west, {}}), IsEmpty()) << "a blank ends the number";
  EXPECT_THAT(town().suggestions("Harbor Atlantis", {west, {}}), IsEmpty());
}

TEST(PlaceSearchTest, EveryKeyFindsItsPlaceAlone) {
  const Gazetteer& gazetteer = *gazetteerOfTown();
  for (const Place& place : gazetteer.places()) {
    const auto again = gazetteer.placeWithKey(place.key);
    ASSERT_TRUE(again) << place.key;
    EXPECT_EQ(again->label(), place.label());
    EXPECT_EQ(again->position, place.position);
  }
  for (const auto& found : town().suggestions("150 Harbor Street", {west, {}}))
    EXPECT_EQ(gazetteer.placeWithKey(found.place.key)->label(), found.place.label());
  const std::string street = town().candidates("Harbor Street", {west, {}}).front().place.key;
  for (const std::string& key :
       {std::string(), street + ".9999", street + ".", street + ".1x", street + ".100",
        street + ".-1", std::string("place.n3.5"), street + ".99999999999"}) {
    EXPECT_FALSE(gazetteer.placeWithKey(key)) << key;
  }
}

TEST(ReverseGeocoderTest, TellsTheNearestAddress) {
  const ReverseGeocoder geocoder(gazetteerOfTown());
  // Null where nothing is near.
  const std::pair<Coordinate, const char*> cases[] = {
      {{9.9997, 20.0001}, "100 Harbor Street, Testville, Maryland, 21231"},
      {{9.9999, 20.0045}, "150 Harbor Street, Testville, Maryland, 21231"},
      {{10.0001, 20.105}, "67 Harbor Street, Sankt Olaf, Maryland"},
      {{9.9705, 20.0500}, "200 Harbor Street, Testville, Maryland, 21231"},  // Not the motorway.
      {{50, 20}, nullptr},
  };
  for (const auto& [position, label] : cases) {
    const auto place = geocoder.addressAt(position);
    ASSERT_EQ(place.has_value(), label != nullptr) << position.latitude;
    if (!place) continue;
    EXPECT_EQ(place->label(), label);
    EXPECT_EQ(place->locality.country, "USA");
  }
  EXPECT_EQ(geocoder.addressAt({10, 20.002})->locality.neighborhood, "Harbor Point");
  EXPECT_FALSE(ReverseGeocoder(std::make_shared<const Gazetteer>(std::make_shared<MapData>()))
                   .addressAt({10, 20}));
}

}  // namespace
}  // namespace quorvelkit::sandbox
