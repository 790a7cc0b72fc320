#include "transfer.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <algorithm>
#include <memory>

#include "ascii.h"
#include "platform.h"

namespace quilp::kit {
namespace {

constexpr std::size_t kLargestBody = std::size_t{16} << 20;
constexpr std::size_t kLargestHeaders = std::size_t{64} << 10;
constexpr long kConnectMilliseconds = 5000;

using Failure = TransferResult::Failure;

/// The calls of libcurl that are used.
class Curl {
 public:
  static const Curl& get() {
    static const Curl curl;
    return curl;
  }

  decltype(&curl_easy_init) init = nullptr;
  decltype(&curl_easy_reset) reset = nullptr;
  decltype(&curl_easy_setopt) setopt = nullptr;
  decltype(&curl_easy_perform) perform = nullptr;
  decltype(&curl_easy_getinfo) getinfo = nullptr;
  decltype(&curl_easy_strerror) strerror = nullptr;
  decltype(&curl_easy_cleanup) cleanup = nullptr;
  decltype(&curl_slist_append) append = nullptr;
  decltype(&curl_slist_free_all) freeAll = nullptr;

 private:
  Curl() {
    void* const library = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      throw HttpError(HttpError::Reason::kUnreachable, "libcurl.so.4 cannot be loaded");
    }
    decltype(&curl_global_init) globalInit = nullptr;
    load(library, "curl_global_init", globalInit);
    load(library, "curl_easy_init", init);
    load(library, "curl_easy_reset", reset);
    load(library, "curl_easy_setopt", setopt);
    load(library, "curl_easy_perform", perform);
    load(library, "curl_easy_getinfo", getinfo);
    load(library, "curl_easy_strerror", strerror);
    load(library, "curl_easy_cleanup", cleanup);
    load(library, "curl_slist_append", append);
    load(library, "curl_slist_free_all", freeAll);
    globalInit(CURL_GLOBAL_DEFAULT);
  }

  template <class Function>
  static void load(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) {
      throw HttpError(HttpError::Reason::kUnreachable, std::string("libcurl has no ") + name);
    }
  }
};

/// A handle, which keeps its connections.
CURL* handle() {
  static const std::unique_ptr<CURL, void (*)(CURL*)> handle(
      Curl::get().init(), [](CURL* each) { Curl::get().cleanup(each); });
  if (!handle) {
    throw std::bad_alloc();
  }
  return handle.get();
}

/// What arrives.
struct Receiver {
  TransferResult& result;
  std::size_t headerSize = 0;
};

std::size_t takeBody(char* bytes, std::size_t, std::size_t size, void* data) {
  TransferResult& result = static_cast<Receiver*>(data)->result;
  if (size > kLargestBody - result.body.size()) {
    result.failure = Failure::kTooLarge;
    return 0;
  }
  result.body.append(bytes, size);
  return size;
}

std::string trimmed(const std::string& text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  return start == std::string::npos
             ? ""
             : text.substr(start, text.find_last_not_of(" \t\r\n") + 1 - start);
}

std::size_t takeHeader(char* bytes, std::size_t, std::size_t size, void* data) {
  auto& receiver = *static_cast<Receiver*>(data);
  TransferResult& result = receiver.result;
  const std::string line(bytes, size);
  receiver.headerSize += size;
  if (receiver.headerSize > kLargestHeaders) {
    result.failure = Failure::kTooLarge;
    return 0;
  }
  const std::size_t colon = line.find(':');
  if (line.compare(0, 5, "HTTP/") == 0) {
    result.headers.clear();  // those of an interim answer
  } else if (colon != std::string::npos) {
    std::string name = line.substr(0, colon);
    std::transform(name.begin(), name.end(), name.begin(), libquilp::toLower);
    result.headers.emplace_back(name, trimmed(line.substr(colon + 1)));
  }
  return size;
}

Failure failureOf(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_SSL_CONNECT_ERROR:
      return Failure::kUnreachable;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
      return Failure::kCertificate;
    default:
      return Failure::kBroken;
  }
}

}  // namespace

std::string TransferResult::header(const std::string& name) const {
  const auto found = std::find_if(headers.rbegin(), headers.rend(),
                                  [&name](const auto& each) { return each.first == name; });
  return found == headers.rend() ? "" : found->second;
}

std::string schemeOf(const std::string& address) {
  const std::size_t end = address.find("://");
  std::string scheme = end == std::string::npos ? "" : address.substr(0, end);
  std::transform(scheme.begin(), scheme.end(), scheme.begin(), libquilp::toLower);
  return scheme;
}

std::string hostOf(const std::string& address) {
  const std::size_t mark = address.find("://");
  const std::size_t start = mark == std::string::npos ? 0 : mark + 3;
  std::string host = address.substr(start, address.find_first_of("/?#", start) - start);
  host.erase(0, host.find('@') + 1);  // npos + 1 is 0
  std::transform(host.begin(), host.end(), host.begin(), libquilp::toLower);
  return host;
}

TransferResult send(const Transfer& transfer) {
  const Curl& curl = Curl::get();
  CURL* const easy = handle();
  curl.reset(easy);  // keeps the connections
  TransferResult result;
  Receiver receiver{result};
  std::unique_ptr<curl_slist, void (*)(curl_slist*)> headers(nullptr, curl.freeAll);
  for (const auto& [name, value] : transfer.headers) {
    const std::string line = std::string(name).append(": ").append(value);
    curl_slist* const list = curl.append(headers.get(), line.c_str());
    if (list == nullptr) {
      throw std::bad_alloc();
    }
    static_cast<void>(headers.release());
    headers.reset(list);
  }
  curl.setopt(easy, CURLOPT_URL, transfer.address.c_str());
  curl.setopt(easy, CURLOPT_HTTPHEADER, headers.get());
  curl.setopt(easy, CURLOPT_USERAGENT, libquilp::kUserAgent);
  curl.setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl.setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  curl.setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip");
  curl.setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  curl.setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  if (!transfer.certificates.empty()) {
    curl.setopt(easy, CURLOPT_CAINFO, transfer.certificates.c_str());
    curl.setopt(easy, CURLOPT_CAPATH, nullptr);
  }
  curl.setopt(easy, CURLOPT_NOSIGNAL, 1L);
  const auto limit = static_cast<long>(std::max<long long>(transfer.limit.count(), 1));
  curl.setopt(easy, CURLOPT_TIMEOUT_MS, limit);
  curl.setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, std::min(limit, kConnectMilliseconds));
  curl.setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
  curl.setopt(easy, CURLOPT_WRITEDATA, &receiver);
  curl.setopt(easy, CURLOPT_HEADERFUNCTION, takeHeader);
  curl.setopt(easy, CURLOPT_HEADERDATA, &receiver);
  const CURLcode code = curl.perform(easy);
  if (code != CURLE_OK) {
    if (result.failure == Failure::kNone) {
      result.failure = failureOf(code);
    }
    result.why = curl.strerror(code);
    return result;
  }
  long status = 0;
  curl.getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
  result.status = static_cast<int>(status);
  char* location = nullptr;
  curl.getinfo(easy, CURLINFO_REDIRECT_URL, &location);
  result.location = location == nullptr ? "" : location;
  return result;
}

}  // namespace quilp::kit
