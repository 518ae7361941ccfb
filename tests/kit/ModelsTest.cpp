// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVAddress.h>
#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVConfigurationResponse.h>
#include <QuorvelKit/QVLoginResponse.h>
#include <QuorvelKit/QVResponseKey.h>
#include <QuorvelKit/QVRoute.h>
#include <QuorvelKit/QVRouteRequest.h>
#include <QuorvelKit/QVSuggestion.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>

namespace quorvelkit {
namespace {

// The values of documents that pass the read of a property of some type, and what they pass as.
template <class T>
std::map<std::string, T> passing(const T& /*otherwise*/) {
  if constexpr (std::is_same_v<T, std::string>) {
    return {{R"("a text")", "a text"}, {R"("")", ""},         {R"("3")", "3"},
            {R"("true")", "true"},     {R"("Yelp")", "Yelp"}, {R"("onramp")", "onramp"},
            {R"("I")", "I"},           {R"("left")", "left"}, {R"("arterial")", "arterial"},
            {R"("north")", "north"}};
  } else if constexpr (std::is_same_v<T, double>) {
    return {{"3", 3}, {"3.0", 3}, {"3.5", 3.5}, {"1e300", 1e300}, {"9223372036854775808", 0x1p63}};
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    return {{"3", 3}, {"3.0", 3}};
  } else if constexpr (std::is_same_v<T, bool>) {
    return {{"true", true}, {"false", false}};
  } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
    return {{R"(["a","b"])", {"a", "b"}}, {"[]", {}}};
  } else if constexpr (std::is_same_v<T, ValueMap>) {
    return {{"{}", {}}, {R"({"a":1})", {{"a", 1}}}};
  } else {
    std::map<std::string, T> cases;
    for (const auto& [value, text] : rawValues<T>)
      cases['"' + std::string(text) + '"'] = value;
    return cases;
  }
}
template <class T>
std::map<std::string, T> passing(const std::optional<T>& /*otherwise*/) {
  return passing(T());
}

// What a property is when nothing passes.
template <class T>
const T otherwise = T();
template <RawRepresentable E>
const E otherwise<E> = E::unknown;

// A model, or the response that is one, of a document.
template <class Model>
std::shared_ptr<Model> madeOf(const std::string& document) {
  if constexpr (std::is_base_of_v<QVBaseResponse, Model>) {
    return makeResponse<Model>(Data(document), std::make_shared<QVBaseRequest>());
  } else {
    return std::make_shared<Model>(JSON::parse(document));
  }
}

// Reads a property from documents that have its member absent, null and of every kind that JSON
// has. The model's members stand inside `before` and `after`.
template <class Model, class T>
void expectField(const std::string& key, T (Model::*property)() const,
                 const std::string& before = "", const std::string& after = "") {
  SCOPED_TRACE(__PRETTY_FUNCTION__ + (' ' + key));
  const auto values = passing(otherwise<T>);
  const auto readFrom = [&](const std::string& document) {
    return (*madeOf<Model>(before + document + after).*property)();
  };
  EXPECT_EQ(readFrom(R"({"other":1})"), otherwise<T>);
  EXPECT_EQ(readFrom("[1]"), otherwise<T>);
  for (const char* sample : {"null",        "true",         "false",      "3",
                             "3.0",         "3.5",          "1e300",      "9223372036854775808",
                             "[]",          R"(["a","b"])", R"(["a",1])", "{}",
                             R"({"a":1})",  R"("a text")",  R"("")",      R"("3")",
                             R"("true")",   R"("Yelp")",    R"("left")",  R"("arterial")",
                             R"("onramp")", R"("north")",   R"("I")"}) {
    const auto found = values.find(sample);
    EXPECT_EQ(readFrom("{\"" + key + "\":" + sample + '}'),
              found == values.end() ? otherwise<T> : T(found->second))
        << sample;
  }
}

TEST(QVCandidateTest, readsEachMemberOrLeavesItAbsent) {
  expectField("Address", &QVCandidate::address);
  expectField("score", &QVCandidate::score);
  expectField("attributes", &QVCandidate::attributes);
  expectField("origin", &QVCandidate::origin);
  expectField("provide", &QVCandidate::provider);
  expectField("rating", &QVCandidate::rating);
  expectField("reviewCount", &QVCandidate::reviewCount);
  expectField("providerUrl", &QVCandidate::providerUrl);
  expectField("phone", &QVCandidate::phone);
  expectField("categories", &QVCandidate::categories);
  const std::string attributes = R"({"Address":"1","attributes":)";
  expectField("Match_addr", &QVCandidate::matchAddress, attributes, "}");
  expectField("magicKey", &QVCandidate::placeAddress, attributes, "}");
  expectField("Addr_type", &QVCandidate::addressType, attributes, "}");
}

TEST(QVCandidateTest, isAtTheOriginUnlessTheAnswerSaysWhere) {
  const std::pair<const char*, Coordinate> cases[] = {
      {R"({"location":{"x":-118.2,"y":34.1}})", {34.1, -118.2}},
      {R"({"location":{"x":-118.2}})", {0, -118.2}},
      {R"({"location":[1,2]})", {}},
      {"null", {}}};
  for (const auto& [json, location] : cases)
    EXPECT_EQ(QVCandidate(JSON::parse(json)).location(), location) << json;
  QVCandidate none(std::nullopt);
  EXPECT_EQ(none.location(), std::nullopt);
  EXPECT_TRUE(none.categories().empty());
  none.setLocation(Coordinate{1, 2});
  EXPECT_EQ(none.location(), (Coordinate{1, 2}));
}

TEST(QVSuggestionTest, readsEachMemberOrLeavesItAbsent) {
  expectField("text", &QVSuggestion::text);
  expectField("magicKey", &QVSuggestion::magicKey);
  expectField("isCollection", &QVSuggestion::isCollection);
  expectField("origin", &QVSuggestion::origin);
  expectField("provide", &QVSuggestion::provider);
  expectField("score", &QVSuggestion::score);
  expectField("rating", &QVSuggestion::rating);
  expectField("reviewCount", &QVSuggestion::reviewCount);
  expectField("price", &QVSuggestion::price);
  expectField("providerUrl", &QVSuggestion::providerUrl);
  expectField("menuUrl", &QVSuggestion::menuUrl);
  expectField("url", &QVSuggestion::url);
  expectField("phone", &QVSuggestion::phone);
  expectField("categories", &QVSuggestion::categories);
}

TEST(QVAddressTest, readsEachMemberOrLeavesItAbsent) {
  expectField("Region", &QVAddress::region);
  expectField("Postal", &QVAddress::postal);
  expectField("Match_addr", &QVAddress::matchAddress);
  expectField("Loc_name", &QVAddress::locationName);
  expectField("Address", &QVAddress::address);
  expectField("CountryCode", &QVAddress::countyCode);
  expectField("PostalExt", &QVAddress::postalExtension);
  expectField("Neighborhood", &QVAddress::neighborhood);
  expectField("Subregion", &QVAddress::subregion);
  expectField("City", &QVAddress::city);
  EXPECT_EQ(QVAddress(std::nullopt).city(), std::nullopt);
}

TEST(QVLoginResponseTest, readsEachMemberOrLeavesItAbsent) {
  expectField("code", &QVLoginResponse::code);
  expectField("message", &QVLoginResponse::message);
  expectField("objectId", &QVLoginResponse::objectId);
  expectField("user-token", &QVLoginResponse::userToken);
}

TEST(QVConfigurationResponseTest, readsEachMemberOrLeavesItAbsent) {
  expectField("quorvel-navigation-root-url", &QVConfigurationResponse::quorvelNavigationRootURL);
  expectField("quorvel-find-root-url", &QVConfigurationResponse::quorvelFindRootURL);
}

TEST(QVRouteTest, readsEachMemberOrLeavesItAbsent) {
  expectField("distance", &QVRoute::totalDistanceInMiles);
  expectField("duration", &QVRoute::totalDurationInMinutes);
  expectField("startNode", &QVRoute::startNode);
  expectField("endNode", &QVRoute::endNode);
  expectField("notify", &QVPoint::notify);
  expectField("t", &QVPoint::travelTimeInSeconds);
  expectField("d", &QVPoint::distanceInMiles);
  expectField("lat", &QVPoint::latitude);
  expectField("lon", &QVPoint::longitude);
  expectField("say", &QVPoint::say);
  expectField("edge", &QVPoint::edge);
  expectField("node", &QVPoint::node);
  expectField("dir", &QVTurn::direction);
  expectField("instruct", &QVTurn::instruction);
  expectField("name", &QVStreet::name);
  expectField("dir", &QVStreet::function);
  expectField("dir", &QVStreet::connection);
  expectField("dir", &QVStreet::direction);
  expectField("number", &QVHighway::number);
  expectField("dir", &QVHighway::direction);
  EXPECT_EQ(QVHighway(std::nullopt).number(), std::nullopt);
  EXPECT_EQ(QVHighway(std::nullopt).direction(), QVHighwayType::unknown);
}

TEST(QVRouteTest, buildsAChildUnlessItIsMissingOrNull) {
  const std::pair<std::string, bool> cases[] = {{"", false}, {"null", false},  {"{}", true},
                                                {"5", true}, {R"("x")", true}, {"[]", true}};
  for (const auto& [member, present] : cases) {
    const auto document = [member = member](const std::string& key) {
      return JSON::parse(member.empty() ? "{}" : "{\"" + key + "\":" + member + "}");
    };
    EXPECT_EQ(QVPoint(document("turn")).turn() != nullptr, present) << member;
    EXPECT_EQ(QVTurn(document("st")).street() != nullptr, present) << member;
    EXPECT_EQ(QVStreet(document("hwy")).highway() != nullptr, present) << member;
  }
}

TEST(QVRouteTest, keepsAllPointsInOrderWhateverTheyAre) {
  for (const char* text :
       {"{}", R"({"points":null})", R"({"points":{"a":1}})", "[]", "7", "null"}) {
    EXPECT_TRUE(QVRoute(JSON::parse(text)).points().empty()) << text;
  }
  const QVRoute route(JSON::parse(
      R"({"points":[{"node":1},{"node":1},null,"x",{"lat":34.1,"turn":
          {"st":{"name":"Fleet Street","hwy":{"number":1}}}},{"lat":1,"lon":2}]})"));
  ASSERT_EQ(route.points().size(), 6U);
  EXPECT_EQ(route.points()[1].node(), 1);
  EXPECT_EQ(route.points()[2].node(), std::nullopt);
  EXPECT_EQ(route.points()[4].location(), Coordinate());
  EXPECT_EQ(route.points()[4].turn()->street()->name(), "Fleet Street");
  EXPECT_EQ(route.points()[4].turn()->street()->highway()->number(), 1);
  EXPECT_EQ(route.points()[5].location(), (Coordinate{1, 2}));
}

// A property that skipped the virtual read would not see the override.
class HalvedPoint : public QVPoint {
 public:
  using QVPoint::QVPoint;
  std::optional<Value> getValue(const KeyView& key) const override {
    if (key == KeyView("lat")) return Value(*QVPoint::getValue(key)->number() / 2);
    return QVPoint::getValue(key);
  }
};

TEST(QVRouteTest, readsThroughOverriddenMembers) {
  const HalvedPoint point(JSON::parse(R"({"lat":10,"lon":2})"));
  EXPECT_EQ(point.latitude(), 5);
  EXPECT_EQ(point.location(), (Coordinate{5, 2}));
}

TEST(QVRouteTest, readsOtherJSONButBuildsNothingAnew) {
  QVPoint point(JSON::parse(R"({"lat":1,"turn":{"dir":"left"}})"));
  const QVPoint copy = point;
  point.setJSON(JSON::parse(R"({"lat":2,"turn":{"dir":"right"}})"));
  EXPECT_EQ(point.latitude(), 2);
  EXPECT_EQ(copy.latitude(), 1);
  ASSERT_TRUE(point.turn());
  EXPECT_EQ(point.turn()->direction(), QVTurnDirection::left);
  point.setJSON(std::nullopt);
  EXPECT_FALSE(point.latitude());
}

TEST(QVRouteTest, copiesShareTheDocumentAndOutliveTheOriginal) {
  std::optional<QVRoute> route(
      JSON::parse(R"({"distance":1.5,"points":[{"node":7,"turn":{"instruct":"Go"}}]})"));
  const QVRoute copy = *route;
  const QVPoint point = route->points().front();
  EXPECT_EQ(&copy.points(), &route->points());
  route.reset();
  EXPECT_EQ(copy.totalDistanceInMiles(), 1.5);
  EXPECT_EQ(point.turn()->instruction(), "Go");
  static_assert(sizeof(QVPoint) <= 56);
  static_assert(!std::is_copy_constructible_v<QVBaseObject>);
  static_assert(!std::is_constructible_v<QVRoute, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVPoint, std::nullopt_t>);
  static_assert(!std::is_constructible_v<QVTurn, std::optional<JSON>>);
  static_assert(!std::is_constructible_v<QVStreet, std::optional<JSON>>);
}

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
  for (const char* text : {"provider", "countrycode", "Code", "code ", ""})
    EXPECT_EQ(fromRawValue<QVResponseKey>(text), std::nullopt) << text;
  EXPECT_EQ(fromRawValue<QVRouteRequestType>("arrivaltime"), std::nullopt);
  EXPECT_EQ(fromRawValue<QVOrigin>("Mapbox"), std::nullopt);
  EXPECT_DEATH(rawValue(static_cast<QVOrigin>(7)), "no such case");
}

// Keys are hashed when the program is compiled.
static_assert(KeyView(QVResponseKey::latitude) == KeyView("lat"));

}  // namespace
}  // namespace quorvelkit
