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
  void (*release)(Record*, int);
};

/// Fills records from the rows of a find page. The first row is taken before `count` is looked at.
template <class Record>
void readFindPage(std::string_view page, const TitleSearch<Record>& search, int count,
                  RecordArray<Record>& records) {
  FindPage rows(page);
  FindRow row;
  while ((records.count() == 0 || records.count() < count) && rows.next(row)) {
    Record& record = records.add();
    record.*search.id = duplicate(row.id);
    record.*search.title = duplicate(row.title);
    record.*search.date = duplicate(row.date);
  }
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
  RecordArray<Record> array(search.release, count);
  if (array && (!page.text || saysNoResults(*page.text))) {
    array.add();
  } else if (array) {
    readFindPage(*page.text, search, count, array);
    Record* first = array.data();
    search.enrich(&first, array.count());
  }
  return array.giveTo(records);
}

}  // namespace libquilp
