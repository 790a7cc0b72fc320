#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <pugixml.hpp>
#include <set>
#include <string_view>

#include "check/contents.h"
#include "check/document.h"
#include "plugin/record_table.h"

namespace quilp {
namespace {

using libquilp::Element;
using libquilp::Request;
using libquilp::XMLNode;
using Kind = Element::Kind;
using Faults = std::vector<std::string>;

bool isRepeated(const Element& element) {
  return element.kind == Kind::kList || element.kind == Kind::kCast;
}

/// What is wrong with a document's contents, clause by clause.
class Judge {
 public:
  Judge(const Request& request, Report& report)
      : request_(request), elements_(request.elements(request)), report_(report) {}

  void judge(const Document& document, const char* path) {
    for (const XMLNode& result : document.results) {
      where_ = request_.entry == nullptr || document.results.size() == 1
                   ? ""
                   : request_.entry + (" " + std::to_string(++number_)) + ": ";
      request_.plainText ? judgeSong(result) : judgeResult(result);
      judgeValues(result);
    }
    pugi::xml_document again;  // the library's reader names no elements
    again.load_file(path, pugi::parse_default, pugi::encoding_utf8);
    judgeNames(again);
    tell();
  }

 private:
  void judgeResult(const XMLNode& result) {
    if (elements_.empty()) {
      judgeForm(result, request_.entry);
      if (result.nClear() + result.nText() == 0) {
        fields_.push_back(where_ + "no address");
      }
    }
    judgePresence(result);
    for (const Element& element : elements_) {
      judgeOnce(result, element);
      result.forEachChild(element.name, [&](const XMLNode& one) {
        if (element.kind == Kind::kCast) {
          judgeActor(one, element);
        } else {
          judgeForm(one, element.name);
          judgeSeveral(one, element);
        }
      });
    }
  }

  void judgePresence(const XMLNode& result) {
    for (const Element& element : elements_) {
      const XMLNode one = result.getChildNode(element.name);
      if (element.required && *libquilp::firstClearOr(one, "") == '\0' &&
          one.nText() + one.nChildNode() == 0) {
        fields_.push_back(where_ + "no " + element.name);
      }
    }
  }

  void judgeOnce(const XMLNode& result, const Element& element) {
    const int n = result.nChildNode(element.name);
    if (!isRepeated(element) && n > 1) {
      once_.push_back(where_ + std::to_string(n) + " times " + element.name +
                      "; the first one is read");
    }
  }

  /// One CDATA section, nothing beside it. An element with nothing inside has no value.
  void judgeForm(const XMLNode& element, const std::string& name) {
    if (element.nChildNode() > 0) {
      form_.push_back(where_ + "elements inside " + name);
    } else if (element.nClear() == 0 && element.nText() > 0) {
      form_.push_back(where_ + name + " is plain text: " + element.getText());
    } else if (element.nClear() > 1) {
      form_.push_back(where_ + std::to_string(element.nClear()) + " CDATA sections in " + name +
                      "; the first one is read");
    } else if (element.nText() > 0) {
      form_.push_back(where_ + "text beside the CDATA section of " + name + ": " +
                      element.getText());
    }
  }

  void judgeSeveral(const XMLNode& element, const Element& kind) {
    const char* value = libquilp::firstClearOr(element, "");
    if (isRepeated(kind) && std::strpbrk(value, ",;|") != nullptr) {
      several_.push_back(where_ + kind.name + " holds several? " + value);
    }
  }

  void judgeActor(const XMLNode& actor, const Element& kind) {
    const XMLNode name = actor.getChildNode("name");
    const XMLNode role = actor.getChildNode("role");
    judgeForm(name, "name");
    judgeForm(role, "role");
    if (actor.nText() + actor.nClear() > 0 || !name) {
      roles_.push_back(where_ + "an actor without the element name");
    } else if (role.nClear() + role.nText() == 0) {
      Faults& faults = kind.needsRole ? roles_ : roleAdvice_;
      faults.push_back(where_ + "no role for " + libquilp::firstClearOr(name, "an actor") +
                       (kind.needsRole ? ": the call ends in an exception" : ""));
    }
  }

  // Karaoke: plain text, and lists of Name elements.
  void judgeSong(const XMLNode& song) {
    for (const Element& element : elements_) {
      judgeOnce(song, element);
      const XMLNode one = song.getChildNode(element.name);
      if (element.kind == Kind::kNames) {
        if (one.nText() + one.nClear() > 0) {
          several_.push_back(std::string(element.name) + " holds text instead of Name elements");
        }
        one.forEachChild("Name", [&](const XMLNode& name) {
          judgePlain(name, "Name");
          for (const char* attribute : {"Gender", "Nationality"}) {
            judgeNumber(name.getAttribute(attribute), attribute);
          }
        });
        continue;
      }
      judgePlain(one, element.name);
      if (element.kind == Kind::kNumber) {
        judgeNumber(one.getText(), element.name);
      }
      if (element.required && one.nText() + one.nClear() + one.nChildNode() == 0) {
        fields_.push_back(std::string("no ") + element.name);
      }
    }
  }

  void judgePlain(const XMLNode& element, const std::string& name) {
    if (element.nClear() > 0) {
      form_.push_back(name + " is in CDATA: " + element.getClear().lpszValue);
    } else if (element.nChildNode() > 0) {
      form_.push_back("elements inside " + name);
    }
  }

  void judgeNumber(const char* text, const std::string& name) {
    if (text == nullptr) {
      return;
    }
    const std::string_view digits = text + (*text == '-' ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
      numbers_.push_back(name + " is no number: " + text);
    }
  }

  void judgeValues(const XMLNode& result) {
    static const std::set<std::string> addresses = {"url", "poster", "banner", "thumbnail",
                                                    "image"};
    for (const auto& [name, text] : valuesOf(request_, result)) {
      const auto isBlank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
      if (isBlank(text.front()) || isBlank(text.back())) {
        blanks_.push_back(told(name, '"' + text + '"'));
      }
      if (!request_.plainText && hasReference(text)) {
        entities_.push_back(told(name, text));
      }
      if (addresses.count(name) > 0 && text.rfind("http://", 0) != 0 &&
          text.rfind("https://", 0) != 0) {
        addresses_.push_back(told(name, text));
      }
    }
  }

  std::string told(const std::string& name, const std::string& text) const {
    return std::string(where_).append(name).append(": ").append(text);
  }

  static bool hasReference(std::string_view text) {
    for (std::size_t at = text.find('&'); at != std::string_view::npos;
         at = text.find('&', at + 1)) {
      const std::size_t end = text.find_first_not_of(
          "#0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", at + 1);
      if (end != std::string_view::npos && text[end] == ';' && end > at + 1) {
        return true;
      }
    }
    return false;
  }

  void judgeNames(const pugi::xml_document& document) {
    for (const pugi::xml_node top : document.children()) {
      if (strcasecmp(top.name(), request_.root) != 0) {
        continue;
      }
      if (request_.entry == nullptr) {
        judgeNamesIn(top);
        return;
      }
      for (const pugi::xml_node entry : top.children()) {
        if (strcasecmp(entry.name(), request_.entry) == 0 && !elements_.empty()) {
          judgeNamesIn(entry);
        }
      }
      return;
    }
  }

  /// A name that is one letter "s" away from one that is read is a mistake; another may be meant
  /// for somebody else.
  void judgeNamesIn(const pugi::xml_node result) {
    for (const pugi::xml_node child : result.children()) {
      const std::string name = child.name();
      const auto isRead = [&name](const std::string& known) {
        return strcasecmp(known.c_str(), name.c_str()) == 0;
      };
      bool known = child.type() != pugi::node_element;
      std::string meant;
      const bool isTitle = request_.media.printing == libquilp::Printing::kRecords;
      const bool isTitleSearch = isTitle && request_.entry != nullptr;
      known = known || (isTitle && isRead("imdb"));
      known =
          known || (isTitleSearch && std::any_of(std::begin(libquilp::kMatchingElements),
                                                 std::end(libquilp::kMatchingElements), isRead));
      for (const Element& element : elements_) {
        known = known || isRead(element.name);
        if (isRead(std::string(element.name) + "s") ||
            strcasecmp(element.name, (name + "s").c_str()) == 0) {
          meant = element.name;
        }
      }
      if (known || !seen_.insert(name).second) {
        continue;
      }
      if (meant.empty()) {
        unknown_.push_back(name + " is not read");
      } else {
        mistaken_.push_back((name + " is not read, but ").append(meant));
      }
    }
  }

  void tell() {
    report_.judge(clause::kFields, fields_);
    report_.judge(request_.plainText ? clause::kText : clause::kCData, form_);
    if (request_.plainText) {
      report_.judge(clause::kNumbers, numbers_);
      report_.judge(clause::kRepeated, several_);
    } else {
      report_.advise(clause::kRepeated, several_);
      report_.advise(clause::kEntities, entities_);
      report_.advise(clause::kAddresses, addresses_);
    }
    report_.judge(clause::kOnce, once_);
    if (mistaken_.empty()) {
      report_.advise(clause::kNames, unknown_);
    } else {
      report_.judge(clause::kNames, mistaken_);
    }
    const bool cast = std::any_of(elements_.begin(), elements_.end(), [](const Element& element) {
      return element.kind == Kind::kCast;
    });
    if (cast && roles_.empty()) {
      report_.advise(clause::kRoles, roleAdvice_);
    } else if (cast) {
      report_.judge(clause::kRoles, roles_);
    }
    report_.advise(clause::kBlanks, blanks_);
  }

  const Request& request_;
  const std::vector<Element> elements_;
  Report& report_;
  std::string where_;
  int number_ = 0;
  std::set<std::string> seen_;
  Faults fields_, form_, numbers_, several_, once_, mistaken_, unknown_, roles_, roleAdvice_,
      entities_, addresses_, blanks_;
};

}  // namespace

void judgeContents(const Request& request, const Document& document, const char* path,
                   Report& report) {
  Judge(request, report).judge(document, path);
}

}  // namespace quilp
