// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/PlaceSearch.h"
#include "tests/sandbox/SearchTown.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::shared_ptr<const Gazetteer>& townGazetteer() {
  static const auto& gazetteer = *new auto(std::make_shared<const Gazetteer>(searchTown()));
  return gazetteer;
}

const PlaceSearch& town() {
  static const auto& search = *new PlaceSearch(townGazetteer());
  return search;
}

std::vector<std::string> labels(const std::vector<PlaceSearch::Result>& found) {
  std::vector<std::string> result;
  for (const auto& one : found)
    result.push_back(one.place.label());
  return result;
}

constexpr Coordinate west{10, 20};

TEST(PlaceSearchTest, BestCandidateAndScoreByText) {
  const char* const cafe = "Caf\u00E9 M\u00FCller, 133 Harbor Street, Testville, Maryland, 21231";
  const char* const square = "Pla\u00E7a de l\u2019\u00C0ncora, Testville, Maryland";
  const char* const house = "100 Harbor Street, Testville, Maryland, 21231";
  const char* const between = "150 Harbor Street, Testville, Maryland, 21231";
  // The best place, its minimum and maximum score, and texts that find it.
  const std::tuple<const char*, double, double, std::vector<const char*>> cases[] = {
      {house, 100, 100, {"100 Harbor Street", "harbor st 100"}},
      {house,
       100,
       100,
       {"100 Harbor Street, Testville, MD 21231", "100 Harbor St, Testville, USA"}},
      // "Atlantis" is an unknown word.
      {house, 60, 80, {"100 Harbor Street Atlantis"}},
      {between, 90, 90, {"150 Harbor Street", "150 Harbor Street, Testville 21231"}},
      // The number is larger than the last number of the street: finds the street.
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

TEST(PlaceSearchTest, SortsByScoreThenDistance) {
  EXPECT_THAT(labels(town().candidates("Memorial Church", {{10.01, 20.004}, {}})),
              ElementsAre("Memorial Church, Testville, Maryland"))
      << "the nearer church has a much lower score";
  for (const double latitude : {10.0, 10.06}) {
    const auto banks = town().candidates("first bank", {{latitude, 20.004}, {}});
    ASSERT_THAT(banks, SizeIs(2));
    EXPECT_LT(banks[0].meters, banks[1].meters);
  }
}

TEST(PlaceSearchTest, ResultsAreInsideTheExtent) {
  const Extent north{{10.04, 19}, {11, 21}};
  const auto banks = town().candidates("first bank", {west, north});
  ASSERT_THAT(banks, SizeIs(1));
  EXPECT_EQ(banks.front().place.position.latitude, 10.05);
  EXPECT_THAT(town().candidates("150 Harbor Street", {west, north}), IsEmpty());
  EXPECT_THAT(town().suggestions("Harbor", {west, north}), IsEmpty());
  const Extent acrossMeridian180{{-10, 170}, {10, -170}};
  EXPECT_TRUE(acrossMeridian180.contains({0, 179}));
  EXPECT_TRUE(acrossMeridian180.contains({0, -179}));
  EXPECT_FALSE(acrossMeridian180.contains({0, 0}));
}

TEST(PlaceSearchTest, SuggestionsMatchAnIncompleteText) {
  EXPECT_THAT(labels(town().suggestions("Harbor P", {west, {}})),
              ElementsAre("Harbor Point, Testville, Maryland"));
  EXPECT_THAT(labels(town().suggestions("Harb", {west, {}})),
              ElementsAre("Harbor Point, Testville, Maryland", "Harbor Street, Testville, Maryland",
                          "Harbor Street, Sankt Olaf, Maryland",
                          "100 Harbor Street, Testville, Maryland, 21231",
                          "133 Harbor Street, Testville, Maryland, 21231"));
  // Places with equal labels are one suggestion.
  EXPECT_THAT(labels(town().suggestions("First Bank", {west, {}})), SizeIs(1));
  EXPECT_THAT(labels(town().suggestions("10", {west, {}})),
              ElementsAre("100 Harbor Street, Testville, Maryland, 21231"));
  EXPECT_THAT(town().suggestions("10 ", {west, {}}), IsEmpty()) << "a space completes the number";
  EXPECT_THAT(town().suggestions("Harbor Atlantis", {west, {}}), IsEmpty());
}

TEST(PlaceSearchTest, KeysFindTheirPlaceAndWrongKeysNone) {
  const Gazetteer& gazetteer = *townGazetteer();
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

}  // namespace
}  // namespace quorvelkit::sandbox
