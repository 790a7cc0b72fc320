#pragma once

#include <string>

#include "imdb/find_page.h"
#include "plugin/page_fetch.h"
#include "plugin/record_table.h"

namespace libquilp {

/// What one kind of title search is made of.
template <class Record>
struct TitleSearch {
  PageFile& file;
  char* Record::*id;
  char* Record::*title;
  char* Record::*date;
  void (*enrich)(Record**, int);
};

/// Fills records from the rows of a find page. The first row is taken before `count` is looked at.
template <class Record>
int readFindPage(std::string_view page, const TitleSearch<Record>& search, int count,
                 Record* records) {
  FindPage rows(page);
  FindRow row;
  int n = 0;
  while ((n == 0 || n < count) && rows.next(row)) {
    Record& record = records[n++];
    record.*search.id = duplicate(row.id);
    record.*search.title = duplicate(row.title);
    record.*search.date = duplicate(row.date);
  }
  return n;
}

/// Fetches a find page and returns the number of records, enriched, in an array for the caller. A
/// page without results, or one that cannot be read, gives 1: an empty record.
template <class Record>
int searchTitles(const TitleSearch<Record>& search, const std::string& address, int count,
                 Record** records) {
  const FilePage page = fetchToFile(address, search.file);
  if (page.status != 0) {
    return 0;
  }
  *records = allocateRecords<Record>(count);
  if (*records == nullptr) {
    return 0;
  }
  if (!page.text || saysNoResults(*page.text)) {
    return 1;
  }
  const int n = readFindPage(*page.text, search, count, *records);
  search.enrich(records, n);
  return n;
}

}  // namespace libquilp
