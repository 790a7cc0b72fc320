#include "explain/empty_reason.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "imdb/find_page.h"
#include "platform.h"
#include "platform/client_config.h"
#include "platform/registry_view.h"
#include "plugin/files.h"
#include "plugin/page_fetch.h"
#include "xml/xml_node.h"

namespace quilp {
namespace {

/// Words of pages that want to see a person.
constexpr std::string_view kChallenges[] = {"captcha",         "are you a robot", "not a robot",
                                            "unusual traffic", "are human",       "access denied"};

std::string bytes(std::size_t size) { return std::to_string(size) + " bytes"; }

bool isChallenge(std::string page) {
  std::transform(page.begin(), page.end(), page.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::any_of(
      std::begin(kChallenges), std::end(kChallenges),
      [&page](std::string_view word) { return page.find(word) != std::string::npos; });
}

/// Why the client has nothing, or the service refused.
std::optional<Reason> reasonOfTransfer(const std::vector<Transfer>& transfers) {
  if (!hasClient()) {
    return Reason{"client-missing", std::string("there is no client at ") + libquilp::kHttpClient};
  }
  if (transfers.empty()) {
    return {};
  }
  const Transfer& first = transfers.front();
  if (first.exit != 0) {
    return Reason{"client-failed", "the client failed with status " + std::to_string(first.exit) +
                                       (first.error.empty() ? "" : ": " + first.error)};
  }
  const std::string http = "HTTP " + std::to_string(first.http);
  if (first.http == 403 || first.http == 429 || first.http == 503) {
    return Reason{"refused",
                  "the service refused: a challenge, or too many requests (" + http + ')'};
  }
  if (first.http >= 400) {
    return Reason{"error-page", "the service answered with an error page (" + http + ')'};
  }
  return {};
}

}  // namespace

std::optional<Reason> reasonOfRun(const libquilp::RegistrySection& section, int status) {
  const std::string defect = RegistryView::defect(section);
  if (!defect.empty()) {
    return Reason{"shell-not-executable", defect};
  }
  if (status != 0) {
    return Reason{"shell-failed", "the add-on failed with status " + std::to_string(status) +
                                      (status == 1 ? ", or was ended by a signal" : "")};
  }
  return {};
}

std::optional<Reason> reasonOfDocument(const char* path, const char* root) {
  const auto text = libquilp::readFile(path);
  if (!text) {
    return Reason{"no-document", "the add-on wrote no document"};
  }
  if (text->empty()) {
    return Reason{"empty-document", "the add-on's document is empty"};
  }
  int error = 0;
  if (libquilp::XMLNode::openFileHelper(path, &error, root)) {
    return {};
  }
  // Only a document that can be read lacks an element.
  if (error < 0) {
    return Reason{"wrong-document",
                  std::string("the add-on's document has no element <") + root + "> at its top"};
  }
  return Reason{"malformed-document",
                "the add-on's document of " + bytes(text->size()) + " is not well-formed"};
}

Reason reasonOfFindPage(const std::vector<Transfer>& transfers, const char* path) {
  if (const auto reason = reasonOfTransfer(transfers)) {
    return *reason;
  }
  const std::string file = std::string(" in ") + path;
  const auto page = libquilp::readFile(path);
  if (!page) {
    return {"no-page", "the client left no page" + file};
  }
  const std::string size = bytes(page->size());
  if (libquilp::saysNoResults(*page)) {
    return {"no-results", "the site has no results"};
  }
  if (page->empty()) {
    return {"empty-page", "the page is empty"};
  }
  libquilp::FindRow row;
  if (libquilp::FindPage(*page).next(row)) {
    return {"empty-rows", "the page's rows have no fields that are known" + file};
  }
  if (isChallenge(*page)) {
    return {"challenge-page", "the page wants to see a person, no program (" + size + file + ')'};
  }
  return {"no-rows", "no row marker stands on the page: it is cut off, or another kind of page (" +
                         size + file + ')'};
}

// <metadata><release-group-list>…
Reason reasonOfService(const std::vector<Transfer>& transfers) {
  if (const auto reason = reasonOfTransfer(transfers)) {
    return *reason;
  }
  if (transfers.empty() || transfers.front().address.empty()) {
    return {"unknown", "unknown: the client was not heard"};
  }
  libquilp::ServiceDocument document;
  document.fetchOnce(transfers.front().address);
  const auto text = libquilp::readFile(document.path());
  if (!text || text->empty()) {
    return {"empty-page", "the service's document is empty"};
  }
  int error = 0;
  if (libquilp::XMLNode::openFileHelper(document.path(), &error, "metadata")) {
    return {"no-results", "the service has no results"};
  }
  return {"malformed-page",
          "the service's document of " + bytes(text->size()) +
              (error < 0 ? " is another kind of document" : " is not well-formed")};
}

}  // namespace quilp
