#include <fstream>

#include "fake_client.h"
#include "fuzz.h"
#include "lookups.h"
#include "plugin/run_program.h"
#include "support.h"

// Reads any bytes as the page, service document or add-on document that QUILP_FUZZ_TARGET names,
// through the lookups that use it. Runs in the box, and writes to /etc and /tmp there.

namespace {

/// Other pages of a target: addresses that contain `part` return `page`, all others the input.
struct Target {
  std::string name;
  std::vector<const char*> functions;  // empty: all that run an add-on, on the input
  const char* part = nullptr;
  const char* page = nullptr;
};

constexpr char kFound[] =
    "<table class=\"findList\"><td class=\"primary_photo\">/title/tt1/?</tr></table>";
constexpr char kListed[] =
    "<h3 id=\"episode_top\"  itemprop=\"name\"><div class=\"image\"><div data-const=\"tt1\">S2, Ep1"
    "<div class=\"info\"><hr>";
constexpr char kMetadata[] =
    "<metadata><artist-list><artist id=\"a\"/></artist-list><release-group-list>"
    "<release-group id=\"a\" type=\"Album\"><title>T</title></release-group>"
    "<release-group id=\"b\" type=\"Album\"><title>U</title></release-group>"
    "</release-group-list></metadata>";
constexpr char kArtwork[] =
    "{\"albums\": {\"a\": {\"albumcover\": [{\"url\": \"u\"}]}},"
    " \"artistbackground\": [{\"url\": \"v\"}]}";

const std::vector<const char*> kMusic = {"velSearchAlbum", "velPrintGetAlbumByArtist",
                                         "velGetAlbumByArtist", "velGetArtistThumbnail"};
// clang-format off
const Target kTargets[] = {
  {"find", {"imdbBasicGetMovies", "velSearchTVShows"}},
  {"title", {"imdbBasicGetMovies", "velSearchTVShows"}, "/find?", kFound},
  {"combined", {"velGetMovieByID", "velPrintMovieByID"}},
  {"alternate", {"imdbGetMovies"}},
  {"show", {"velGetTVShowByID", "velPrintTVShowByID"}},
  {"episodes", {"velGetTVEpisode"}},
  {"episode", {"velGetTVEpisode", "velPrintTVEpisode"}, "/episodes?", kListed},
  {"metadata", kMusic, "fanart", kArtwork},
  {"artwork", kMusic, "musicbrainz", kMetadata},
  {"addon", {}},
};
// clang-format on

std::string input;

void removeAgainAndAgain(std::string& text, const std::string& open, const std::string& close) {
  for (;;) {
    const std::size_t start = text.find(open);
    const std::size_t end =
        start != std::string::npos ? text.find(close, start + open.size()) : start;
    if (end == std::string::npos) {
      return;
    }
    text.erase(start, end + close.size() - start);
  }
}

std::string between(const std::string& text, const std::string& open, const std::string& close) {
  const std::size_t start = text.find(open);
  const std::size_t end =
      start != std::string::npos ? text.find(close, start + open.size()) : start;
  return end != std::string::npos ? text.substr(start + open.size(), end - start - open.size())
                                  : "";
}

std::string modelOutline(const std::string& page) {
  std::string text =
      between(page, "<div class=\"summary_text\" itemprop=\"description\">", "</div>");
  const auto has = [&text](const char* part) { return text.find(part) != std::string::npos; };
  if (has("<a") && text.find('>', text.find("<a")) != std::string::npos) {
    removeAgainAndAgain(text, "<a", ">");
    removeAgainAndAgain(text, "</a>", "");
    if (has("Add a Plot")) {
      text.clear();
    } else if (has("See full summary")) {
      text = between(page, "class=\"plotSummary\">", "</p>");
      text = has("It looks like we don't have any Plot Summary for this title yet.") ? "" : text;
    } else if (has("See full synopsis")) {
      text.erase(text.find("See full synopsis"));
    }
  } else if (has("Plot is unknown") || has("The plot is unknown")) {
    text.clear();
  }
  removeAgainAndAgain(text, "\n", "");
  removeEmptyChar(text);
  text.resize(decode_html_entities_utf8(text.data(), nullptr));
  return text.find_first_not_of(' ') != std::string::npos ? text.c_str() : "";
}

void run(const Target& target, const test::Lookup& lookup) {
  test::Answer answer;
  lookup.run(lookup.usual, answer, true);
  fuzz::expect(answer.result != test::kNeverRight, "a role has no actor");
  const int most = lookup.usual.count;
  const bool finds = lookup.kind == test::Kind::kFinds;
  fuzz::expect(target.name == "addon" || !finds || answer.result <= most, "too many results");
  const bool isModelled =
      input.size() <= fuzz::kLongestModelled && input.find('\0') == std::string::npos;
  if (target.name == "title" && isModelled && answer.result == 1) {
    const std::string model = "outline:" + modelOutline(input) + '|';
    const std::size_t size = std::min(model.size(), answer.text.size());
    fuzz::expect(model.size() > 2048 || answer.text.substr(answer.text.size() - size) == model,
                 "the outline differs from the model");
  }
}

}  // namespace

// Replaces the library's function: here the add-on writes its document without a process.
libquilp::ProgramEnd libquilp::runProgram(char** argv, char** /*environment*/,
                                          Control* /*control*/) {
  while (argv[1] != nullptr) {
    ++argv;
  }
  std::ofstream(*argv, std::ios::binary) << input;
  return {};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Target& target = *std::find_if(std::begin(kTargets), std::end(kTargets),
                                              [](auto& t) { return t.name == QUILP_FUZZ_TARGET; });
  input = fuzz::bytesOf(data, size);
  const fuzz::FakeClient client([](const std::string& address) -> std::string_view {
    const bool isOther = target.part != nullptr && address.find(target.part) != std::string::npos;
    return isOther ? std::string_view(target.page) : input;
  });
  test::writeFile("/etc/config/zorp.conf", "");
  for (const char* function : target.functions) {
    run(target, test::lookup(function));
  }
  for (const test::Lookup& lookup : test::lookups()) {
    if (target.functions.empty() && !lookup.type.empty()) {
      test::registerAddOn(lookup.type, "/usr/bin/true");
      run(target, lookup);
    }
  }
  return 0;
}
