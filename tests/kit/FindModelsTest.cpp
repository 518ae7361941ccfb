// SPDX-License-Identifier: Apache-2.0
#include "FieldTable.h"

#include <QuorvelKit/QVAddress.h>
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVSearchExtent.h>
#include <QuorvelKit/QVSuggestion.h>

namespace quorvelkit {
namespace {

using test::checkFields;

TEST(QVCandidateTest, readsEachMemberOrLeavesItAbsent) {
  checkFields<QVCandidate>({
      FIELD(QVCandidate, "Address", text, address),
      FIELD(QVCandidate, "score", number, score),
      FIELD(QVCandidate, "attributes", map, attributes),
      FIELD(QVCandidate, "origin", word, origin, ""),
      FIELD(QVCandidate, "provide", text, provider),
      FIELD(QVCandidate, "rating", number, rating),
      FIELD(QVCandidate, "reviewCount", integer, reviewCount),
      FIELD(QVCandidate, "providerUrl", text, providerUrl),
      FIELD(QVCandidate, "phone", text, phone),
      FIELD(QVCandidate, "categories", texts, categories, "[]"),
  });
  checkFields<QVCandidate>(
      {
          FIELD(QVCandidate, "Match_addr", text, matchAddress),
          FIELD(QVCandidate, "magicKey", text, placeAddress),
          FIELD(QVCandidate, "Addr_type", text, addressType),
      },
      R"({"Address":"1","attributes":)", "}");
}

TEST(QVCandidateTest, isAtTheOriginUnlessTheAnswerSaysWhere) {
  struct Row {
    const char* json;
    Coordinate location;
  };
  for (const auto& [json, location] : {
           Row{R"({"location":{"x":-118.2,"y":34.1}})", {34.1, -118.2}},
           Row{R"({"location":{"x":-118.2}})", {0, -118.2}},
           Row{R"({"location":[1,2]})", {}},
           Row{R"({"Address":"1"})", {}},
           Row{"null", {}},
       }) {
    EXPECT_EQ(QVCandidate(JSON::parse(json)).location(), location) << json;
  }
  QVCandidate none(std::nullopt);
  EXPECT_EQ(none.location(), std::nullopt);
  EXPECT_EQ(none.origin(), QVOrigin::unknown);
  EXPECT_TRUE(none.categories().empty());
  none.setLocation(Coordinate{1, 2});
  EXPECT_EQ(none.location(), (Coordinate{1, 2}));
}

TEST(QVSuggestionTest, readsEachMemberOrLeavesItAbsent) {
  checkFields<QVSuggestion>({
      FIELD(QVSuggestion, "text", text, text),
      FIELD(QVSuggestion, "magicKey", text, magicKey),
      FIELD(QVSuggestion, "isCollection", boolean, isCollection),
      FIELD(QVSuggestion, "origin", word, origin, ""),
      FIELD(QVSuggestion, "provide", text, provider),
      FIELD(QVSuggestion, "score", number, score),
      FIELD(QVSuggestion, "rating", number, rating),
      FIELD(QVSuggestion, "reviewCount", integer, reviewCount),
      FIELD(QVSuggestion, "price", integer, price),
      FIELD(QVSuggestion, "providerUrl", text, providerUrl),
      FIELD(QVSuggestion, "menuUrl", text, menuUrl),
      FIELD(QVSuggestion, "url", text, url),
      FIELD(QVSuggestion, "phone", text, phone),
      FIELD(QVSuggestion, "categories", texts, categories, "[]"),
  });
  const auto origin = [](const char* json) { return QVSuggestion(JSON::parse(json)).origin(); };
  EXPECT_EQ(origin(R"({"origin":"Yelp"})"), QVOrigin::Yelp);
  EXPECT_EQ(origin(R"({"origin":"yelp"})"), QVOrigin::unknown);
}

TEST(QVAddressTest, readsEachMemberOrLeavesItAbsent) {
  checkFields<QVAddress>({
      FIELD(QVAddress, "Region", text, region),
      FIELD(QVAddress, "Postal", text, postal),
      FIELD(QVAddress, "Match_addr", text, matchAddress),
      FIELD(QVAddress, "Loc_name", text, locationName),
      FIELD(QVAddress, "Address", text, address),
      FIELD(QVAddress, "CountryCode", text, countyCode),
      FIELD(QVAddress, "PostalExt", text, postalExtension),
      FIELD(QVAddress, "Neighborhood", text, neighborhood),
      FIELD(QVAddress, "Subregion", text, subregion),
      FIELD(QVAddress, "City", text, city),
  });
  EXPECT_EQ(QVAddress(std::nullopt).city(), std::nullopt);
}

TEST(QVSearchExtentTest, writesWestSouthEastNorth) {
  EXPECT_EQ((QVSearchExtent{{33.9, -118.5}, {34.2, -118.1}}).string(), "-118.5,33.9,-118.1,34.2");
  EXPECT_EQ((QVSearchExtent{{34, -118}, {0.00001, 0.1 + 0.2}}).string(), "-118.0,34.0,0.3,1e-05");
}

}  // namespace
}  // namespace quorvelkit
