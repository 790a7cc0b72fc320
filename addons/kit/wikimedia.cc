#include "wikimedia.h"

#include <algorithm>

#include "values.h"

namespace quilp::kit {
namespace {

constexpr char kWidth[] = "960";  // one of those that the service keeps
constexpr std::size_t kMostFiles = 50;

/// What is not told is usual.
std::string toldOr(const std::string& usual, const Json& value) {
  const std::string text = value.text();
  return text.empty() ? usual : text;
}

std::string rankOf(const Json& claim) { return toldOr("normal", claim["rank"]); }

}  // namespace

HttpRequest wikidataRequest(const Fields& query) {
  HttpRequest request;
  request.path = "/w/api.php";
  request.query = query;
  request.query.emplace_back("format", "json");
  return request;
}

HttpRequest filesRequest(const std::vector<std::string>& names) {
  std::string titles;
  for (std::size_t i = 0; i < names.size() && i < kMostFiles; ++i) {
    titles += (titles.empty() ? "File:" : "|File:") + names[i];
  }
  return wikidataRequest({{"action", "query"},
                          {"prop", "imageinfo"},
                          {"iiprop", "url"},
                          {"iiurlwidth", kWidth},
                          {"titles", titles}});
}

std::map<std::string, std::string> readFiles(const std::string& answer) {
  const JsonAnswer json(answer);
  const Json pages = json.root()["query"]["pages"];
  std::vector<Json> files = pages.members();
  for (const Json& page : pages.list()) {
    files.push_back(page);
  }
  std::map<std::string, std::string> addresses;
  for (const Json& file : files) {
    const std::string title = file["title"].text();
    const std::string name = title.substr(std::min(title.find(':') + 1, title.size()));
    for (const Json& info : file["imageinfo"].list()) {
      std::string address = addressOf(info["thumburl"].text());
      address = address.empty() ? addressOf(info["url"].text()) : address;
      if (!address.empty()) {
        addresses[name] = address;
      }
    }
  }
  return addresses;
}

std::vector<Json> claimsOf(const Json& entity, const std::string& property) {
  std::vector<Json> claims;
  for (const char* const rank : {"preferred", "normal"}) {
    for (const Json& claim : entity["claims"][property].list()) {
      if (rankOf(claim) == rank && toldOr("value", claim["mainsnak"]["snaktype"]) == "value") {
        claims.push_back(claim);
      }
    }
  }
  return claims;
}

std::vector<Json> valuesOf(const Json& entity, const std::string& property) {
  std::vector<Json> values;
  for (const Json& claim : claimsOf(entity, property)) {
    values.push_back(claim["mainsnak"]["datavalue"]["value"]);
  }
  return values;
}

std::vector<Json> bestValuesOf(const Json& entity, const std::string& property) {
  std::vector<Json> values;
  const std::vector<Json> claims = claimsOf(entity, property);
  for (const Json& claim : claims) {
    if (rankOf(claim) == rankOf(claims[0])) {
      values.push_back(claim["mainsnak"]["datavalue"]["value"]);
    }
  }
  return values;
}

}  // namespace quilp::kit
