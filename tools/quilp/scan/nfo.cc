#include "scan/nfo.h"

#include <pugixml.hpp>
#include <sstream>
#include <string_view>

#include "ascii.h"
#include "output/utf8.h"

namespace quilp {
namespace {

/// XML allows no control characters but these.
std::string xmlText(const std::string& bytes) {
  std::string text;
  for (const char c : validUtf8(bytes)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 || c == '\n' || c == '\t') {
      text += c;
    }
  }
  return text;
}

void add(pugi::xml_node node, const char* name, const std::string& value) {
  if (!value.empty()) {
    node.append_child(name).text().set(xmlText(value).c_str());
  }
}

void addEach(pugi::xml_node node, const char* name, const std::vector<std::string>& values) {
  for (const std::string& value : values) {
    add(node, name, value);
  }
}

/// "tmdb:603" is of tmdb, "tt0000001" of imdb; another is of a source without a name.
void addId(pugi::xml_node node, const std::string& id) {
  if (id.empty()) {
    return;
  }
  const std::size_t colon = id.find(':');
  const bool isImdb = id.compare(0, 2, "tt") == 0;
  pugi::xml_node unique = node.append_child("uniqueid");
  unique.append_attribute("type") = isImdb                       ? "imdb"
                                    : colon == std::string::npos ? "unknown"
                                                                 : id.substr(0, colon).c_str();
  unique.append_attribute("default") = "true";
  unique.text().set(xmlText(colon == std::string::npos ? id : id.substr(colon + 1)).c_str());
}

void addRating(pugi::xml_node node, const std::string& rating) {
  if (rating.empty()) {
    return;
  }
  pugi::xml_node one = node.append_child("ratings").append_child("rating");
  one.append_attribute("name") = "default";
  one.append_attribute("max") = "10";
  one.append_attribute("default") = "true";
  add(one, "value", rating);
}

void addActors(pugi::xml_node node, const Record& record) {
  int order = 0;
  for (const Record::Actor& actor : record.actors()) {
    pugi::xml_node one = node.append_child("actor");
    add(one, "name", actor.name);
    add(one, "role", actor.role);
    add(one, "order", std::to_string(order++));
  }
}

void addPicture(pugi::xml_node node, const char* aspect, const std::string& address) {
  if (!address.empty()) {
    add(node, "thumb", address);
    node.last_child().append_attribute("aspect") = aspect;
  }
}

/// "45 min" gives "45".
std::string minutesOf(const std::string& duration) {
  std::size_t end = 0;
  while (end < duration.size() && libquilp::isDigit(static_cast<unsigned char>(duration[end]))) {
    ++end;
  }
  return duration.substr(0, end);
}

bool isDate(const std::string& text) {
  return text.size() == 10 && text[4] == '-' && text[7] == '-';
}

void addPlot(pugi::xml_node node, const Record& record) {
  const std::string plot = record.text("plot");
  const std::string outline = record.text("outline");
  add(node, "outline", outline);
  add(node, "plot", plot.empty() ? outline : plot);
}

std::string textOf(const pugi::xml_document& document) {
  std::ostringstream text;
  document.save(text, "  ", pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n" + text.str();
}

}  // namespace

std::string movieNfo(const std::string& id, const Record& movie) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("movie");
  add(root, "title", movie.text("title"));
  addRating(root, movie.text("rating"));
  addPlot(root, movie);
  add(root, "mpaa", movie.text("mpaa"));
  addId(root, id);
  addEach(root, "genre", movie.list("genre"));
  addEach(root, "country", movie.list("country"));
  addEach(root, "director", movie.list("director"));
  add(root, "year", movie.text("year"));
  add(root, "studio", movie.text("company"));
  addPicture(root, "poster", movie.text("poster"));
  addActors(root, movie);
  return textOf(document);
}

std::string showNfo(const std::string& id, const Record& show) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("tvshow");
  const std::string first = show.text("first_air_date");
  add(root, "title", show.text("title"));
  addRating(root, show.text("rating"));
  addPlot(root, show);
  add(root, "runtime", minutesOf(show.text("duration")));
  add(root, "mpaa", show.text("content_rating"));
  addId(root, id);
  addEach(root, "genre", show.list("genres"));
  add(root, "premiered", isDate(first) ? first : "");
  add(root, "year", first.substr(0, 4));
  addEach(root, "studio", show.list("network"));
  addPicture(root, "poster", show.text("poster"));
  addPicture(root, "banner", show.text("banner"));
  addActors(root, show);
  return textOf(document);
}

std::string episodesNfo(const std::string& showTitle, const std::vector<EpisodeRecord>& episodes) {
  pugi::xml_document document;
  for (const EpisodeRecord& episode : episodes) {
    const std::string date = episode.record.text("air_date");
    pugi::xml_node root = document.append_child("episodedetails");
    add(root, "title", episode.record.text("title"));
    add(root, "showtitle", showTitle);
    addRating(root, episode.record.text("rating"));
    add(root, "season", std::to_string(episode.season));
    add(root, "episode", std::to_string(episode.number));
    addPlot(root, episode.record);
    addId(root, episode.record.text("id"));
    addEach(root, "genre", episode.record.list("genre"));
    addEach(root, "director", episode.record.list("director"));
    add(root, "aired", isDate(date) ? date : "");
    add(root, "year", date.substr(0, 4));
    addPicture(root, "thumb", episode.record.text("thumbnail"));
    addActors(root, episode.record);
  }
  return textOf(document);
}

}  // namespace quilp
