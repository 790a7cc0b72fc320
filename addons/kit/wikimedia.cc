#include "wikimedia.h"

#include "values.h"

namespace quilp::kit {
namespace {

constexpr char kWidth[] = "960";  // one of those that the service keeps
constexpr std::size_t kMostFiles = 50;

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

std::vector<std::string> readFiles(const std::string& answer) {
  const JsonAnswer json(answer);
  const Json pages = json.root()["query"]["pages"];
  std::vector<Json> files = pages.members();
  for (const Json& page : pages.list()) {
    files.push_back(page);
  }
  std::vector<std::string> addresses;
  for (const Json& file : files) {
    for (const Json& info : file["imageinfo"].list()) {
      std::string address = addressOf(info["thumburl"].text());
      address = address.empty() ? addressOf(info["url"].text()) : address;
      if (!address.empty()) {
        addresses.push_back(address);
      }
    }
  }
  return addresses;
}

std::vector<Json> valuesOf(const Json& entity, const std::string& property) {
  std::vector<Json> values;
  for (const char* const rank : {"preferred", "normal"}) {
    for (const Json& claim : entity["claims"][property].list()) {
      const Json snak = claim["mainsnak"];
      if (claim["rank"].text() == rank && snak["snaktype"].text() == "value") {
        values.push_back(snak["datavalue"]["value"]);
      }
    }
  }
  return values;
}

}  // namespace quilp::kit
