#include "http.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <random>
#include <thread>

#include "ascii.h"
#include "transfer.h"

namespace quilp::kit {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kHopLimit{10000};
constexpr milliseconds kFirstBackOff{1000};
constexpr int kMostHops = 5;
constexpr int kMostTries = 3;
constexpr int kUsualTimeout = 20;
constexpr int kLongestTimeout = 600;

using Failure = TransferResult::Failure;
using Reason = HttpError::Reason;

milliseconds jittered(milliseconds most) {
  static std::mt19937 generator(std::random_device{}());
  return milliseconds(
      std::uniform_int_distribution<long long>(most.count() / 2, most.count())(generator));
}

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

/// What the service asks to wait; negative if it does not say.
milliseconds retryAfter(const TransferResult& result) {
  const std::string text = result.header("retry-after");
  char* end = nullptr;
  const long seconds = std::strtol(text.c_str(), &end, 10);
  return text.empty() || *end != '\0' || seconds < 0 || seconds > 86400
             ? milliseconds(-1)
             : seconds * milliseconds(1000);
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

/// One request of Http, with its redirects and repetitions.
class Http::Call {
 public:
  Call(const Http& http, const HttpRequest& request)
      : http_(http),
        request_(request),
        address_(http.base_ + request.path + joined(request.query, '?')),
        end_(Clock::now() + std::chrono::seconds(http.timeout_)) {
    const std::string placeholder = "{language}";
    const std::size_t at = address_.find(placeholder);
    if (at < http.base_.size()) {
      address_.replace(at, placeholder.size(), percentEncoded(request.language));
    }
  }

  TransferResult run() {
    Transfer transfer;
    transfer.address = address_ + joined(request_.secretQuery, request_.query.empty() ? '?' : '&');
    transfer.certificates = http_.certificates_;
    transfer.headers = request_.headers;
    transfer.headers.insert(transfer.headers.end(), request_.secretHeaders.begin(),
                            request_.secretHeaders.end());
    for (int hop = 0; hop < kMostHops; ++hop) {
      TransferResult result = sendPatiently(transfer);
      if (!isRedirect(result.status) || result.location.empty()) {
        return result;
      }
      const std::string host = hostOf(transfer.address);
      if (schemeOf(transfer.address) == "https" && schemeOf(result.location) != "https") {
        throw HttpError(Reason::kWrongAnswer, host + " redirects to an unprotected address");
      }
      if (hostOf(result.location) != host) {
        transfer.headers = request_.headers;
      }
      transfer.address = result.location;
    }
    throw HttpError(Reason::kWrongAnswer, hostOf(address_) + " redirects more than " +
                                              std::to_string(kMostHops) + " times");
  }

 private:
  milliseconds left() const {
    return std::chrono::duration_cast<milliseconds>(end_ - Clock::now());
  }

  /// False if there is no time for it.
  bool wait(milliseconds time) const {
    if (time >= left()) {
      return false;
    }
    std::this_thread::sleep_for(time);
    return true;
  }

  /// Repeats what may succeed a moment later. Throws if that takes too long.
  TransferResult sendPatiently(Transfer& transfer) {
    const std::string host = hostOf(transfer.address);
    milliseconds backOff = kFirstBackOff;
    for (int tries = 1;; ++tries, backOff *= 2) {
      transfer.limit = std::min(kHopLimit, left());
      if (transfer.limit.count() <= 0) {
        throw HttpError(Reason::kUnreachable, host + " takes too long");
      }
      TransferResult result = send(transfer);
      if (result.failure == Failure::kBroken) {
        if (tries == 1 && wait(jittered(kFirstBackOff / 2))) {
          continue;
        }
      } else if (isBusy(result.status)) {
        const milliseconds asked = retryAfter(result);
        if (tries < kMostTries && wait(asked.count() < 0 ? jittered(backOff) : asked)) {
          continue;
        }
      }
      if (result.failure != Failure::kNone) {
        complainOfTransfer(result, host);
      }
      return result;
    }
  }

  const Http& http_;
  const HttpRequest& request_;
  std::string address_;
  Clock::time_point end_;
};

Http::Http(const Settings& settings, const Service& service) : service_(service) {
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

HttpAnswer Http::get(const HttpRequest& request) {
  Call call(*this, request);
  TransferResult result = call.run();
  HttpAnswer answer;
  answer.isFound = result.status == 200;
  if (!answer.isFound && result.status != 404 && result.status != 410) {
    complainOfStatus(result.status, hostOf(base_));
  }
  answer.body = std::move(result.body);
  return answer;
}

}  // namespace quilp::kit
