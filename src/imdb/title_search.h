#pragma once

#include <string>
#include <utility>

#include "imdb/enrichment.h"
#include "imdb/find_page.h"
#include "plugin/page_fetch.h"
#include "plugin/records.h"

namespace libquilp {

/// The parts of one kind of title search.
template <class Record>
struct TitleSearch {
  PageFile& file;
  const char* reference;  // of the title pages
  char* Record::*id;
  char* Record::*title;
  char* Record::*date;
  char* Record::*image;
  char* Record::*outline;
  void (*release)(Record*, int);
};

/// Fills records from the rows of a find page. Reads the first row before it checks `count`.
template <class Record>
RecordArray<Record> readFindPage(std::string_view page, const TitleSearch<Record>& search,
                                 int count) {
  RecordArray<Record> records(search.release, count);
  FindPage rows(page);
  FindRow row;
  while (records && (records.count() == 0 || records.count() < count) && rows.next(row)) {
    Record& record = records.add();
    record.*search.id = duplicate(row.id);
    record.*search.title = duplicate(row.title);
    record.*search.date = duplicate(row.date);
  }
  return records;
}

/// Fetches a find page and returns its records, enriched. Returns one empty record for a page
/// without results or one that cannot be read.
template <class Record>
Found<Record> searchTitles(const TitleSearch<Record>& search, const std::string& address, int count,
                           const Context& context) {
  const FilePage page = fetchToFile(address, search.file, context);
  if (page.status != 0) {
    return {};
  }
  if (!page.text || saysNoResults(*page.text)) {
    RecordArray<Record> empty(search.release, count);
    if (empty) {
      empty.add();
    }
    Found<Record> found(std::move(empty));
    found.reason = page.text ? Reason::kNothingFound : Reason::kNoPage;
    return found;
  }
  Found<Record> found(readFindPage(*page.text, search, count));
  enrich(found.records.data(), found.count, search.id, search.image, search.outline,
         search.reference, context);
  if (found.count == 0) {
    found.reason = page.text->empty() ? Reason::kEmptyPage : Reason::kUnknownPage;
  }
  return found;
}

}  // namespace libquilp
