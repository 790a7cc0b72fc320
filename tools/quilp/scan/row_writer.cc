#include "scan/row_writer.h"

#include <json/value.h>
#include <json/writer.h>

#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <string_view>

#include "output/json_output.h"
#include "output/table.h"
#include "output/utf8.h"

namespace quilp {
namespace {

std::string yearText(int year) { return year != 0 ? std::to_string(year) : ""; }

/// "Signal Row 2x01 The Points".
std::string matchText(const ScanRow& row) {
  if (row.kind != MediaKind::kEpisode || row.match.empty()) {
    return row.match;
  }
  std::string text = row.match + ' ' + numbersText(row.seasons) + 'x' + numbersText(row.episodes);
  return row.matchEpisode.empty() ? text : text + ' ' + row.matchEpisode;
}

class TableWriter : public RowWriter {
 public:
  explicit TableWriter(const std::string& folder) : folder_(folder) {}
  bool add(const ScanRow& row) override {
    const std::filesystem::path file = row.file;
    table_.addRow({folder_.empty() || file == folder_ ? file : file.lexically_relative(folder_),
                   nameOf(row.kind), matchText(row), yearText(row.matchYear), row.id,
                   row.unknown() ? "" : std::to_string(row.confidence) + (row.sure ? "" : "?")});
    return true;
  }
  bool end() override { return table_.print(); }

 private:
  const std::filesystem::path folder_;
  Table table_{{"file", "kind", "match", "year", "id", "sure"}};
};

/// As RFC 4180 has it, but with a line feed at a line's end. Bytes are what they are.
class CsvWriter : public RowWriter {
 public:
  CsvWriter() {
    line({"file", "kind", "title", "year", "season", "episode", "episode_title", "match",
          "match_year", "match_episode_title", "air_date", "id", "confidence", "sure", "reason"});
  }
  bool add(const ScanRow& row) override {
    line({row.file, nameOf(row.kind), row.title, yearText(row.year), numbersText(row.seasons),
          numbersText(row.episodes), row.episodeTitle, row.match, yearText(row.matchYear),
          row.matchEpisode, row.airDate, row.id, std::to_string(row.confidence),
          row.sure ? "true" : "false", row.reason});
    return std::cout.good();
  }
  bool end() override { return static_cast<bool>(std::cout.flush()); }

 private:
  static void line(std::initializer_list<std::string_view> cells) {
    std::string text;
    for (const std::string_view cell : cells) {
      text += text.empty() ? "" : ",";
      text += cell.find_first_of("\",\r\n") == std::string_view::npos ? cell : quoted(cell);
    }
    std::cout << text << std::endl;
  }
  static std::string quoted(std::string_view cell) {
    std::string text = "\"";
    for (const char c : cell) {
      text += c == '"' ? "\"\"" : std::string(1, c);
    }
    return text + '"';
  }
};

class JsonWriter : public RowWriter {
 public:
  JsonWriter() {
    settings_["emitUTF8"] = true;
    settings_["indentation"] = "";
  }
  bool add(const ScanRow& row) override {
    std::cout << separator_ << Json::writeString(settings_, jsonOf(row)) << std::flush;
    separator_ = ",\n";
    return std::cout.good();
  }
  bool end() override {
    std::cout << (*separator_ == '[' ? "[]" : "\n]") << std::endl;
    return std::cout.good();
  }

 private:
  const char* separator_ = "[\n";
  Json::StreamWriterBuilder settings_;
};

/// The page is written when pictures are there, too.
class PageWriter : public RowWriter {
 public:
  bool add(const ScanRow& /*row*/) override { return true; }
  bool end() override { return std::cout.good(); }
};

}  // namespace

std::unique_ptr<RowWriter> makeRowWriter(Format format, const std::string& folder) {
  switch (format) {
    case Format::kCsv:
      return std::make_unique<CsvWriter>();
    case Format::kJson:
      return std::make_unique<JsonWriter>();
    case Format::kHtml:
      return std::make_unique<PageWriter>();
    default:
      return std::make_unique<TableWriter>(folder);
  }
}

}  // namespace quilp
