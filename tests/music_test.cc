#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "music/artwork.h"
#include "music/json.h"
#include "plugin/page_fetch.h"
#include "support.h"

namespace libquilp {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const char kPath[] = "/tmp/document.json";

std::optional<Json::Value> parsed(const std::string& document) {
  test::writeFile(kPath, document);
  return readJson(kPath, Context());
}

TEST(Json, WhatIsNoDocumentIsTold) {
  for (const std::string& document :
       {std::string(), std::string("<html>Down</html>"), std::string("{\"a\": "),
        std::string("{\"a\": }"), std::string("\0\xFF", 2), std::string("{\"a\": \"\\ud800\"}"),
        std::string(100000, '['), "{\"a\":" + std::string(50 << 20, '[')}) {
    EXPECT_THAT(test::standardErrorOf([&] { EXPECT_FALSE(parsed(document)); }),
                testing::MatchesRegex("Failed to parse configuration\n(.*\n)+"))
        << document.substr(0, 20);
  }
  std::remove(kPath);
  EXPECT_EQ(test::standardErrorOf([] { EXPECT_FALSE(readJson(kPath, Context())); }),
            "Failed to parse configuration\n* Line 1, Column 1\n"
            "  Syntax error: value, object or array expected.\n");
}

TEST(Json, ALargeDocumentIsNoFault) {
  const auto root = parsed("// c\n{\"s\": \"" + std::string(50 << 20, 'x') + "\"} rest");
  std::remove(kPath);
  ASSERT_TRUE(root);
  EXPECT_EQ(text(member(*root, "s")).size(), 50U << 20);
}

TEST(Cover, IsNotAskedForWithoutAnIdentifier) {
  test::newSiteRequests();
  EXPECT_EQ(fetchCover(nullptr, CoverKind::kFront, Context()), "");
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST(ServiceDocument, TriesAgainWhileTheServiceIsOverloadedAlone) {
  const auto before = test::Holdings::now();
  const std::string address = "https://musicbrainz.org/ws/2/artist/?query=";
  test::newSiteRequests();
  {
    ServiceDocument document{Context()};
    document.fetchOnce(address + "fault503");
    EXPECT_THAT(test::readFile(document.path()), HasSubstr("Too many requests"));
    EXPECT_THAT(test::newSiteRequests(), SizeIs(1));
    EXPECT_TRUE(document.fetch(address + "fault500"));
    EXPECT_THAT(test::newSiteRequests(), SizeIs(1));
  }
  {
    // Without an answer there are no headers, and that is no overload.
    ServiceDocument document{Context()};
    EXPECT_TRUE(document.fetch("https://nowhere.example/"));
    EXPECT_EQ(test::readFile(document.path()), "");
  }
  EXPECT_EQ(test::Holdings::after(before), before);
}

}  // namespace
}  // namespace libquilp
