#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform.h"
#include "plugin/files.h"
#include "plugin/observer.h"

// The only places that know curl's command lines. A page's address that holds a single quote, or a
// zero byte, would end its own quoting there: it is never fetched.
//
// The observer of a lookup is told of each fetch. To know the HTTP status, curl is then asked for
// the headers as well ("-D FILE"); what a server sees stays the same.

namespace libquilp {

/// A page file of a fixed name. Requests of one kind wait for each other while it is in use.
struct PageFile {
  const char* path;
  std::mutex inUse;
};

inline PageFile movieSearchPage = {kMovieSearchPage, {}};
inline PageFile movieInfoPage = {kMovieInfoPage, {}};
inline PageFile moviePhotoPage = {kMoviePhotoPage, {}};
inline PageFile tvShowSearchPage = {kTVShowSearchPage, {}};
inline PageFile tvShowInfoPage = {kTVShowInfoPage, {}};

struct FilePage {
  int status;                       // curl's exit status; nothing else is set when not 0
  std::optional<std::string> text;  // none when the file cannot be read
};

/// Whether a page's own text leads to a page of the same site: after the host's name anything else
/// could name another host.
inline bool isSitePath(std::string_view path) { return path.substr(0, 1) == "/"; }

/// Fetches a page into its file, which is removed before and left there afterwards. Nothing is
/// fetched where another thing than a file stands in its place and cannot be removed.
FilePage fetchToFile(const std::string& address, PageFile& file, const Context& context);

/// Fetches a page through a pipe; none when curl could not be started. Safe in many threads.
std::optional<std::string> fetchThroughPipe(const std::string& address, const Context& context);

/// The same, but curl names no user agent and has no time limits.
std::optional<std::string> fetchWithoutLimits(const std::string& address, const Context& context);

/// A document of a web service, in a temporary file that goes with the object, as its headers do.
/// Its address reaches curl as one argument, whatever it holds.
class ServiceDocument {
 public:
  explicit ServiceDocument(const Context& context);

  /// Tries up to three times while the service is overloaded. False when it still was in the end;
  /// otherwise there may be a document, or none.
  bool fetch(const std::string& address);

  /// Tries once, whatever the service answers.
  void fetchOnce(const std::string& address);

  const char* path() const { return body_.name(); }

 private:
  std::optional<std::string> statusLine() const;

  Context context_;
  CTmpFile headers_;
  CTmpFile body_;
};

}  // namespace libquilp
