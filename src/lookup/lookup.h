#pragma once

#include <cstdio>
#include <mutex>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "lookup/request.h"
#include "plugin/add_on_call.h"
#include "plugin/records.h"
#include "plugin/result_document.h"

// The one way to make a lookup. Only std::logic_error leaves it, where the exported function says
// so; for an observed lookup it is an answer, as being out of memory always is.

namespace libquilp {

/// A request for a list of records.
template <class Record>
struct ListRequest : Request {
  Table<Record> fields;   // of an entry of the add-on's document
  Table<Record> printed;  // of an entry of the printed document
  char* Record::*value;   // what the entry itself holds; null where it holds elements
  void (*release)(Record* records, int count);
  Found<Record> (*builtIn)(const Values& values, const Context& context);
};

/// A request for one record.
template <class Record>
struct RecordRequest : Request {
  Table<Record> fields;
  Table<Record> printed;
  void (*clear)(Record& record);  // what every lookup starts with
  void (*read)(const XMLNode& root, const Values& values, Record& record);
  Outcome (*builtIn)(const Values& values, const Context& context, Record& record);
  void (*complete)(const Values& values, Record& record);  // before printing; may be null
  bool (*isFilled)(const RecordRequest& request, const Record& record);
  void (*release)(Record* record);
};

template <class Record>
struct ListAnswer : Answer {
  Found<Record> found;
};

/// What is asked, on its way to an answer.
class Lookup {
 public:
  Lookup(const Request& request, const Values& values, Use use, const Context& context,
         Answer& answer);

  /// For the built-in scrapers.
  const Context& context() const { return context_; }
  bool isRefused() const { return answer_.reason == Reason::kWrongRequest; }
  bool isBuiltIn() const { return !answer_.addOn; }
  bool isObserved() const { return context_.observer != nullptr; }

  /// Runs the add-on and gives the root of its document; empty, with a reason, when there is none.
  XMLNode document();

  /// Runs the add-on and gives its document as it is.
  std::optional<std::string> copiedDocument(const std::vector<Element>& elements);

  /// Adds the reason where nothing was found. `known` is what a scraper knows.
  void conclude(bool found, Reason known = Reason::kOk);

  template <class Record>
  void countFields(Table<Record> table, const Record* records, int count) const;

 private:
  /// Keeps what was fetched and passes everything on.
  class Recorder : public Observer {
   public:
    explicit Recorder(Observer* next) : next_(next) {}
    void addOnStarted(const std::vector<std::string>& argv) override { next_->addOnStarted(argv); }
    void addOnEnded(const ProgramEnd& end) override { next_->addOnEnded(end); }
    void pageFetched(const Fetch& fetch) override;
    void rowsFound(int rows) override { next_->rowsFound(rows); }
    void fieldFound(const char* element, int filled) override {
      next_->fieldFound(element, filled);
    }
    void message(const std::string& text) override { next_->message(text); }

    const std::vector<Fetch>& fetches() const { return fetches_; }

   private:
    Observer* next_;
    std::mutex adding_;
    std::vector<Fetch> fetches_;  // of several for one address in turn, the last
  };

  bool runAddOn();
  XMLNode openDocument();
  bool setReason(const Fetch& fetch);

  const Request& request_;
  const Values& values_;
  Answer& answer_;
  Recorder recorder_;
  Context context_;
  std::optional<AddOnCall> call_;
};

/// Blanks are no value.
bool holdsText(const char* value);

template <class Record>
bool isFilled(const Field<Record>& field, const Record& record) {
  return field.text != nullptr ? holdsText(record.*field.text) : !(record.*field.list).empty();
}

template <class Record>
bool anyFilled(Table<Record> table, const Record& record) {
  for (const Field<Record>& field : table) {
    if (isFilled(field, record)) {
      return true;
    }
  }
  return false;
}

template <class Record>
void Lookup::countFields(Table<Record> table, const Record* records, int count) const {
  if (context_.observer == nullptr) {
    return;
  }
  context_.observer->rowsFound(count);
  for (const Field<Record>& field : table) {
    int filled = 0;
    for (int i = 0; i < count; ++i) {
      filled += isFilled(field, records[i]) ? 1 : 0;
    }
    context_.observer->fieldFound(field.element, filled);
  }
}

template <class Record>
std::vector<Element> elementsOf(Table<Record> table) {
  std::vector<Element> elements;
  for (const Field<Record>& field : table) {
    const Element::Kind kind = field.text != nullptr    ? Element::Kind::kText
                               : field.roles == nullptr ? Element::Kind::kList
                                                        : Element::Kind::kCast;
    elements.push_back({field.element, kind, field.required,
                        field.roles != nullptr && field.missing != Missing::kOneElement});
  }
  return elements;
}

template <class Record>
Found<Record> findBy(const ListRequest<Record>& request, const Values& values, Lookup& lookup) {
  Found<Record> found;
  if (lookup.isBuiltIn()) {
    found = request.builtIn(values, lookup.context());
  } else if (const XMLNode root = lookup.document()) {
    found = readRecords(root, request.entry, request.release,
                        [&request](const XMLNode& entry, Record& record) {
                          if (request.value != nullptr) {
                            record.*request.value = SafeStrdup(firstClear(entry));
                          } else {
                            readRecord(entry, request.fields, record);
                          }
                        });
  }
  bool any = false;
  for (const Record& record : found.records) {
    any = any || anyFilled(request.printed, record);
  }
  if (found.records.count() > 0 && found.reason == Reason::kOk) {
    found.reason = Reason::kEmptyRows;
  }
  // The built-in searches give an empty record where there is nothing.
  const bool counts = any || found.reason == Reason::kEmptyRows;
  lookup.countFields(request.printed, found.records.begin(), counts ? found.records.count() : 0);
  lookup.conclude(any, found.reason);
  return found;
}

/// Makes a lookup for a list.
template <class Record>
ListAnswer<Record> run(const ListRequest<Record>& request, const Values& values,
                       const Context& context) {
  ListAnswer<Record> answer;
  try {
    Lookup lookup(request, values, Use::kRecords, context, answer);
    answer.found = findBy(request, values, lookup);
  } catch (const std::bad_alloc&) {
    answer.reason = Reason::kOutOfMemory;
    answer.status = 1;
  }
  return answer;
}

template <class Record>
void fillBy(const RecordRequest<Record>& request, const Values& values, Lookup& lookup,
            Answer& answer, Record& record) {
  if (lookup.isRefused()) {
    answer.status = 1;
    return;
  }
  request.clear(record);
  Reason known = Reason::kOk;
  try {
    if (lookup.isBuiltIn()) {
      const Outcome outcome = request.builtIn(values, lookup.context(), record);
      answer.status = outcome.status;
      known = outcome.reason != Reason::kOk ? outcome.reason : Reason::kUnknownPage;
    } else if (const XMLNode root = lookup.document()) {
      request.read(root, values, record);
      known = Reason::kEmptyRows;
    } else {
      answer.status = answer.status != 0 ? answer.status : 1;
    }
  } catch (const std::logic_error&) {
    if (!lookup.isObserved()) {
      throw;
    }
    answer.status = 1;
    known = lookup.isBuiltIn() ? Reason::kUnknownPage : Reason::kNoRole;
  }
  const bool found = answer.status == 0 && request.isFilled(request, record);
  lookup.countFields(request.printed, &record, answer.status == 0 ? 1 : 0);
  lookup.conclude(found, known);
}

/// Makes a lookup for one record, which the caller has constructed.
template <class Record>
Answer run(const RecordRequest<Record>& request, const Values& values, const Context& context,
           Record& record) {
  Answer answer;
  try {
    Lookup lookup(request, values, Use::kRecords, context, answer);
    fillBy(request, values, lookup, answer, record);
  } catch (const std::bad_alloc&) {
    answer.reason = Reason::kOutOfMemory;
    answer.status = 1;
  }
  return answer;
}

inline std::string textOf(const Request& request, const ResultDocument& document) {
  return request.printsCData ? document.decodedText() : document.text();
}

inline AddChild adderOf(const Request& request) {
  return request.printsCData ? &addClearChild : &addTextChild;
}

template <class Record>
PrintedAnswer printList(const Request& base, const Values& values, const Context& context) {
  const auto& request = static_cast<const ListRequest<Record>&>(base);
  PrintedAnswer answer;
  try {
    Lookup lookup(request, values, Use::kPrint, context, answer);
    const bool copies = request.media.printing == Printing::kAddOnDocument;
    answer.status = copies ? 1 : 0;
    if (answer.addOn && copies) {
      answer.document = lookup.copiedDocument(elementsOf(request.printed));
      return answer;
    }
    const Found<Record> found = findBy(request, values, lookup);
    if (found.count > 0) {
      ResultDocument document(request.root);
      int index = 0;
      for (const Record& record : found.records) {
        XMLNode entry =
            request.value != nullptr ? document.root() : document.addEntry(request.entry, index++);
        writeRecord(entry, request.printed, record, adderOf(request));
      }
      answer.document = textOf(request, document);
      answer.status = 0;
    }
  } catch (const std::bad_alloc&) {
    answer.reason = Reason::kOutOfMemory;
    answer.status = 1;
  }
  return answer;
}

template <class Record>
PrintedAnswer printRecord(const Request& base, const Values& values, const Context& context) {
  const auto& request = static_cast<const RecordRequest<Record>&>(base);
  struct Printed : Record {
    explicit Printed(void (*release)(Record*)) : Record(), release_(release) {}
    ~Printed() { release_(this); }
    void (*release_)(Record*);
  };
  PrintedAnswer answer;
  try {
    Lookup lookup(request, values, Use::kPrint, context, answer);
    Printed record(request.release);
    fillBy<Record>(request, values, lookup, answer, record);
    if (answer.status == 0) {
      if (request.complete != nullptr) {
        request.complete(values, record);
      }
      ResultDocument document(request.root);
      writeRecord<Record>(document.root(), request.printed, record, adderOf(request));
      answer.document = textOf(request, document);
    }
  } catch (const std::bad_alloc&) {
    answer.document.reset();
    answer.reason = Reason::kOutOfMemory;
    answer.status = 1;
  }
  return answer;
}

template <class Record>
std::vector<Element> listElements(const Request& request) {
  return elementsOf(static_cast<const ListRequest<Record>&>(request).fields);
}

template <class Record>
std::vector<Element> recordElements(const Request& request) {
  return elementsOf(static_cast<const RecordRequest<Record>&>(request).fields);
}

// What the exported functions are made of: lookups that nothing observes.

/// Stores the array and, where there is one, the add-on's exit status. Null for `records` is
/// refused.
template <class Record>
int search(const ListRequest<Record>& request, const Values& values, Record** records,
           int* error = nullptr) {
  if (records == nullptr) {
    return 0;
  }
  ListAnswer<Record> answer = run(request, values, Context());
  if (error != nullptr && answer.status != 0 && answer.reason != Reason::kOutOfMemory) {
    *error = answer.status;
  }
  return answer.found.giveTo(records);
}

/// Null for `record` is refused.
template <class Record>
int fill(const RecordRequest<Record>& request, const Values& values, Record* record) {
  return record != nullptr ? run(request, values, Context(), *record).status : 1;
}

/// Writes the document to standard output, if there is one. Returns whether there was.
bool writeOut(const PrintedAnswer& answer);

}  // namespace libquilp
