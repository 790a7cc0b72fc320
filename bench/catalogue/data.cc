// Writes data sets of the shape that "quilp catalogue import" reads, with invented titles and
// people. The same seed and number give the same bytes on every machine.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// SplitMix64.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
    z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9U;
    z = (z ^ z >> 27) * 0x94d049bb133111ebU;
    return z ^ z >> 31;
  }
  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>((next() >> 32) * limit >> 32);
  }
  bool once(std::uint32_t in) { return below(in) == 0; }

  /// Small numbers are likely, each ten times as large ten times rarer, about.
  std::uint32_t skewed(std::uint32_t limit) {
    const std::uint64_t part = below(limit) + std::uint64_t{1};
    const std::uint32_t zoom = below(4);
    return static_cast<std::uint32_t>(zoom == 0 ? part - 1
                                                : part * below(1U << 16) >> 16 >> 2 * zoom);
  }

 private:
  std::uint64_t state_;
};

constexpr std::array kOnsets = {"b", "br", "d",  "dr", "f",  "g", "gr", "h", "j",  "k",
                                "l", "m",  "n",  "p",  "r",  "s", "sh", "t", "th", "v",
                                "w", "st", "tr", "c",  "cl", "z", "qu", "fl"};
constexpr std::array kVowels = {"a", "e", "i", "o", "u", "ea", "ai", "ou", "y"};
constexpr std::array kCodas = {"", "n", "r", "l", "s", "m", "t", "nd", "rk", "ll", "", "x"};
constexpr std::array kCyrillic = {"ба", "ро", "ми", "на", "лет", "ска", "вод", "ны", "тор", "зем"};
constexpr std::array kHan = {"山", "水", "光", "海", "城", "夜",
                             "星", "花", "王", "路", "风", "心"};
constexpr std::array kGenres = {"Drama", "Comedy", "Mystery", "Action", "Documentary", "Romance"};
constexpr std::array kRegions = {"DE", "FR", "ES", "IT", "RU", "CN", "US", "GB", "PL", "SE"};

/// The n-th word: the same each time.
std::string wordOf(std::uint32_t n) {
  Random random(n * 977 + 5);
  std::string word;
  const std::uint32_t syllables = 1 + random.below(n < 400 ? 2 : 3);
  for (std::uint32_t i = 0; i < syllables; ++i) {
    word += kOnsets[random.below(kOnsets.size())];
    word += kVowels[random.below(kVowels.size())];
  }
  return word + kCodas[random.below(kCodas.size())];
}

std::string capital(std::string word) {
  word[0] = static_cast<char>(word[0] & ~0x20);
  return word;
}

std::string foreign(Random& random, bool han) {
  std::string text;
  for (std::uint32_t i = 0; i < 2 + random.below(4); ++i) {
    text += han ? kHan[random.below(kHan.size())] : kCyrillic[random.below(kCyrillic.size())];
    text += !han && random.once(3) ? " " : "";
  }
  return text;
}

std::string titleOf(Random& random) {
  std::string title = random.once(3) ? "The" : "";
  const std::uint32_t words = 1 + random.below(3);
  for (std::uint32_t i = 0; i < words; ++i) {
    title += (title.empty() ? "" : " ") + capital(wordOf(random.skewed(60000)));
  }
  switch (random.below(24)) {
    case 0:
      title += " II";
      break;
    case 1:
      title += " 2";
      break;
    case 2:
      title += " & " + capital(wordOf(random.skewed(60000)));
      break;
    case 3:
      title += ": " + capital(wordOf(random.skewed(60000))) + " of " +
               capital(wordOf(random.skewed(60000)));
      break;
    case 4:
      title += "é";
      break;
    default:
      break;
  }
  return title;
}

class File {
 public:
  File(const std::string& folder, const char* name, const char* header)
      : file_(std::fopen((folder + '/' + name + ".tsv").c_str(), "w")) {
    if (file_ == nullptr) {
      throw std::runtime_error(folder + ": cannot write");
    }
    std::fprintf(file_, "%s\n", header);
  }
  ~File() { std::fclose(file_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  template <class... Values>
  void row(const char* format, Values... values) {
    std::fprintf(file_, format, values...);
  }

 private:
  std::FILE* file_;
};

std::string id(const char* prefix, std::uint32_t number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%s%07u", prefix, number);
  return text.data();
}

struct Files {
  explicit Files(const std::string& folder)
      : basics(folder, "title.basics",
               "tconst\ttitleType\tprimaryTitle\toriginalTitle\tisAdult\tstartYear\tendYear\truntim"
               "eMinutes\tgenres"),
        akas(folder, "title.akas",
             "titleId\tordering\ttitle\tregion\tlanguage\ttypes\tattributes\tisOriginalTitle"),
        episode(folder, "title.episode", "tconst\tparentTconst\tseasonNumber\tepisodeNumber"),
        ratings(folder, "title.ratings", "tconst\taverageRating\tnumVotes"),
        crew(folder, "title.crew", "tconst\tdirectors\twriters"),
        principals(folder, "title.principals",
                   "tconst\tordering\tnconst\tcategory\tjob\tcharacters"),
        names(folder, "name.basics",
              "nconst\tprimaryName\tbirthYear\tdeathYear\tprimaryProfession\tknownForTitles") {}
  File basics, akas, episode, ratings, crew, principals, names;
};

/// Of each forty titles one is a show and the next thirty are its episodes; the rest are films.
constexpr std::uint32_t kGroup = 40;
constexpr std::uint32_t kEpisodes = 30;

void writeFilmOrShow(Files& files, std::uint32_t number, bool show, std::uint32_t people) {
  Random random(number * 2654435761U + 17);
  const std::string tt = id("tt", number);
  const std::string title = titleOf(random);
  const std::uint32_t year = 1925 + random.below(100);
  const std::string original = random.once(6) ? titleOf(random) : title;
  files.basics.row("%s\t%s\t%s\t%s\t0\t%u\t\\N\t%u\t%s,%s\n", tt.c_str(),
                   show             ? "tvSeries"
                   : random.once(3) ? "short"
                                    : "movie",
                   title.c_str(), original.c_str(), year, 60 + random.below(90),
                   kGenres[random.below(3)], kGenres[3 + random.below(3)]);
  if (!random.once(3)) {
    const std::uint32_t votes = 5 + (random.skewed(2000) * random.skewed(1000) >> random.below(8));
    files.ratings.row("%s\t%u.%u\t%u\n", tt.c_str(), 3 + random.below(6), random.below(10), votes);
  }
  const std::uint32_t akas = 1 + random.skewed(30);
  for (std::uint32_t i = 1; i <= akas; ++i) {
    const std::uint32_t region = random.below(kRegions.size());
    const std::string aka = region == 4      ? foreign(random, false)
                            : region == 5    ? foreign(random, true)
                            : random.once(2) ? titleOf(random)
                                             : title;
    files.akas.row("%s\t%u\t%s\t%s\t\\N\timdbDisplay\t\\N\t0\n", tt.c_str(), i, aka.c_str(),
                   kRegions[region]);
  }
  files.crew.row("%s\t%s\t\\N\n", tt.c_str(), id("nm", 1 + random.skewed(people)).c_str());
  for (std::uint32_t i = 1; i <= 10; ++i) {
    files.principals.row("%s\t%u\t%s\t%s\t\\N\t[\"%s\"]\n", tt.c_str(), i,
                         id("nm", 1 + random.skewed(people)).c_str(),
                         random.once(2) ? "actor" : "actress",
                         capital(wordOf(random.skewed(9000))).c_str());
  }
}

void writeEpisode(Files& files, std::uint32_t number, std::uint32_t show, std::uint32_t place) {
  Random random(number * 2654435761U + 23);
  const std::string tt = id("tt", number);
  const std::string title =
      random.once(3) ? "Episode #1." + std::to_string(place) : titleOf(random);
  files.basics.row("%s\ttvEpisode\t%s\t%s\t0\t%u\t\\N\t45\tDrama\n", tt.c_str(), title.c_str(),
                   title.c_str(), 1990 + show % 30);
  files.episode.row("%s\t%s\t%u\t%u\n", tt.c_str(), id("tt", show).c_str(), 1 + place / 10,
                    1 + place % 10);
  for (std::uint32_t i = 1; i <= 4; ++i) {
    files.akas.row("%s\t%u\tFolge %u\t%s\t\\N\t\\N\t\\N\t0\n", tt.c_str(), i, place,
                   kRegions[random.below(kRegions.size())]);
  }
  if (random.once(5)) {
    files.ratings.row("%s\t%u.%u\t%u\n", tt.c_str(), 5 + random.below(5), random.below(10),
                      5 + random.below(300));
  }
}

/// Rows are in the order of their identifiers as text: 8 digits come between those of 7.
std::vector<std::uint32_t> inTextOrder(std::uint32_t count) {
  std::vector<std::uint32_t> numbers(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    numbers[i] = i + 1;
  }
  std::sort(numbers.begin(), numbers.end(), [](std::uint32_t a, std::uint32_t b) {
    const std::uint64_t left = a < 10000000 ? std::uint64_t{a} * 10 : a;
    const std::uint64_t right = b < 10000000 ? std::uint64_t{b} * 10 : b;
    return left != right ? left < right : a < b;
  });
  return numbers;
}

void write(const std::string& folder, std::uint32_t titles, std::uint32_t seed) {
  Files files(folder);
  const std::uint32_t people = titles / 4 + 10;
  for (const std::uint32_t number : inTextOrder(titles)) {
    const std::uint32_t place = (number + seed) % kGroup;
    if (place > 0 && place <= kEpisodes && number > place) {
      writeEpisode(files, number, number - place, place - 1);
    } else {
      writeFilmOrShow(files, number, place == 0, people);
    }
  }
  for (const std::uint32_t number : inTextOrder(people)) {
    Random random(number * 40503U + 3);
    files.names.row("%s\t%s %s\t\\N\t\\N\tactor\t\\N\n", id("nm", number).c_str(),
                    capital(wordOf(random.below(3000))).c_str(),
                    capital(wordOf(random.below(60000))).c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc > 4) {
    std::fprintf(stderr, "usage: catalogue_data DIR TITLES [SEED]\n");
    return 2;
  }
  try {
    write(argv[1], static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10)),
          argc == 4 ? static_cast<std::uint32_t>(std::strtoul(argv[3], nullptr, 10)) : 0);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "catalogue_data: %s\n", error.what());
    return 1;
  }
}
