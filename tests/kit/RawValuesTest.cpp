// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVResponseKey.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVStreet.h>
#include <QuorvelKit/QVTurn.h>

#include <gtest/gtest.h>

#include <string>

namespace quorvelkit {
namespace {

template <RawRepresentable E>
std::string allTexts() {
  std::string texts;
  for (const auto& [value, text] : rawValues<E>) {
    EXPECT_EQ(rawValue(value), text);
    EXPECT_EQ(fromRawValue<E>(text), value);
    texts += texts.empty() ? "" : " ";
    texts += text;
  }
  return texts;
}

// The texts are those of the servers, in the order of the cases; a last empty one is `unknown`.
TEST(RawValuesTest, areTheTextsOfTheServers) {
  EXPECT_EQ(allTexts<QVRouteRequestType>(), "ArrivalTime DepartureTime");
  EXPECT_EQ(allTexts<QVTurnDirection>(),
            "hardleft left slightleft forward slightright right hardright exitleft exitright "
            "leftatthefork rightatthefork uturn uturnleft uturnright ");
  EXPECT_EQ(allTexts<QVStreetFunction>(),
            "highway localhighway arterial localarterial residential service ");
  EXPECT_EQ(allTexts<QVStreetConnection>(),
            "origin offramp onramp interchange connector destination ");
  EXPECT_EQ(allTexts<QVStreetDirection>(), "north south east west ");
  EXPECT_EQ(allTexts<QVHighwayType>(), "CA US I Hwy CR SR ");
  EXPECT_EQ(allTexts<QVOrigin>(), "OSM ArcGIS Quorvel Yelp Foursquare MapBox ");
  EXPECT_EQ(
      allTexts<QVResponseKey>(),
      "quorvel-navigation-root-url quorvel-find-root-url code message objectId user-token distance "
      "startNode endNode duration points notify t d lon turn edge node lat say dir st instruct "
      "name "
      "func connection hwy number type suggestions origin provide score reviewCount providerUrl "
      "menuUrl phone categories text magicKey rating isCollection url price location x y Region "
      "Postal Match_addr Loc_name Address CountryCode PostalExt Neighborhood Subregion City "
      "candidates attributes Addr_type");
}

TEST(RawValuesTest, areFoundByTheExactTextOnly) {
  for (const char* text : {"provider", "countrycode", "Code", "code ", ""}) {
    EXPECT_EQ(fromRawValue<QVResponseKey>(text), std::nullopt) << text;
  }
  EXPECT_EQ(fromRawValue<QVRouteRequestType>("arrivaltime"), std::nullopt);
  EXPECT_EQ(fromRawValue<QVOrigin>("Mapbox"), std::nullopt);
  EXPECT_DEATH(rawValue(static_cast<QVOrigin>(7)), "no such case");
}

// Keys are hashed when the program is compiled.
static_assert(KeyView(QVResponseKey::latitude) == KeyView("lat"));

}  // namespace
}  // namespace quorvelkit
