#pragma once

#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "lookup/request.h"
#include "plugin/add_on_call.h"
#include "plugin/record_table.h"
#include "xml/xml_node.h"

namespace libquilp {

/// One lookup in progress.
class Lookup {
 public:
  Lookup(const Request& request, const Values& values, Use use, const Context& context,
         Answer& answer);

  /// For the built-in scrapers.
  const Context& context() const { return context_; }
  bool isRefused() const { return answer_.reason == Reason::kWrongRequest; }
  bool isBuiltIn() const { return !answer_.addOn; }
  bool isObserved() const { return context_.observer != nullptr; }

  /// Runs the add-on and returns the root of its document; on failure an empty node, with a reason.
  XMLNode document();

  /// Runs the add-on and returns its document unchanged.
  std::optional<std::string> copiedDocument(const std::vector<Element>& elements);

  /// Adds the reason if nothing was found. `known` is the scraper's reason.
  void conclude(bool found, Reason known = Reason::kOk);

  template <class Record>
  void countFields(Table<Record> table, const Record* records, int count) const;

 private:
  /// Records the fetches and forwards every call.
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
    std::vector<Fetch> fetches_;  // only the last of several in a row for one address
  };

  bool runAddOn();
  bool wasCut();
  IsOver end() const;
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

}  // namespace libquilp
