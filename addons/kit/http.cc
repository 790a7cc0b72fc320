#include "http.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "ascii.h"
#include "freshness.h"
#include "http_cache.h"
#include "pace.h"
#include "platform.h"
#include "transfer.h"

namespace quilp::kit {
namespace {

constexpr Milliseconds kHopLimit{10000};
constexpr int kMostRedirects = 5;
constexpr int kMostTries = 3;
constexpr int kUsualTimeout = 20;
constexpr int kLongestTimeout = 600;
constexpr int kOtherRequests = 10;  // a second, to a host that a redirect leads to
constexpr std::int64_t kSmallestCache = std::int64_t{1} << 20;

using Failure = TransferResult::Failure;
using Reason = HttpError::Reason;

std::string joined(const Fields& fields, char separator) {
  std::string text;
  for (const auto& [name, value] : fields) {
    text += separator + percentEncoded(name) + '=' + percentEncoded(value);
    separator = '&';
  }
  return text;
}

/// The first line of a file that holds a key.
std::string keyOf(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line)) {
    throw std::runtime_error(path + ": the key cannot be read");
  }
  line.erase(line.find_last_not_of(" \t\r") + 1);
  return line;
}

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool isBusy(int status) { return status == 429 || status == 503; }

/// "64M" gives 67108864.
std::int64_t readSize(const std::string& text) {
  char* end = nullptr;
  const long long number = std::strtoll(text.c_str(), &end, 10);
  const std::string units = "KMG";
  const std::size_t unit = *end == '\0' ? std::string::npos : units.find(*end);
  const bool isWhole = *end == '\0' || (unit != std::string::npos && end[1] == '\0');
  const int shift = unit == std::string::npos ? 0 : 10 * (static_cast<int>(unit) + 1);
  if (text.empty() || !isWhole || number < 0 || number > (1LL << 40 >> shift)) {
    throw std::runtime_error("[cache] size: no size, as 64M is");
  }
  return std::max<std::int64_t>(static_cast<std::int64_t>(number) << shift, kSmallestCache);
}

std::string cachePath(const Settings& settings) {
  std::string path = settings.get("cache", "path", libquilp::kHttpCache);
  if (path[0] != '/') {
    throw std::runtime_error("[cache] path: not absolute");
  }
  return path;
}

/// One for all services of a process.
HttpCache& sharedCache(const Settings& settings) {
  static HttpCache cache(cachePath(settings), readSize(settings.get("cache", "size", "64M")));
  return cache;
}

[[noreturn]] void complainOfTransfer(const TransferResult& result, const std::string& host) {
  switch (result.failure) {
    case Failure::kUnreachable:
      throw HttpError(Reason::kUnreachable, host + " cannot be reached: " + result.why);
    case Failure::kCertificate:
      throw HttpError(Reason::kCertificate, host + " is not trusted: " + result.why);
    case Failure::kTooLarge:
      throw HttpError(Reason::kWrongAnswer, host + " sends more than 16 MB");
    default:
      throw HttpError(Reason::kWrongAnswer, host + " sends a broken answer: " + result.why);
  }
}

[[noreturn]] void complainOfStatus(int status, const std::string& host) {
  const std::string text = " (status " + std::to_string(status) + ')';
  if (status == 401) {
    throw HttpError(Reason::kKeyRefused, host + " refuses the key, or wants one" + text);
  }
  if (status == 403 || status == 451) {
    throw HttpError(Reason::kBlocked, host + " does not let this program in" + text);
  }
  if (isBusy(status)) {
    throw HttpError(Reason::kBusy, host + " has no time for this request" + text);
  }
  throw HttpError(Reason::kWrongAnswer, host + " gives no answer" + text);
}

}  // namespace

std::string percentEncoded(const std::string& text) {
  std::string encoded;
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    if (libquilp::isAlnum(byte) || std::string("-._~").find(each) != std::string::npos) {
      encoded += each;
    } else {
      encoded += '%';
      encoded += "0123456789ABCDEF"[byte >> 4];
      encoded += "0123456789ABCDEF"[byte & 15];
    }
  }
  return encoded;
}

/// The address with a language in its place.
static std::string baseOf(std::string base, const std::string& language) {
  const std::string placeholder = "{language}";
  const std::size_t at = base.find(placeholder);
  return at == std::string::npos ? base
                                 : base.replace(at, placeholder.size(), percentEncoded(language));
}

/// One request of Http, with its redirects and repetitions.
class Http::Call {
 public:
  Call(Http& http, const HttpRequest& request)
      : http_(http),
        request_(request),
        base_(baseOf(http.base_, request.language)),
        end_(std::min(request.end, Clock::now() + std::chrono::seconds(http.timeout_))) {
    host_ = hostOf(base_);
    const std::string rest =
        base_.substr(std::min(base_.find('/', base_.find("://") + 3), base_.size()));
    // A base may hold a password, which hostOf() leaves out.
    key_ = schemeOf(base_) + "://" + host_ + rest + request.path + joined(request.query, '?');
    for (const auto& [name, value] : request.headers) {
      key_.append("\n").append(name).append(": ").append(value);  // as Vary may say
    }
  }

  HttpAnswer answer() {
    if (!request_.isReload) {
      stored_ = http_.cache_.find(key_);
    }
    if (stored_ && stored_->freshUntil > secondsNow()) {
      return copy(false);
    }
    try {
      const std::optional<TransferResult> result = follow();
      return result ? take(*result) : copy(false);
    } catch (const HttpError& error) {
      if (!stored_ || !stored_->isFound) {
        throw;
      }
      std::fprintf(stderr, "%s: %s; this copy is %lld hours old\n", http_.service_.section,
                   error.what(), static_cast<long long>((secondsNow() - stored_->stored) / 3600));
      return copy(true);
    }
  }

 private:
  Milliseconds left() const {
    return std::chrono::duration_cast<Milliseconds>(end_ - Clock::now());
  }

  /// Another process may have asked the same in the meantime. What is not fresh stays as it is: the
  /// request may be about it.
  bool findFresh() {
    std::optional<StoredAnswer> found;
    if (!request_.isReload) {
      found = http_.cache_.find(key_);
    }
    const bool isFresh = found && found->freshUntil > secondsNow();
    if (isFresh) {
      stored_ = std::move(found);
    }
    return isFresh;
  }

  HttpAnswer copy(bool isStale) {
    return {stored_->isFound, std::move(stored_->body), true, isStale};
  }

  HttpAnswer take(const TransferResult& result) {
    const bool isConfirmed = result.status == 304 && stored_;
    const bool isFound = isConfirmed || result.status == 200;
    if (!isFound && result.status != 404 && result.status != 410) {
      complainOfStatus(result.status, host_);
    }
    StoredAnswer stored = isConfirmed ? *stored_ : StoredAnswer();
    if (!isConfirmed) {
      stored.isFound = isFound;
      stored.body = isFound ? result.body : "";
    }
    for (const auto& [name, member] :
         {std::pair("etag", &stored.tag), std::pair("last-modified", &stored.modified)}) {
      const std::string value = result.header(name);
      *member = value.empty() && isConfirmed ? *member : value;
    }
    stored.stored = secondsNow();
    const std::optional<Seconds> fresh = freshFor(result, stored.stored, http_.service_.freshFor);
    if (fresh && (*fresh > 0 || isFound)) {
      stored.freshUntil = stored.stored + *fresh;
      http_.cache_.store(key_, stored);
    } else {
      http_.cache_.remove(key_);
    }
    return {isFound, std::move(stored.body), isConfirmed, false};
  }

  Transfer first() const {
    Transfer transfer;
    transfer.address = base_ + request_.path + joined(request_.query, '?') +
                       joined(request_.secretQuery, request_.query.empty() ? '?' : '&');
    transfer.certificates = http_.certificates_;
    transfer.headers = harmlessHeaders();
    transfer.headers.insert(transfer.headers.end(), request_.secretHeaders.begin(),
                            request_.secretHeaders.end());
    return transfer;
  }

  Fields harmlessHeaders() const {
    Fields headers = request_.headers;
    if (stored_ && stored_->isFound && !stored_->tag.empty()) {
      headers.emplace_back("If-None-Match", stored_->tag);
    }
    if (stored_ && stored_->isFound && !stored_->modified.empty()) {
      headers.emplace_back("If-Modified-Since", stored_->modified);
    }
    return headers;
  }

  /// Nothing if the cache got the answer in the meantime.
  std::optional<TransferResult> follow() {
    Transfer transfer = first();
    for (int hop = 0; hop <= kMostRedirects; ++hop) {
      std::optional<TransferResult> result = sendPatiently(transfer);
      if (!result || !isRedirect(result->status) || result->location.empty()) {
        return result;
      }
      const std::string scheme = schemeOf(result->location);
      if (scheme != "https" && (scheme != "http" || schemeOf(transfer.address) != "http")) {
        throw HttpError(Reason::kWrongAnswer, host_ + " redirects to an unprotected address");
      }
      const std::string host = hostOf(result->location);
      if (host != host_) {
        transfer.headers = harmlessHeaders();
        host_ = host;
      }
      transfer.address = result->location;
    }
    throw HttpError(Reason::kWrongAnswer,
                    host_ + " redirects more than " + std::to_string(kMostRedirects) + " times");
  }

  /// Repeats what may succeed a moment later.
  std::optional<TransferResult> sendPatiently(Transfer& transfer) {
    Pace& pace = http_.paceOf(host_, host_ == hostOf(base_));
    int status = 0;
    for (int tries = 1;; ++tries) {
      if (!pace.take(end_, [this] { return findFresh(); })) {
        if (findFresh()) {
          return std::nullopt;
        }
        if (status != 0) {
          complainOfStatus(status, host_);
        }
        throw HttpError(Reason::kBusy, host_ + " must not be asked so soon again");
      }
      transfer.limit = std::min(kHopLimit, left());
      TransferResult result = send(transfer);
      pace.giveBack();
      if (isBusy(result.status)) {
        const std::optional<Seconds> asked = retryAfter(result, secondsNow());
        if (asked) {
          pace.pause(*asked * Milliseconds(1000));
        } else {
          pace.backOff();
        }
        if (tries < kMostTries) {
          status = result.status;
          continue;
        }
      } else if (result.failure == Failure::kBroken && tries == 1) {
        continue;
      } else if (result.failure != Failure::kNone) {
        complainOfTransfer(result, host_);
      } else {
        pace.succeed();
      }
      return result;
    }
  }

  Http& http_;
  const HttpRequest& request_;
  std::string base_;
  std::string host_;  // that is asked
  std::string key_;   // of the cache
  Clock::time_point end_;
  std::optional<StoredAnswer> stored_{};
};

Http::Http(const Settings& settings, const Service& service)
    : service_(service), cache_(sharedCache(settings)) {
  const std::string cache = cachePath(settings);
  folder_ = cache.substr(0, cache.rfind('/'));
  const std::string section = service.section;
  base_ = settings.get(section, "base", service.base);
  while (!base_.empty() && base_.back() == '/') {
    base_.pop_back();
  }
  if (schemeOf(base_) != "https" && schemeOf(base_) != "http") {
    throw std::runtime_error('[' + section + "] base: no address");
  }
  key_ = settings.get(section, "key", "");
  const std::string keyFile = settings.get(section, "key_file", "");
  if (key_.empty() && !keyFile.empty()) {
    key_ = keyOf(keyFile);
  }
  language_ = settings.get(section, "language", "");
  certificates_ = settings.get(section, "certificates", "");
  const std::string text = settings.get(section, "timeout", std::to_string(kUsualTimeout));
  char* end = nullptr;
  const long timeout = std::strtol(text.c_str(), &end, 10);
  if (*end != '\0' || timeout < 1 || timeout > kLongestTimeout) {
    throw std::runtime_error('[' + section + "] timeout: no number from 1 to 600");
  }
  timeout_ = static_cast<int>(timeout);
}

Http::~Http() = default;

Pace& Http::paceOf(const std::string& host, bool isOwn) {
  std::unique_ptr<Pace>& pace = paces_[host];
  if (!pace) {
    pace = std::make_unique<Pace>(folder_, host, isOwn ? service_.requests : kOtherRequests,
                                  std::chrono::seconds(isOwn ? service_.seconds : 1));
  }
  return *pace;
}

void Http::requireKey() const {
  if (key_.empty()) {
    throw HttpError(Reason::kKeyRefused, std::string("there is no key: [") + service_.section +
                                             "] of " + settingsFile() + " wants key= or key_file=");
  }
}

std::string Http::test(HttpRequest request, bool mustFind) {
  request.isReload = true;
  const std::string host = hostOf(baseOf(base_, request.language));
  if (!get(request).isFound && mustFind) {
    throw HttpError(Reason::kWrongAnswer, host + " has no such page: is base= right?");
  }
  return host + " answers";
}

HttpAnswer Http::get(const HttpRequest& request) { return Call(*this, request).answer(); }

}  // namespace quilp::kit
