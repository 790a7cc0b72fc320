#include <cstdio>
#include <optional>
#include <pugixml.hpp>
#include <sstream>
#include <string>

#include "catalogue/records.h"
#include "catalogue/search.h"
#include "catalogue/store.h"
#include "command/catalogue_file.h"
#include "command/commands.h"
#include "command/options.h"
#include "output/document.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/message.h"
#include "output/table.h"
#include "output/utf8.h"

namespace quilp {
namespace {

using catalogue::Element;
using catalogue::Elements;
using catalogue::Episode;
using catalogue::Ident;
using catalogue::Kind;
using catalogue::Query;
using catalogue::Season;
using catalogue::Store;
using catalogue::Title;

void addTo(pugi::xml_node parent, const Elements& elements) {
  for (const Element& element : elements) {
    pugi::xml_node node = parent.append_child(element.name.c_str());
    if (element.elements.empty()) {
      node.append_child(pugi::node_cdata).set_value(validUtf8(element.text).c_str());
    }
    addTo(node, element.elements);
  }
}

bool print(const pugi::xml_document& document, Format format) {
  std::ostringstream text;
  document.save(text, "\t");
  switch (format) {
    case Format::kJson:
      return printJson(jsonOfDocument(text.str()));
    case Format::kTable:
      return printAsTable(text.str());
    default:
      return std::fwrite(text.str().data(), 1, text.str().size(), stdout) == text.str().size() &&
             std::fflush(stdout) == 0;
  }
}

Elements listed(const Title& title) {
  Elements elements = {{"id", catalogue::idText(title.id)},
                       {"title", title.title},
                       {"type", std::string(catalogue::typeAt(title.type)->name)}};
  if (title.year != 0) {
    elements.push_back({"year", std::to_string(title.year)});
  }
  if (title.votes != 0) {
    elements.push_back(
        {"rating", std::to_string(title.rating / 10) + '.' + std::to_string(title.rating % 10)});
    elements.push_back({"votes", std::to_string(title.votes)});
  }
  return elements;
}

int search(const Query& query, Format format) {
  Store store(catalogueFile());
  pugi::xml_document document;
  pugi::xml_node list = document.append_child("titlelist");
  int rank = 0;
  for (const Title& title : titlesOf(store, catalogue::search(store, query))) {
    pugi::xml_node entry = list.append_child("entry");
    entry.append_attribute("rank") = ++rank;
    addTo(entry, listed(title));
  }
  if (rank == 0) {
    tell("nothing found");
  }
  return print(document, format) && rank > 0 ? 0 : kNothingFound;
}

std::optional<Episode> findEpisode(Store& store, const Ident& ident, std::uint32_t id) {
  if (const std::optional<Season> season = store.season(ident.show, ident.season)) {
    for (const Episode& episode : season->episodes) {
      if (episode.id == id) {
        return episode;
      }
    }
  }
  return std::nullopt;
}

/// What an identifier stands for. Empty for nothing.
pugi::xml_document describe(Store& store, std::uint32_t id) {
  pugi::xml_document document;
  const std::optional<Ident> ident = store.ident(id);
  if (ident && ident->isEpisode) {
    const std::optional<Ident> show = store.ident(ident->show);
    const std::optional<Episode> episode = findEpisode(store, *ident, id);
    if (show && !show->isEpisode && episode) {
      const Title title = store.title(show->rank);
      pugi::xml_node root = document.append_child("tvepisode");
      addTo(root, {{"show", title.title},
                   {"season", std::to_string(ident->season)},
                   {"episode", std::to_string(episode->number)}});
      addTo(root, catalogue::episode(title, *episode));
    }
  } else if (ident) {
    const Title title = store.title(ident->rank);
    if (title.kind() == Kind::kShow) {
      pugi::xml_node root = document.append_child("tvshow");
      addTo(root, catalogue::show(store, title, ""));
      addTo(root, {{"seasons", std::to_string(store.seasonsOf(title.id).size())}});
    } else {
      pugi::xml_node root = document.append_child("movie");
      addTo(root, catalogue::movie(store, title, ""));
      addTo(root, {{"runtime", title.minutes == 0 ? "" : std::to_string(title.minutes) + " min"}});
    }
  }
  return document;
}

int show(const std::string& text, Format format) {
  const std::uint32_t id = catalogue::idOf(text);
  if (id == 0) {
    throw WrongUsage("\"" + text + "\" is no identifier such as tt0000001", "quilp catalogue show");
  }
  Store store(catalogueFile());
  const pugi::xml_document document = describe(store, id);
  if (!document.first_child()) {
    tell(text + " is not in the catalogue");
    return kNothingFound;
  }
  return print(document, format) ? 0 : kNothingFound;
}

int info() {
  const std::string address = catalogueFile();
  Store store(address);
  printLine(catalogue::isServer(address) ? "server" : "file", store.place());
  printLine("size", std::to_string(store.tables().bytes() / 1000000) + " MB");
  const std::pair<const char*, const char*> kLines[] = {{"date", "data of"},
                                                        {"titles", "titles"},
                                                        {"episodes", "episodes"},
                                                        {"names", "names"},
                                                        {"people", "people"}};
  for (const auto& [key, label] : kLines) {
    const auto found = store.meta().find(key);
    printLine(label, found == store.meta().end() ? "" : found->second);
  }
  std::printf("%s\n", catalogueAttribution());
  return std::fflush(stdout) == 0 ? 0 : kNothingFound;
}

}  // namespace

void addCatalogueInfo(Command& catalogue) {
  Command& command = catalogue.add("info", "Tell what the catalogue holds, and of which day");
  command.run = info;
}

void addCatalogueSearch(Command& catalogue) {
  static Query query;
  static Format format;
  static int year = 0;
  static int count = kDefaultCount;
  Command& command = catalogue.add("search", "Search the catalogue");
  command.operands.push_back(
      {"WORDS", "What to look for",
       [](const std::string& word) { query.words += (query.words.empty() ? "" : " ") + word; },
       true, true});
  command.options.push_back(
      {0, "year", "Y", "The year of the title", toNumber("--year", year, 1800, 2200)});
  static std::optional<Kind> kind;
  command.options.push_back(
      choice("type", kind, "What to look for (default: both)",
             Choices<std::optional<Kind>>{{"movie", Kind::kMovie}, {"tv", Kind::kShow}}));
  addCount(command, count);
  addFormat(command, format, {Format::kTable, Format::kJson, Format::kXml});
  command.run = [] {
    query.year = static_cast<unsigned>(year);
    query.kind = kind;
    query.count = static_cast<std::size_t>(count);
    return search(query, format);
  };
}

void addCatalogueShow(Command& catalogue) {
  static std::string id;
  static Format format;
  Command& command = catalogue.add("show", "Show a movie, a TV show or an episode");
  command.operands.push_back({"ID", "Identifier, such as tt0000001", toText(id)});
  addFormat(command, format, {Format::kTable, Format::kJson, Format::kXml});
  command.run = [] { return show(id, format); };
}

}  // namespace quilp
