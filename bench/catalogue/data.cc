// Writes data sets of the shape that "quilp catalogue import" reads, with invented titles and
// people: three quarters are episodes. The same seed and number give the same rows on every
// machine, and, where they are not compressed, the same bytes.

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "invent.h"

namespace {

using invent::Random;

enum RandomKind : std::uint8_t { kPlan = 2, kTitle, kRest, kEpisode, kPerson };

struct Options {
  std::string folder;
  std::uint32_t titles = 10000;
  std::uint64_t seed = 1;
  bool gzip = false;
};

class File {
 public:
  File(const Options& options, const char* name, const char* header)
      : path_(options.folder + '/' + name + (options.gzip ? ".tsv.gz" : ".tsv")),
        file_(gzopen(path_.c_str(), options.gzip ? "wb4" : "wbT")) {
    if (file_ == nullptr) {
      fail();
    }
    gzbuffer(file_, 1U << 18);
    row(header);
  }
  ~File() {
    if (file_ != nullptr) {
      gzclose(file_);
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// Columns: texts and numbers.
  template <class... Columns>
  void row(const Columns&... columns) {
    const std::size_t start = line_.size();
    (add(columns), ...);
    line_.back() = '\n';
    if (start > 1U << 16) {
      flush();
    }
  }
  void close() {
    flush();
    gzFile file = file_;
    file_ = nullptr;
    if (gzclose(file) != Z_OK) {
      fail();
    }
  }

 private:
  void add(std::string_view text) {
    line_ += text.empty() ? "\\N" : text;
    line_ += '\t';
  }
  void add(std::uint32_t number) {
    std::array<char, 12> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    line_.append(text.data(), end).append(1, '\t');
  }
  void flush() {
    if (!line_.empty() && gzwrite(file_, line_.data(), static_cast<unsigned>(line_.size())) <= 0) {
      fail();
    }
    line_.clear();
  }
  [[noreturn]] void fail() const { throw std::runtime_error(path_ + ": " + std::strerror(errno)); }

  std::string path_;
  gzFile file_;
  std::string line_;
};

std::string id(const char* prefix, std::uint32_t number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%s%07u", prefix, number);
  return text.data();
}

/// Empty, which is written as \N, once in so many.
std::string orNone(std::uint32_t number, std::uint32_t once, Random& random) {
  return random.once(once) ? std::string() : std::to_string(number);
}

constexpr std::array kFilmTypes = {"movie", "movie",   "movie", "movie",     "short",
                                   "short", "tvMovie", "video", "tvSpecial", "videoGame"};
constexpr std::array kShowTypes = {"tvSeries", "tvSeries", "tvSeries", "tvMiniSeries", "tvPilot"};
constexpr std::array kGenres = {"Action", "Comedy",  "Documentary", "Drama",
                                "Family", "Mystery", "Romance",     "War"};
constexpr std::array kRegions = {"DE", "FR", "ES", "IT", "RU", "CN", "US", "GB",
                                 "PL", "SE", "IL", "JP", "BR", "HU", "CA", "AU"};
constexpr std::array kForeign = {"RU", "CN", "IL", "JP"};
constexpr std::array kAkaTypes = {"imdbDisplay", "imdbDisplay", "",
                                  "alternative", "working",     "dvd"};
constexpr std::array kCast = {"actor", "actress", "actor", "actress", "self"};
constexpr std::array kOthers = {"producer", "composer", "cinematographer", "editor",
                                "archive_footage"};

struct Work {
  std::uint32_t show = 0;   // of an episode; 0 for others
  std::uint32_t place = 0;  // of an episode in its show, from 0
  bool hasEpisodes = false;
};

class Writer {
 public:
  explicit Writer(const Options& options)
      : options_(options),
        people_(options.titles / 2 + 100),
        basics_(options, "title.basics",
                "tconst\ttitleType\tprimaryTitle\toriginalTitle\tisAdult\tstartYear\tendYear\t"
                "runtimeMinutes\tgenres"),
        akas_(options, "title.akas",
              "titleId\tordering\ttitle\tregion\tlanguage\ttypes\tattributes\tisOriginalTitle"),
        episode_(options, "title.episode", "tconst\tparentTconst\tseasonNumber\tepisodeNumber"),
        ratings_(options, "title.ratings", "tconst\taverageRating\tnumVotes"),
        crew_(options, "title.crew", "tconst\tdirectors\twriters"),
        principals_(options, "title.principals",
                    "tconst\tordering\tnconst\tcategory\tjob\tcharacters"),
        names_(options, "name.basics",
               "nconst\tprimaryName\tbirthYear\tdeathYear\tprimaryProfession\tknownForTitles") {}

  void write();

 private:
  void plan();
  std::uint32_t idAt(std::uint32_t number) const;
  std::vector<std::uint32_t> inTextOrder(std::uint32_t count) const;
  std::string titleAt(std::uint32_t number) const;
  std::string someone(Random& random) const;
  void writeTitle(std::uint32_t number);
  void writeEpisode(std::uint32_t number);
  void writeAkas(const std::string& tt, const std::string& title, Random& random);
  void writePeople(const std::string& tt, std::uint32_t cast, Random& random);
  void writeRating(const std::string& tt, std::uint32_t often, Random& random);

  const Options& options_;
  std::uint32_t people_;
  File basics_, akas_, episode_, ratings_, crew_, principals_, names_;
  std::vector<Work> works_;  // by number
};

/// Most shows have a few episodes, some have thousands. They follow their show.
void Writer::plan() {
  works_.resize(options_.titles);
  Random random(options_.seed, kPlan, 0);
  for (std::uint32_t number = 0; number < options_.titles;) {
    const std::uint32_t show = number++;
    if (!random.once(20)) {
      continue;
    }
    works_[show].hasEpisodes = true;
    const std::uint32_t bits = random.below(9);
    const std::uint32_t more = random.below(1U << bits);
    std::uint32_t episodes = (1U << std::min(bits, 6U)) + more;
    episodes += random.once(400) ? random.below(4000) : 0;
    for (std::uint32_t i = 0; i < episodes && number < options_.titles; ++i) {
      works_[number++] = {show + 1, i, false};
    }
  }
}

/// Identifiers have gaps.
std::uint32_t Writer::idAt(std::uint32_t number) const {
  Random random(options_.seed, 1, number);
  return 1 + number * 3 + random.below(3);
}

/// Rows are in the order of their identifiers as text: 8 digits come between those of 7.
std::vector<std::uint32_t> Writer::inTextOrder(std::uint32_t count) const {
  std::vector<std::pair<std::uint64_t, std::uint32_t>> order(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint64_t identifier = idAt(i);
    order[i] = {identifier < 10000000 ? identifier * 20 : identifier * 2 + 1, i};
  }
  std::sort(order.begin(), order.end());
  std::vector<std::uint32_t> numbers(count);
  std::transform(order.begin(), order.end(), numbers.begin(),
                 [](const auto& each) { return each.second; });
  return numbers;
}

/// Some titles are those of others, or their sequels.
std::string Writer::titleAt(std::uint32_t number) const {
  Random random(options_.seed, kTitle, number);
  const std::uint32_t like = random.below(60);
  if (like < 3 && number > 100) {
    Random other(options_.seed, kTitle, number - 1 - random.below(100));
    other.below(60);
    const std::string title = invent::title(other);
    return like == 0 ? title : title + (like == 1 ? " 2" : " III");
  }
  return invent::title(random);
}

std::string Writer::someone(Random& random) const {
  return id("nm", idAt(random.once(3) ? random.below(people_) : random.zipf(people_)));
}

void Writer::writeRating(const std::string& tt, std::uint32_t often, Random& random) {
  if (random.below(100) >= often) {
    return;
  }
  std::uint32_t votes = 5 + random.below(20);
  for (std::uint32_t i = 0; i < 17 && !random.once(3); ++i) {
    votes += votes / 2;
    votes += random.below(votes / 2);
  }
  std::uint32_t tenths = 25 + random.below(35);
  tenths += random.below(35);
  ratings_.row(tt, std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10), votes);
}

void Writer::writeAkas(const std::string& tt, const std::string& title, Random& random) {
  akas_.row(tt, 1U, title, "", "", "original", "", 1U);
  const std::uint32_t count = random.zipf(9);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::string region = one(kRegions, random);
    const bool foreign = std::find(kForeign.begin(), kForeign.end(), region) != kForeign.end();
    const bool same = random.once(2);
    const std::string other = foreign ? invent::foreignTitle(random, region)
                              : same  ? title
                                      : invent::title(random);
    const std::string language = region == "IL" ? "he" : random.once(20) ? "en" : "";
    const std::string types = one(kAkaTypes, random);
    akas_.row(tt, i + 2, other, region, language, types,
              types == "alternative" ? "literal title" : "", 0U);
  }
}

void Writer::writePeople(const std::string& tt, std::uint32_t cast, Random& random) {
  const auto list = [&](std::uint32_t most) {
    std::string people;
    const std::uint32_t count = random.below(most + 1);
    for (std::uint32_t i = 0; i < count; ++i) {
      people += (i == 0 ? "" : ",") + someone(random);
    }
    return people;
  };
  const std::string directors = list(2);
  const std::string writers = list(3);
  crew_.row(tt, directors, writers);
  std::uint32_t ordering = 0;
  for (std::uint32_t i = 0; i < cast; ++i) {
    std::string role;
    if (!random.once(6)) {
      role = "[\"" + invent::capital(invent::word(random.zipf(9000)));
      role += random.once(30) ? " \\\"" + invent::word(random.zipf(900)) + "\\\"" : "";
      role += random.once(20) ? "\",\"" + invent::capital(invent::word(random.zipf(9000))) : "";
      role += "\"]";
    }
    const std::string person = someone(random);
    principals_.row(tt, ++ordering, person, one(kCast, random), "", role);
  }
  if (cast > 2) {
    const std::string writer = someone(random);
    const char* const job = random.once(3) ? "created by" : "screenplay";
    principals_.row(tt, ++ordering, writer, "writer", job, "");
    const std::string other = someone(random);
    principals_.row(tt, ++ordering, other, one(kOthers, random), "", "");
  }
}

void Writer::writeTitle(std::uint32_t number) {
  Random random(options_.seed, kRest, number);
  const bool show = works_[number].hasEpisodes;
  const std::string tt = id("tt", idAt(number));
  const std::string title = titleAt(number);
  const std::string original = random.once(6) ? invent::title(random) : title;
  const std::string type = show ? one(kShowTypes, random) : one(kFilmTypes, random);
  const std::uint32_t age = random.zipf(120);
  const std::uint32_t year = 2027 - age - (random.once(3) ? random.below(12) : 0);
  const std::string firstYear = orNone(year, 12, random);
  const std::uint32_t end = year + random.below(8);
  const std::string lastYear = show && !firstYear.empty() ? orNone(end, 3, random) : "";
  std::string genres;
  const std::uint32_t wanted = random.below(4);
  for (std::uint32_t i = 0, first = random.below(3); i < wanted; ++i, first += 2) {
    genres += (i == 0 ? "" : ",") + std::string(kGenres[first % kGenres.size()]);
  }
  const bool adult = random.once(40);
  const std::uint32_t length = 20 + random.below(130);
  const std::string minutes = orNone(length, 3, random);
  basics_.row(tt, type, title, original, adult ? 1U : 0U, firstYear, lastYear, minutes, genres);
  writeRating(tt, 45, random);
  writeAkas(tt, original, random);
  writePeople(tt, 2 + random.below(11), random);
}

void Writer::writeEpisode(std::uint32_t number) {
  Random random(options_.seed, kEpisode, number);
  const Work& work = works_[number];
  const std::string tt = id("tt", idAt(number));
  const std::uint32_t season = 1 + work.place / 24;
  const std::uint32_t place = 1 + work.place % 24;
  std::string title = "Episode #" + std::to_string(season) + '.' + std::to_string(place);
  title = random.once(2) ? invent::title(random) : title;
  const std::uint32_t year = 1970 + season + random.below(40);
  const std::string aired = orNone(year, 12, random);
  const std::uint32_t length = 20 + random.below(40);
  const std::string minutes = orNone(length, 3, random);
  basics_.row(tt, "tvEpisode", title, title, 0U, aired, "", minutes, "Drama");
  const bool numbered = !random.once(12);
  episode_.row(tt, id("tt", idAt(work.show - 1)), numbered ? std::to_string(season) : "",
               numbered ? std::to_string(place) : "");
  writeRating(tt, 12, random);
  const std::uint32_t akas = random.below(9);
  for (std::uint32_t i = 0; i < akas; ++i) {
    akas_.row(tt, i + 1, "Folge #" + std::to_string(place), one(kRegions, random), "", "", "", 0U);
  }
  writePeople(tt, random.below(3), random);
}

void Writer::write() {
  plan();
  for (const std::uint32_t number : inTextOrder(options_.titles)) {
    if (works_[number].show != 0) {
      writeEpisode(number);
    } else {
      writeTitle(number);
    }
  }
  for (const std::uint32_t number : inTextOrder(people_)) {
    Random random(options_.seed, kPerson, number);
    const std::string name = invent::person(random);
    const std::uint32_t year = 1900 + random.below(105);
    const std::string birth = orNone(year, 2, random);
    names_.row(id("nm", idAt(number)), name, birth, "", "actor", "");
  }
  for (File* each : {&basics_, &akas_, &episode_, &ratings_, &crew_, &principals_, &names_}) {
    each->close();
  }
}

constexpr const char* kUsage =
    "usage: catalogue_data DIR [--titles N] [--seed N] [--gzip]\n"
    "Writes data sets of invented titles into the folder DIR (10000 titles, seed 1).\n";

bool read(int argc, char** argv, Options& options) {
  std::vector<const char*> operands;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--gzip") {
      options.gzip = true;
    } else if (word == "--titles" && i + 1 < argc) {
      options.titles = static_cast<std::uint32_t>(std::strtoul(argv[++i], nullptr, 10));
    } else if (word == "--seed" && i + 1 < argc) {
      options.seed = std::strtoull(argv[++i], nullptr, 10);
    } else if (word.substr(0, 1) == "-") {
      return false;
    } else {
      operands.push_back(argv[i]);
    }
  }
  if (operands.size() == 1) {
    options.folder = operands[0];
  }
  return operands.size() == 1 && options.titles > 0 && options.titles <= 30'000'000;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!read(argc, argv, options)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  try {
    Writer(options).write();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "catalogue_data: %s\n", error.what());
    return 1;
  }
  return 0;
}
