#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform.h"
#include "plugin/files.h"
#include "plugin/observer.h"
#include "plugin/run_curl.h"

// Only these functions know curl's command lines. A page address with a single quote or a zero byte
// would end its own quoting: it is never fetched.
//
// Each fetch is reported to the observer of the lookup. An observed lookup also requests the
// headers from curl ("-D FILE") to learn the HTTP status; servers see no difference.

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
  int status;                       // curl's exit status; `text` is set only if it is 0
  std::optional<std::string> text;  // none when the file cannot be read
};

/// Whether a path from a page starts with "/". Any other text after the host name could name
/// another host.
inline bool isSitePath(std::string_view path) { return path.substr(0, 1) == "/"; }

/// Removes the page file, then fetches the page into it; the file stays. Fetches nothing if
/// something other than a regular file is in its place and cannot be removed.
FilePage fetchToFile(const std::string& address, PageFile& file, const Context& context);

/// Fetches a page through a pipe; no value if curl could not be started. Thread-safe.
std::optional<std::string> fetchThroughPipe(const std::string& address, const Context& context);

/// The same, but without a user agent and without time limits.
std::optional<std::string> fetchWithoutLimits(const std::string& address, const Context& context);

/// Fetches pages concurrently, under the control of the lookup, by fewer runs of curl than pages.
/// No output for an empty address, and for what cannot be fetched.
std::vector<CurlEnd> fetchTogether(std::vector<std::string> addresses, const Context& context);

/// A document of a web service. Document and headers are temporary files, which the destructor
/// removes. curl always receives the address as one argument.
class ServiceDocument {
 public:
  explicit ServiceDocument(const Context& context);

  /// Tries up to three times while the service is overloaded. Returns false if it still is;
  /// otherwise there may be a document or not.
  bool fetch(const std::string& address);

  /// Tries once, also if the service is overloaded.
  void fetchOnce(const std::string& address);

  const char* path() const { return body_.name(); }

 private:
  std::optional<std::string> statusLine() const;

  Context context_;
  CTmpFile headers_;
  CTmpFile body_;
};

}  // namespace libquilp
