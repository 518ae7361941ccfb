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
  const char* const house = "100 Harbor Street, Testville, Maryland, 21231";
  const char* const cafe = "Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231";
  const struct {
    const char* text;
    const char* best;  // Null where nothing is found.
    double leastScore, mostScore;
  } cases[] = {
      {"100 Harbor Street", house, 100, 100},
      {"harbor st 100", house, 100, 100},
      {"100 Harbor Street, Testville, MD 21231", house, 100, 100},
      {"100 Harbor Street, Testville, USA", house, 100, 100},
      {"100 Harbor Street Atlantis", house, 60, 80},  // "Atlantis" is nowhere.
      {"cafe muller", cafe, 100, 100},
      {"Caf\u00E9", cafe, 30, 50},
      {"cafe harbor", cafe, 30, 50},
      {"Placa de l'Ancora", "Pla\u00E7a de l\u2019\u00C0ncora, Testville, Maryland", 100, 100},
      {"ancora", "Pla\u00E7a de l\u2019\u00C0ncora, Testville, Maryland", 40, 60},
      {"Harbor Street Sankt Olaf", "Harbor Street, Sankt Olaf, Maryland", 100, 100},
      {"Memorial Church", "Memorial Church, Testville, Maryland", 100, 100},
      {"150 Harbor Street", "150 Harbor Street, Testville, Maryland, 21231", 90, 90},
      {"150 Harbor Street, Testville 21231", "150 Harbor Street, Testville, Maryland, 21231", 90,
       90},
      // Beyond the street's last number the street itself is the answer.
      {"9999 Harbor Street", "Harbor Street, Testville, Maryland", 70, 80},
      {"12 Coast Motorway", "Coast Motorway, Sankt Olaf, Maryland", 80, 90},
      {"Testville", "Testville, Maryland", 100, 100},
      {"bank", "First Bank, Testville, Maryland", 40, 50},
      {"Atlantis", nullptr, 0, 0},
      {"", nullptr, 0, 0},
      {"!?", nullptr, 0, 0},
      {"Maryland", nullptr, 0, 0},
  };
  for (const auto& [text, best, leastScore, mostScore] : cases) {
    const auto found = town().candidates(text, {west, {}});
    ASSERT_EQ(found.empty(), best == nullptr) << text;
    if (best == nullptr) continue;
    EXPECT_EQ(found.front().place.label(), best) << text;
    EXPECT_GE(found.front().score, leastScore) << text;
    EXPECT_LE(found.front().score, mostScore) << text;
  }
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
  for (const auto& found : town().suggestions("150 Harbor Street", {west, {}})) {
    EXPECT_EQ(gazetteer.placeWithKey(found.place.key)->label(), found.place.label());
  }
  const std::string street = town().candidates("Harbor Street", {west, {}}).front().place.key;
  for (const std::string& key :
       {std::string(), street + ".9999", street + ".", street + ".1x", street + ".100",
        street + ".-1", std::string("place.n3.5"), street + ".99999999999"}) {
    EXPECT_FALSE(gazetteer.placeWithKey(key)) << key;
  }
}

TEST(ReverseGeocoderTest, TellsTheNearestAddress) {
  const ReverseGeocoder geocoder(gazetteerOfTown());
  const struct {
    Coordinate position;
    const char* label;  // Null where nothing is near.
  } cases[] = {
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
