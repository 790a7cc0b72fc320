#pragma once

#include <json/value.h>

#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace quilp_site {

struct Request {
  std::string host;
  std::string target;  // path and query as they came
  std::string path;
  std::multimap<std::string, std::string> query;  // decoded
  std::vector<std::string> groups;                // of the page's pattern, the whole path first

  std::string Query(const std::string& name) const;
};

struct Reply {
  int status = 200;
  std::string body;
  std::string location;          // where to, for a redirection
  bool closes_half_way = false;  // promises the whole body, sends half and closes the connection
};

/// The pages of all hosts. A title of "faultNAME-ID" and a query of "faultNAME WORDS" give the page
/// of ID or WORDS with that fault in it; the names stand in FaultNames().
class Site {
 public:
  /// Gives the page, or nothing when it knows none for this request.
  using Page = std::function<std::optional<std::string>(const Request&)>;

  /// Pages of the same host and path are asked in the order of these calls.
  void Serve(std::string host, const std::string& path_pattern, Page page);

  Reply Answer(Request request) const;

 private:
  struct Route {
    std::string host;
    std::regex path;
    Page page;
  };

  std::optional<std::string> Find(Request& request) const;

  std::vector<Route> routes_;
};

std::vector<std::string> FaultNames();

/// Puts the object's member `name` in the place of each {{name}}; nothing for a missing member.
std::string Fill(const std::string& text, const Json::Value& values);

/// Whether every word of `query` is a word of `title`, without regard to ASCII case; false for a
/// query without words. Character references are no words.
bool HasWords(const std::string& title, const std::string& query);

// One for each kind of page.
void AddMovies(Site& site, const Json::Value& data);

}  // namespace quilp_site
