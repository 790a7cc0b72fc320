#pragma once

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "lookup/lookup.h"
#include "lookup/request.h"
#include "plugin/records.h"
#include "plugin/result_document.h"

// The only way to run a lookup. It throws only std::logic_error, where the exported function
// documents it; running out of memory is an answer.

namespace libquilp {

/// A request for a list of records.
template <class Record>
struct ListRequest : Request {
  Table<Record> fields;   // of an entry of the add-on's document
  Table<Record> printed;  // of an entry of the printed document
  char* Record::*value;   // value of the entry itself; null if it contains elements
  void (*release)(Record* records, int count);
  Found<Record> (*builtIn)(const Values& values, const Context& context);
};

/// A request for one record.
template <class Record>
struct RecordRequest : Request {
  Table<Record> fields;
  Table<Record> printed;
  void (*clear)(Record& record);  // called at the start of every lookup
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
  // The built-in searches return an empty record if the site has no results.
  const bool counts = any || found.reason == Reason::kEmptyRows;
  lookup.countFields(request.printed, found.records.begin(), counts ? found.records.count() : 0);
  lookup.conclude(any, found.reason);
  return found;
}

/// Runs a lookup for a list.
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

/// Runs a lookup for one record, which the caller has constructed.
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

// The implementation of the exported functions: lookups without an observer.

/// Stores the array and, if there is one, the add-on's exit status. Refuses null `records`.
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

/// Refuses a null `record`.
template <class Record>
int fill(const RecordRequest<Record>& request, const Values& values, Record* record) {
  return record != nullptr ? run(request, values, Context(), *record).status : 1;
}

}  // namespace libquilp
