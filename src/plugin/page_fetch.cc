#include "plugin/page_fetch.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <list>
#include <string_view>
#include <utility>

#include "plugin/fetch_report.h"
#include "plugin/files.h"
#include "plugin/outside.h"
#include "readable.h"
#include "text/cutter.h"
#include "text/removal.h"

namespace libquilp {
namespace {

constexpr char kLimits[] = " -A Mozilla/5.0 --connect-timeout 15 --max-time 25";
// Exit status of a shell for a command that it cannot parse.
constexpr int kUnreadableCommand = 2;
// Exit status of curl when it cannot write a page.
constexpr int kUnwritablePage = 23;

bool canBeQuoted(const std::string& address) {
  return address.find_first_of(std::string_view("'\0", 2)) == std::string::npos;
}

/// Without this option curl expands braces and brackets to several addresses.
const char* globOption(const std::string& address) {
  return address.find_first_of("{}[]") != std::string::npos ? " -g" : "";
}

std::string curlCommand(const std::string& address) {
  return std::string(kHttpClient) + globOption(address) + " -s -L '" + address + "'";
}

/// One word of a command.
std::string quoted(const std::string& text) { return '\'' + replaced(text, '\'', "'\\''") + '\''; }

/// Whether curl would write through a link or FIFO in the page's place: another user's, which the
/// host may not remove.
bool isBlocked(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && !S_ISREG(status.st_mode) && unlink(path) != 0;
}

std::optional<std::string> fetchPiped(const std::string& address, const char* options,
                                      const Context& context) {
  if (!canBeQuoted(address)) {
    return {};
  }
  FetchReport report(address, context);
  CurlEnd end =
      askCurl({address, curlCommand(address) + options + report.option(), report.headers(), ""},
              context.control);
  report.finish(end.status, end.output.value_or(""));
  if (end.output && end.output->size() > kReadLimit) {
    return {};
  }
  return std::move(end.output);
}

}  // namespace

FilePage fetchToFile(const std::string& address, PageFile& file, const Context& context) {
  if (!canBeQuoted(address)) {
    return {kUnreadableCommand, {}};
  }
  if (context.control != nullptr) {  // without a file that another lookup may be using
    FetchReport report(address, context);
    CurlEnd end =
        askCurl({address, curlCommand(address) + kLimits + report.option(), report.headers(), ""},
                context.control);
    report.finish(end.status, end.output.value_or(""));
    return {end.status, end.status == 0 ? std::move(end.output) : std::nullopt};
  }
  FetchReport report(address, context);
  const std::string path = file.path;
  const std::string command =
      "rm -f " + path + ";" + curlCommand(address) + " -o " + path + kLimits + report.option();
  const std::lock_guard<std::mutex> lock(file.inUse);
  if (isBlocked(file.path)) {
    report.finish(kUnwritablePage, {});
    return {kUnwritablePage, {}};
  }
  const int status = askCurl({address, command, report.headers(), path}, nullptr).status;
  FilePage page = {status, status == 0 ? readFile(file.path) : std::nullopt};
  report.finish(status, page.text ? *page.text : std::string_view());
  return page;
}

std::optional<std::string> fetchThroughPipe(const std::string& address, const Context& context) {
  return fetchPiped(address, kLimits, context);
}

std::optional<std::string> fetchWithoutLimits(const std::string& address, const Context& context) {
  return fetchPiped(address, "", context);
}

std::vector<CurlEnd> fetchTogether(std::vector<std::string> addresses, const Context& context) {
  std::list<FetchReport> reports;
  for (std::string& address : addresses) {
    if (!canBeQuoted(address)) {
      address.clear();
    }
    reports.emplace_back(address, context, std::string());
  }
  const std::string command = std::string(kHttpClient) + " -Z -g -s -i -L" + kLimits;
  std::vector<CurlEnd> ends = askCurls(command, addresses, *context.control);
  auto report = reports.begin();
  for (std::size_t i = 0; i < ends.size(); ++i, ++report) {
    if (!addresses[i].empty()) {
      // curl tells no status of a single page.
      const int status = ends[i].headers.empty() ? ends[i].status : 0;
      report->finish(status, ends[i].output.value_or(""), ends[i].headers);
    }
  }
  return ends;
}

ServiceDocument::ServiceDocument(const Context& context) : context_(context) {
  headers_.choose();
  body_.choose();
}

bool ServiceDocument::fetch(const std::string& address) {
  constexpr int kAttempts = 3;
  constexpr useconds_t kPause = 500;  // microseconds: this short on purpose
  bool overloaded = false;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    fetchOnce(address);
    const auto status = statusLine();
    overloaded = status && contains(*status, "503");
    if (status && !overloaded) {
      break;
    }
    if (overloaded) {
      usleep(kPause);
    }
  }
  return !overloaded;
}

void ServiceDocument::fetchOnce(const std::string& address) {
  const std::string headers = headers_.name();
  const std::string body = body_.name();
  if (headers.empty() || body.empty()) {
    return;  // curl would take the next word of its command for the missing name
  }
  FetchReport report(address, context_, headers);
  const std::string command = std::string(kHttpClient) + globOption(address) + " -D '" + headers +
                              "' --connect-timeout 15 -o " + body + ' ' + quoted(address) +
                              " >/dev/null 2>&1";
  const int status = askCurl({address, command, headers, body}, context_.control).status;
  if (context_.observer != nullptr) {
    report.finish(status, readFile(body.c_str()).value_or(""));
  }
}

std::optional<std::string> ServiceDocument::statusLine() const {
  std::FILE* const headers =
      isReadable(headers_.name()) ? std::fopen(headers_.name(), "r") : nullptr;
  if (headers == nullptr) {
    return {};
  }
  char line[1024];
  const bool read = std::fgets(line, sizeof line, headers) != nullptr;
  std::fclose(headers);
  return read ? line : "";
}

}  // namespace libquilp
