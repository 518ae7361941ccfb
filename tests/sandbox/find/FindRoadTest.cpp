// SPDX-License-Identifier: Apache-2.0
// The whole road of place search: the library's calls, the network, the sandbox and back.
#include "sandbox/Sandbox.h"
#include "tests/sandbox/find/SearchTown.h"

#include <QuorvelKit/QVBackendless.h>
#include <QuorvelKit/QVFind.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/PercentEncoding.h>

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quorvelkit::sandbox {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

class FindRoadTest : public testing::Test {
 protected:
  FindRoadTest() {
    EXPECT_TRUE(sandbox_.start(0));
    QVBackendless::setBaseURL(sandbox_.url());
  }

  /// Runs the main queue until so many handlers ran.
  void await(std::size_t handlers) {
    while (ran_ < handlers) {
      ASSERT_TRUE(MainQueue::main().runOnce(std::chrono::seconds(30))) << "after " << ran_;
    }
  }
  /// A handler that counts itself and keeps what it was given.
  template <class Response>
  auto into(std::shared_ptr<Response>& slot) {
    return [this, &slot, thread = std::this_thread::get_id()](std::shared_ptr<Response> response) {
      EXPECT_EQ(std::this_thread::get_id(), thread);
      EXPECT_EQ(slot, nullptr) << "a second call of a handler";
      slot = std::move(response);
      ++ran_;
    };
  }

  const Coordinate here_{10, 20};

 private:
  Sandbox sandbox_{searchTown()};
  std::size_t ran_ = 0;
};

TEST_F(FindRoadTest, FromSuggestionToCandidateToAddress) {
  std::shared_ptr<QVSuggestResponse> suggested;
  QVFind::suggest(std::make_shared<QVSuggestRequest>(urlEncode("caf\u00E9 m"), here_),
                  into(suggested));
  await(1);
  ASSERT_FALSE(suggested->error()) << suggested->error()->localizedDescription();
  ASSERT_THAT(suggested->suggestions(), SizeIs(1));
  const QVSuggestion& suggestion = suggested->suggestions().front();
  EXPECT_EQ(suggestion.isCollection(), false);
  EXPECT_EQ(suggestion.origin(), QVOrigin::OSM);
  EXPECT_EQ(suggestion.provider(), "OpenStreetMap");
  EXPECT_EQ(suggestion.url(), "https://mueller.example");

  std::shared_ptr<QVAddressCandidatesResponse> found;
  QVFind::addressCandidates(
      std::make_shared<QVAddressCandidatesRequest>(
          *suggestion.text(), here_, QVSearchExtent{{9, 19}, {11, 21}}, suggestion.magicKey()),
      into(found));
  await(2);
  ASSERT_THAT(found->candidates(), SizeIs(1));
  const QVCandidate& cafe = found->candidates().front();
  EXPECT_EQ(cafe.location(), (Coordinate{10.0002, 20.003}));
  EXPECT_EQ(cafe.matchAddress(), suggestion.text());
  EXPECT_EQ(cafe.placeAddress(), suggestion.magicKey());
  EXPECT_EQ(cafe.addressType(), "POI");
  EXPECT_EQ(cafe.score(), 100);
  EXPECT_EQ(cafe.phone(), "+1 555 0100");
  EXPECT_EQ(cafe.providerUrl(), "https://mueller.example");
  EXPECT_THAT(cafe.categories(), ElementsAre("cafe"));

  std::shared_ptr<QVReverseGeocodeResponse> reversed;
  QVFind::reverseGeocode(std::make_shared<QVReverseGeocodeRequest>(*cafe.location()),
                         into(reversed));
  await(3);
  EXPECT_EQ(reversed->location(), cafe.location());
  const QVAddress address = *reversed->address();
  EXPECT_EQ(address.matchAddress(), "133 Harbor Street, Testville, Maryland, 21231");
  EXPECT_EQ(address.address(), "133 Harbor Street");
  EXPECT_EQ(address.neighborhood(), "Harbor Point");
  EXPECT_EQ(address.city(), "Testville");
  EXPECT_EQ(address.region(), "Maryland");
  EXPECT_EQ(address.postal(), "21231");
  EXPECT_EQ(address.countyCode(), "USA");
}

TEST_F(FindRoadTest, RefusalsComeBackAsErrors) {
  std::shared_ptr<QVReverseGeocodeResponse> reversed;
  QVFind::reverseGeocode(std::make_shared<QVReverseGeocodeRequest>(Coordinate{95, 20}),
                         into(reversed));
  await(1);
  ASSERT_TRUE(reversed->error());
  EXPECT_EQ(reversed->error()->code(), 400);
  EXPECT_THAT(reversed->error()->localizedDescription(), testing::HasSubstr("out of range"));
  EXPECT_FALSE(reversed->address()->matchAddress());
}

TEST_F(FindRoadTest, ManyCallsInFlightGetTheirOwnAnswers) {
  constexpr std::size_t count = 80;  // House numbers 101 to 180.
  std::vector<std::shared_ptr<QVAddressCandidatesResponse>> found(count);
  std::vector<std::shared_ptr<QVSuggestResponse>> suggested(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string text = std::to_string(101 + i) + " Harbor Street";
    QVFind::addressCandidates(std::make_shared<QVAddressCandidatesRequest>(text, here_),
                              into(found[i]));
    QVFind::suggest(std::make_shared<QVSuggestRequest>(urlEncode(text), here_), into(suggested[i]));
  }
  await(2 * count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string address = std::to_string(101 + i) + " Harbor Street, Testville";
    ASSERT_FALSE(found[i]->candidates().empty()) << address;
    EXPECT_THAT(*found[i]->candidates().front().matchAddress(), StartsWith(address));
    ASSERT_FALSE(suggested[i]->suggestions().empty()) << address;
    EXPECT_THAT(*suggested[i]->suggestions().front().text(), StartsWith(address));
  }
}

TEST_F(FindRoadTest, SupersededTypingIsCancelled) {
  // The configuration first: a call that has to load it returns no task to cancel.
  bool loaded = false;
  QVBaseService::loadConfiguration([&] { loaded = true; });
  while (!loaded)
    ASSERT_TRUE(MainQueue::main().runOnce(std::chrono::seconds(30)));

  const std::string typed = "harbor street test";
  std::vector<std::shared_ptr<QVSuggestResponse>> suggested(typed.size());
  std::shared_ptr<URLSessionDataTask> last;
  for (std::size_t i = 0; i < typed.size(); ++i) {
    if (last) last->cancel();
    last = QVFind::suggest(
        std::make_shared<QVSuggestRequest>(urlEncode(typed.substr(0, i + 1)), here_),
        into(suggested[i]));
    ASSERT_TRUE(last);
  }
  await(typed.size());
  for (std::size_t i = 0; i + 1 < typed.size(); ++i) {
    EXPECT_TRUE(suggested[i]->isCancelled() || !suggested[i]->suggestions().empty()) << i;
    EXPECT_TRUE(!suggested[i]->isCancelled() || suggested[i]->suggestions().empty()) << i;
  }
  ASSERT_FALSE(suggested.back()->isCancelled());
  EXPECT_EQ(suggested.back()->suggestions().front().text(), "Harbor Street, Testville, Maryland");
}

}  // namespace
}  // namespace quorvelkit::sandbox
