#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kit/document.h"
#include "kit/wikimedia.h"
#include "musicbrainz/answers.h"
#include "tmdb/answers.h"
#include "tvmaze/answers.h"
#include "wikidata/answers.h"

// All functions that read answers of services, for tests that spoil the answers.

struct AnswerReader {
  const char* sample;  // its file in the folder services
  std::function<void(const std::string& answer, quilp::kit::Document& document)> read;
};

inline void writeTexts(const quilp::kit::Texts& texts, quilp::kit::Document& document) {
  for (const std::string& text : texts) {
    document.value("text", text);
  }
}

inline const std::vector<AnswerReader>& answerReaders() {
  using quilp::kit::Document;
  using quilp::kit::Kind;
  using Text = std::string;
  static const std::vector<AnswerReader> kReaders = {
      {"musicbrainz_albums",
       [](const Text& answer, Document& document) {
         for (const auto& album : quilp::musicbrainz::readAlbums(answer).albums) {
           writeAlbum(album, document);
         }
       }},
      {"musicbrainz_browse",
       [](const Text& answer, Document& document) {
         for (const auto& album : quilp::musicbrainz::readAlbums(answer).albums) {
           writeAlbum(album, document);
         }
       }},
      {"musicbrainz_artists",
       [](const Text& answer, Document& document) {
         writeTexts({quilp::musicbrainz::readArtist(answer, "Mira Holm")}, document);
       }},
      {"musicbrainz_relations",
       [](const Text& answer, Document& document) {
         writeTexts(quilp::musicbrainz::readRelations(answer).files, document);
       }},
      {"musicbrainz_entity",
       [](const Text& answer, Document& document) {
         writeTexts(quilp::musicbrainz::readEntityFiles(answer), document);
       }},
      {"wikimedia_files",
       [](const Text& answer, Document& document) {
         for (const auto& [name, address] : quilp::kit::readFiles(answer)) {
           document.value("name", name + address);
         }
       }},
      {"coverartarchive",
       [](const Text& answer, Document& document) {
         writeTexts({quilp::musicbrainz::readCover(answer)}, document);
       }},
      {"fanart",
       [](const Text& answer, Document& document) {
         writeTexts(quilp::musicbrainz::readFanart(answer), document);
       }},
      {"tmdb_search",
       [](const Text& answer, Document& document) {
         const quilp::tmdb::Wanted wanted{Kind::kMovie, "de-AT"};
         isTranslated(answer, wanted);
         for (const auto& movie : quilp::tmdb::readSearch(answer, wanted, answer)) {
           writeMovieHit(movie, document);
         }
       }},
      {"tmdb_movie",
       [](const Text& answer, Document& document) {
         writeMovie(quilp::tmdb::readTitle(answer, {Kind::kMovie, "de-AT"}), document);
       }},
      {"tmdb_show",
       [](const Text& answer, Document& document) {
         writeShow(quilp::tmdb::readTitle(answer, {Kind::kShow, "en"}), document);
       }},
      {"tmdb_episode",
       [](const Text& answer, Document& document) {
         writeEpisode(quilp::tmdb::readEpisode(answer, {Kind::kShow, "fr-CA"}), document);
       }},
      {"tmdb_find",
       [](const Text& answer, Document& document) {
         document.value("id", quilp::tmdb::readFound(answer, Kind::kShow));
       }},
      {"tvmaze_search",
       [](const Text& answer, Document& document) {
         for (const auto& show : quilp::tvmaze::readSearch(answer)) {
           writeShowHit(show, document);
         }
       }},
      {"tvmaze_show",
       [](const Text& answer, Document& document) {
         writeShow(quilp::tvmaze::readShow(answer), document);
       }},
      {"tvmaze_episode",
       [](const Text& answer, Document& document) {
         writeEpisode(quilp::tvmaze::readEpisode(answer), document);
       }},
      {"wikidata_search",
       [](const Text& answer, Document& document) {
         writeTexts(quilp::wikidata::readSearch(answer), document);
       }},
      {"wikidata_hits",
       [](const Text& answer, Document& document) {
         for (const auto& movie :
              quilp::wikidata::readHits(answer, {"Q910001", "Q910002", "Q910003"}, "de-AT")) {
           writeMovieHit(movie, document);
         }
       }},
      {"wikidata_movie",
       [](const Text& answer, Document& document) {
         auto facts = quilp::wikidata::readFacts(answer, "Q910001", "de");
         writeTexts(entitiesOf(facts), document);
         readNames(answer, "de", facts);
         writeMovie(facts.title, document);
       }},
      {"wikidata_show",
       [](const Text& answer, Document& document) {
         writeShow(quilp::wikidata::readFacts(answer, "Q930001", "en").title, document);
         document.value("part", quilp::wikidata::readPart(answer, "Q930001", 1));
       }},
      {"wikidata_names",
       [](const Text& answer, Document& document) {
         quilp::wikidata::Facts facts;
         facts.named = {{nullptr, "Q920004", "Q920005"}};
         readNames(answer, "en", facts);
         writeShow(facts.title, document);
       }},
      {"wikipedia_summary",
       [](const Text& answer, Document& document) {
         writeTexts({quilp::wikidata::readSummary(answer)}, document);
       }},
  };
  return kReaders;
}

/// The document of an answer; empty if the answer is refused.
inline std::string documentOf(const AnswerReader& reader, const std::string& answer) {
  quilp::kit::Document document("root");
  try {
    reader.read(answer, document);
  } catch (const std::runtime_error&) {
    return "";
  }
  return document.text();
}
