#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "fetch/curl.h"

namespace quilp {

/// How far a download is. `total` is 0 while it is unknown.
using ShowDownload = std::function<void(std::uint64_t bytes, std::uint64_t total)>;

struct Downloaded {
  enum class Outcome { kNew, kUnchanged, kFailed, kInterrupted };

  Outcome outcome = Outcome::kFailed;
  int status = 0;        // curl's, of a failure
  std::string reason{};  // of a failure
  bool isFinal = false;  // the next file would fail for the same reason
  std::uint64_t bytes = 0;
};

/// Brings a gzip file up to date. What has come of it is in FILE.part, and the headers in
/// FILE.part.headers, so that another call goes on there, also after this program was killed. The
/// headers of the complete file are kept in FILE.headers, to ask again only for what changed.
Downloaded download(Curl& curl, const std::string& address, const std::string& file,
                    const ShowDownload& show);

}  // namespace quilp
