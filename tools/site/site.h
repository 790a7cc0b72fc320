#pragma once

#include <json/value.h>

#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace quilp_site {

struct Request {
  std::string host;
  std::string target;  // path and query as they came
  std::string path;
  std::multimap<std::string, std::string> query;  // decoded
  std::string id;                                 // what the page's pattern has in parentheses

  std::string parameter(const std::string& name) const;
};

struct Reply {
  Reply(std::string page) : body(std::move(page)) {}
  Reply(int code, std::string page) : status(code), body(std::move(page)) {}

  int status = 200;
  std::string body;
  std::string location;          // where to, for a redirection
  bool challenges = false;       // says in a header that it wants to see a browser
  bool closes_half_way = false;  // promises the whole body, sends half and closes the connection
};

/// The pages of all hosts. A title of "faultNAME-ID" and a query of "faultNAME WORDS" give the page
/// of ID or WORDS with that fault in it; faultNames() has the names.
class Site {
 public:
  using Body = std::optional<Reply>;  // nothing: no such page here
  using Page = std::function<Body(const Request&)>;

  /// Pages of the same host and path are asked in the order of these calls.
  void serve(std::string host, const std::string& path_pattern, Page page);

  Reply answer(Request request) const;

 private:
  struct Route {
    std::string host;
    std::regex path;
    Page page;
  };

  Body find(Request& request) const;

  std::vector<Route> routes_;
};

std::vector<std::string> faultNames();

/// Reads a file beside the site's sources.
std::string readFile(const std::string& name);
Json::Value parseJson(const std::string& text);

/// Puts the member `name` in the place of {{name}}: nothing if it is missing. The text between
/// {{#name}} and {{/name}} stands there if the member exists; once for each item of a list, whose
/// members come first, {{n}} being its number and {{.}} an item that is a string. Such a mark alone
/// on its line takes the line with it.
std::string fill(const std::string& text, const Json::Value& values);

/// Whether every word of `query` is a word of `title`, without regard to ASCII case; false for a
/// query without words. Character references are no words.
bool hasWords(const std::string& title, const std::string& query);

// One for each kind of page.
void addMovies(Site& site);
void addTV(Site& site);
void addMusic(Site& site);

}  // namespace quilp_site
