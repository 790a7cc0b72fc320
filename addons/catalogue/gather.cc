#include "gather.h"

#include <algorithm>
#include <utility>

#include "bytes.h"
#include "languages.h"
#include "layout.h"
#include "normalise.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kMostDirectors = 10;
constexpr std::size_t kLongestRole = 200;
constexpr std::uint64_t kRowsATell = 65536;

/// Digits only; none where there are others.
bool number(std::string_view text, std::uint32_t& value) {
  value = 0;
  if (text.size() > 9) {
    return false;
  }
  for (const char c : text) {
    if (c < '0' || c > '9') {
      return false;
    }
    value = value * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return true;
}

/// 0 where it is absent or none.
unsigned numberOr0(std::string_view text) {
  std::uint32_t value = 0;
  return number(text, value) ? value : 0;
}

/// "7.8" gives 78.
unsigned tenths(std::string_view text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const unsigned whole = numberOr0(text.substr(0, point));
  const unsigned part = point + 1 < text.size() ? numberOr0(text.substr(point + 1, 1)) : 0;
  return std::min(whole * 10 + part, 100U);
}

/// ["Keeper","Self \"Kit\""] gives: Keeper / Self "Kit".
std::string rolesOf(std::string_view list) {
  std::string roles;
  bool inText = false;
  for (std::size_t i = 0; i < list.size() && roles.size() < kLongestRole; ++i) {
    if (list[i] == '"') {
      inText = !inText;
      roles += inText && !roles.empty() ? " / " : "";
    } else if (inText) {
      i += list[i] == '\\' && i + 1 < list.size() ? 1 : 0;
      roles += list[i];
    }
  }
  return roles;
}

/// Calls visit(part) for each part between commas.
template <class Visit>
void forEachPart(std::string_view list, Visit visit) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    visit(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
}

}  // namespace

/// The rows of a data set that go with the title at hand. Without a file there are none.
class Gatherer::Joined {
 public:
  Joined(const std::string& path, const std::vector<std::string_view>& columns) : path_(path) {
    if (!path.empty()) {
      rows_ = std::make_unique<Rows>(path, columns);
    }
  }

  bool next() { return (has_ = rows_ && rows_->next()); }

  /// Goes to the first row of an identifier that comes after those asked for before.
  bool seek(std::string_view id) {
    if (!started_) {
      started_ = true;
      next();
    }
    while (has_ && rows_->id() < id) {
      next();
    }
    return has_ && rows_->id() == id;
  }
  bool again(std::string_view id) { return next() && rows_->id() == id; }

  Rows& rows() { return *rows_; }
  std::uint64_t consumed() const { return rows_ ? rows_->consumed() : 0; }

  /// Reads to the end, so that a file that ends early is noticed.
  void finish(Imported& result) {
    while (next()) {
    }
    if (rows_) {
      addBroken(path_, rows_->broken(), result);
    }
  }

 private:
  std::string path_;
  std::unique_ptr<Rows> rows_;
  bool started_ = false;
  bool has_ = false;
};

Gatherer::Gatherer(const ImportOptions& options, const DataSets& sets, const OnProgress& progress,
                   Imported& result)
    : options_(options),
      sets_(sets),
      progress_(progress),
      result_(result),
      titles_(options.memory * 2 / 5, temporaryFolder(options)),
      episodes_(options.memory / 5, temporaryFolder(options)),
      idents_(options.memory / 10, temporaryFolder(options)) {}

Gatherer::~Gatherer() = default;

void Gatherer::addName(std::string_view title, Source source) {
  std::string name = normalise(title);
  if (name.empty() || name.size() > 400) {
    return;
  }
  name.insert(name.begin(), static_cast<char>(source));
  const std::string_view text = std::string_view(name).substr(1);
  for (const std::string& known : names_) {
    if (std::string_view(known).substr(1) == text) {
      return;
    }
  }
  names_.push_back(std::move(name));
}

void Gatherer::takeNames(std::string_view id) {
  for (bool here = akas_->seek(id); here; here = akas_->again(id)) {
    Rows& row = akas_->rows();
    const std::string_view title = row[1];
    addName(title, Source::kAlternative);
    const std::string_view language = row[3].empty() ? languageOf(row[2]) : row[3];
    if (language.empty() || language.size() > 3 ||
        std::any_of(title_.local.begin(), title_.local.end(),
                    [&](const LocalTitle& each) { return each.language == language; })) {
      continue;
    }
    title_.local.push_back({std::string(language), std::string(title)});
  }
  // A title that is the same is not worth its bytes.
  auto& local = title_.local;
  local.erase(std::remove_if(local.begin(), local.end(),
                             [&](const LocalTitle& each) { return each.title == title_.title; }),
              local.end());
}

void Gatherer::addPerson(std::string_view text, std::string_view characters,
                         std::vector<Person>& to) {
  Person person;
  if (text.substr(0, 2) != "nm" || !number(text.substr(2), person.id) || person.id == 0 ||
      person.id > People::kMost) {
    return;
  }
  person.role = rolesOf(characters);
  people_.add(person.id);
  to.push_back(std::move(person));
}

void Gatherer::takePrincipals(std::string_view id) {
  for (bool here = principals_->seek(id); here; here = principals_->again(id)) {
    Rows& row = principals_->rows();
    const std::string_view category = row[2];
    const bool acts = category == "actor" || category == "actress" || category == "self";
    if (acts && title_.cast.size() < options_.cast) {
      addPerson(row[1], row[4], title_.cast);
    } else if (category == "writer" && row[3].find("created") != std::string_view::npos &&
               title_.creators.size() < kMostDirectors) {
      addPerson(row[1], "", title_.creators);
    }
  }
}

void Gatherer::takeTitle(std::uint32_t id, const TitleType& type) {
  const Rows& row = basics_->rows();
  title_ = Title();
  names_.clear();
  title_.id = id;
  title_.type = indexOf(type);
  title_.adult = row[4] == "1";
  title_.title = row[2];
  title_.originalTitle = row[3] == row[2] ? std::string_view() : row[3];
  title_.year = numberOr0(row[5]);
  title_.endYear = numberOr0(row[6]);
  title_.minutes = numberOr0(row[7]);
  forEachPart(row[8], [&](std::string_view genre) { title_.genres.emplace_back(genre); });
  if (ratings_->seek(row.id())) {
    title_.rating = tenths(ratings_->rows()[1]);
    title_.votes = numberOr0(ratings_->rows()[2]);
  }
  addName(title_.title, Source::kTitle);
  addName(title_.originalTitle, Source::kOriginalTitle);
  takeNames(row.id());
  if (crew_->seek(row.id())) {
    forEachPart(crew_->rows()[1], [&](std::string_view person) {
      if (title_.directors.size() < kMostDirectors) {
        addPerson(person, "", title_.directors);
      }
    });
  }
  takePrincipals(row.id());

  key_.clear();
  appendSortable(key_, ~title_.votes);
  appendSortable(key_, id);
  value_.clear();
  Packer to(value_);
  to.number(names_.size());
  for (const std::string& name : names_) {
    to.text(name);
  }
  pack(title_, value_);
  titles_.add(key_, value_);
  ++result_.titles;
}

void Gatherer::takeEpisode(std::uint32_t id) {
  const Rows& row = basics_->rows();
  std::uint32_t season = 0;
  Episode episode;
  if (!parents_->seek(row.id()) || !number(parents_->rows()[2], season) || season >= kSeasons) {
    return;
  }
  const std::uint32_t show = idOf(parents_->rows()[1]);
  // An episode without a number cannot be asked for.
  if (show == 0 || parents_->rows()[3].empty() || !number(parents_->rows()[3], episode.number)) {
    return;
  }
  episode.id = id;
  episode.title = row[2];
  episode.year = numberOr0(row[5]);
  episode.minutes = numberOr0(row[7]);
  if (ratings_->seek(row.id())) {
    episode.rating = tenths(ratings_->rows()[1]);
    episode.votes = numberOr0(ratings_->rows()[2]);
  }
  key_.clear();
  for (const std::uint32_t part : {show, season, episode.number, id}) {
    appendSortable(key_, part);
  }
  value_.clear();
  pack(episode, value_);
  episodes_.add(key_, value_);

  key_.clear();
  appendSortable(key_, id);
  value_.clear();
  Packer to(value_);
  to.number(show);
  to.number(season);
  idents_.add(key_, '\1' + value_);
  ++result_.episodes;
}

void Gatherer::tell() {
  std::uint64_t bytes = 0;
  for (const auto* each : {&basics_, &akas_, &ratings_, &crew_, &principals_, &parents_}) {
    bytes += (*each)->consumed();
  }
  const double all = static_cast<double>(std::max<std::uint64_t>(sets_.bytes(), 1));
  progress_({"reading titles", basics_->rows().broken().rows,
             kReadingShare * static_cast<double>(bytes) / all});
}

void Gatherer::gather() {
  basics_ = std::make_unique<Joined>(
      sets_.basics(),
      std::vector<std::string_view>{"tconst", "titleType", "primaryTitle", "originalTitle",
                                    "isAdult", "startYear", "endYear", "runtimeMinutes", "genres"});
  akas_ = std::make_unique<Joined>(
      sets_.akas(), std::vector<std::string_view>{"titleId", "title", "region", "language"});
  ratings_ = std::make_unique<Joined>(
      sets_.ratings(), std::vector<std::string_view>{"tconst", "averageRating", "numVotes"});
  crew_ =
      std::make_unique<Joined>(sets_.crew(), std::vector<std::string_view>{"tconst", "directors"});
  principals_ = std::make_unique<Joined>(
      sets_.principals(),
      std::vector<std::string_view>{"tconst", "nconst", "category", "job", "characters"});
  parents_ = std::make_unique<Joined>(
      sets_.episode(),
      std::vector<std::string_view>{"tconst", "parentTconst", "seasonNumber", "episodeNumber"});
  std::uint32_t before = 0;
  while (basics_->next()) {
    Rows& row = basics_->rows();
    if (row.broken().rows % kRowsATell == 0) {
      tell();
    }
    const std::uint32_t id = idOf(row.id());
    if (id == 0 || row[2].empty()) {
      row.reject("no identifier such as tt0000001 with a title");
      continue;
    }
    if (id == before) {
      row.reject("the identifier of the row before");
      continue;
    }
    before = id;
    if (row[4] == "1" && !options_.adult) {
      continue;
    }
    if (row[1] == "tvEpisode") {
      takeEpisode(id);
    } else if (const TitleType* const type = findType(row[1])) {
      takeTitle(id, *type);
    }
  }
  for (const auto* each : {&basics_, &akas_, &ratings_, &crew_, &principals_, &parents_}) {
    (*each)->finish(result_);
  }
  if (result_.titles == 0) {
    throw std::runtime_error(sets_.basics() + ": there is no title in it");
  }
}

}  // namespace quilp::catalogue
