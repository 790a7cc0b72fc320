#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "catalogue/import.h"
#include "catalogue/search.h"
#include "catalogue/store.h"
#include "fuzz.h"

// Looks titles up in a catalogue file of which bytes were changed. An input is a list of changes:
// where (three bytes) and what is added to the byte there. Every change must give an answer or an
// error, soon.

namespace {

using namespace quilp::catalogue;

constexpr const char* kFolder = "/tmp/sets";
constexpr const char* kFile = "/tmp/damaged.db";
constexpr unsigned kSeconds = 20;

void writeSet(const char* name, const std::string& header, const std::string& rows) {
  std::ofstream file(std::string(kFolder) + '/' + name + ".tsv");
  file << header << '\n' << rows;
}

/// The bytes of a catalogue with a row in every table, and words of many names.
std::string makeCatalogue() {
  mkdir(kFolder, 0700);
  std::string basics, akas, ratings, principals, names;
  const char* const words[] = {"Salt", "Lamp", "Harbour", "Signal", "Row", "Éire", "七日"};
  for (unsigned i = 1; i <= 300; ++i) {
    const std::string id = "tt" + std::to_string(1000000 + i);
    const std::string title =
        std::string(words[i % 7]) + ' ' + words[i / 7 % 7] + ' ' + std::to_string(i % 50);
    basics += id + (i % 9 == 0 ? "\ttvSeries\t" : "\tmovie\t") + title + '\t' + title +
              "\t0\t2001\t\\N\t90\tDrama\n";
    akas += id + "\tDie " + title + "\tDE\t\\N\n";
    ratings += id + "\t7.5\t" + std::to_string(i * 31) + '\n';
    principals += id + "\tnm0000001\tactor\t\\N\t[\"Keeper\"]\n";
  }
  basics += "tt2000000\ttvEpisode\tThe Points\tThe Points\t0\t2009\t\\N\t45\tDrama\n";
  writeSet("title.basics",
           "tconst\ttitleType\tprimaryTitle\toriginalTitle\tisAdult\tstartYear\tendYear\t"
           "runtimeMinutes\tgenres",
           basics);
  writeSet("title.akas", "titleId\ttitle\tregion\tlanguage", akas);
  writeSet("title.ratings", "tconst\taverageRating\tnumVotes", ratings);
  writeSet("title.principals", "tconst\tnconst\tcategory\tjob\tcharacters", principals);
  writeSet("title.episode", "tconst\tparentTconst\tseasonNumber\tepisodeNumber",
           "tt2000000\ttt1000009\t1\t1\n");
  writeSet("title.crew", "tconst\tdirectors", "tt1000001\tnm0000001\n");
  writeSet("name.basics", "nconst\tprimaryName", "nm0000001\tMira Solen\n");
  ImportOptions options;
  options.from = kFolder;
  options.to = "/tmp/whole.db";
  importCatalogue(options, [](const Progress&) {});
  std::ifstream file(options.to, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void describe(Store& store, std::uint32_t rank) {
  const Title title = store.title(rank);
  for (const Person& person : title.cast) {
    store.person(person.id);
  }
  for (const unsigned season : store.seasonsOf(title.id)) {
    store.season(title.id, season);
  }
}

void lookUp() {
  Store store(kFile);
  for (const char* const words : {"salt lamp 7", "slat lapm", "row 七日", "sig", "harbourlamp"}) {
    for (const Hit& hit : search(store, {words, 2001})) {
      describe(store, hit.rank);
    }
  }
  for (const std::uint32_t id : {1000001U, 1000009U, 2000000U}) {
    const auto ident = store.ident(id);
    if (ident && !ident->isEpisode) {
      describe(store, ident->rank);
    } else if (ident) {
      store.season(ident->show, ident->season);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string whole = makeCatalogue();
  std::string bytes = whole;
  for (std::size_t i = 0; i + 4 <= size; i += 4) {
    const std::size_t at = std::size_t{data[i]} << 16 | std::size_t{data[i + 1]} << 8 | data[i + 2];
    char& byte = bytes[at % bytes.size()];
    byte = static_cast<char>(static_cast<unsigned char>(byte) + data[i + 3]);
  }
  std::ofstream(kFile, std::ios::binary | std::ios::trunc) << bytes;
  alarm(kSeconds);
  try {
    lookUp();
  } catch (const std::runtime_error&) {
  }
  alarm(0);
  return 0;
}
