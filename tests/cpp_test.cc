// The C++ wrapper of the plain interface, through the built library.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "quilp.hpp"
#include "support.h"

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

TEST(Cpp, ResultsAndValuesAreRanges) {
  test::answerWith("Movie",
                   "<movie><title><![CDATA[A]]></title><genre><![CDATA[G]]></genre>"
                   "<genre><![CDATA[H]]></genre><actor><name><![CDATA[N]]></name>"
                   "<role><![CDATA[R]]></role></actor></movie>");
  std::vector<quilp_event> events;
  quilp::Request first(QUILP_MOVIE_DETAILS);
  first.set(QUILP_ID, "tt1").observe([&events](quilp_event event, std::string_view, long) {
    events.push_back(event);
  });
  quilp::Request request(std::move(first));  // the observer goes with it
  const quilp::Answer answer = request.run();
  EXPECT_THAT(events, ElementsAre(QUILP_ADD_ON_STARTED, QUILP_ADD_ON_ENDED));
  ASSERT_TRUE(answer) << answer.sentence();
  std::vector<std::string> seen;
  for (const quilp::Result movie : answer) {
    seen.emplace_back(movie["title"].value_or("none"));
    seen.emplace_back(movie["year"].value_or("none"));
    for (const std::string_view genre : movie.all("genre")) {
      seen.emplace_back(genre);
    }
    for (const quilp::Actor& actor : movie.cast()) {
      seen.emplace_back(actor.name);
      seen.emplace_back(actor.role.value_or("none"));
    }
  }
  EXPECT_THAT(seen, ElementsAre("A", "none", "G", "H", "N", "R"));
  EXPECT_THROW(answer.at(1), std::out_of_range);

  request.observe(nullptr);
  EXPECT_TRUE(request.run());
  EXPECT_EQ(events.size(), 2u);
}

TEST(Cpp, OnlyWrongUseThrows) {
  EXPECT_THROW(quilp::Request(static_cast<quilp_lookup>(15)), std::invalid_argument);
  quilp::Request request(QUILP_MOVIE_SEARCH);
  EXPECT_THROW(request.set(QUILP_COUNT, 0), std::invalid_argument);
  EXPECT_THROW(request.set(QUILP_KEYWORD, std::string("a\0b", 3)), std::invalid_argument);
  EXPECT_THROW(request.timeout(milliseconds(0)), std::invalid_argument);
  EXPECT_THROW(request.timeout(std::chrono::hours(100000)), std::invalid_argument);
  EXPECT_EQ(request.run().reason(), QUILP_WRONG_REQUEST);
}

TEST(Cpp, ANameIsRead) {
  EXPECT_EQ(quilp::readName("Salt.2010.mkv").at(0)["year"], "2010");
  EXPECT_EQ(quilp::readName("Salt", QUILP_NAME_SONG).at(0)["kind"], "song");
  EXPECT_THROW(quilp::readName(std::string("a\0b", 3)), std::invalid_argument);
}

TEST(Cpp, TimeoutAndCancelEndARun) {
  test::writeScript("/etc/config/addon", "sleep 60\n");
  test::registerAddOn("Movie", "/etc/config/addon");
  quilp::Request request(QUILP_MOVIE_SEARCH);
  // A part of a millisecond must not become 0, which is no limit.
  request.set(QUILP_KEYWORD, "x").timeout(std::chrono::microseconds(300));
  EXPECT_EQ(request.run().reason(), QUILP_TIMED_OUT);
  request.timeout(std::chrono::seconds(20));
  std::thread other([&request] {
    std::this_thread::sleep_for(milliseconds(50));
    request.cancel();
  });
  const quilp::Answer answer = request.run();
  other.join();
  EXPECT_EQ(answer.reason(), QUILP_CANCELLED);
  EXPECT_LT(answer.duration(), std::chrono::seconds(10));
}

}  // namespace
