#include "explain/explanation.h"

#include <json/value.h>

#include <iostream>

#include "output/json_output.h"
#include "output/table.h"
#include "output/utf8.h"

namespace quilp {
namespace {

using libquilp::Fetch;

bool isGood(const Fetch& fetch) { return fetch.exit == 0 && fetch.http == 200; }

std::string hostOf(const Fetch& fetch) {
  const std::size_t start = fetch.address.find("://") + 3;
  return fetch.address.substr(start, fetch.address.find('/', start) - start);
}

std::string outcomeOf(const Fetch& fetch) {
  std::string text = fetch.http > 0 ? "HTTP " + std::to_string(fetch.http) + ", " : "";
  text += std::to_string(fetch.bytes) + " bytes";
  if (fetch.exit != 0) {
    text += ", curl's exit status " + std::to_string(fetch.exit) + ": " +
            libquilp::curlSentence(fetch.exit, hostOf(fetch));
  }
  return text;
}

/// The first one, and those that went wrong: a search fetches one or two more for each result.
void printFetches(const std::vector<Fetch>& fetches) {
  std::size_t others = 0;
  for (const Fetch& fetch : fetches) {
    if (&fetch != &fetches.front() && isGood(fetch)) {
      ++others;
      continue;
    }
    printLine("fetched", fetch.address);
    printLine("", outcomeOf(fetch));
  }
  if (others > 0) {
    printLine("", "and " + std::to_string(others) + " more, HTTP 200 each");
  }
}

std::string joined(const std::vector<std::string>& words) {
  std::string line;
  for (const std::string& word : words) {
    const bool plain = !word.empty() && word.find_first_of(" \t'\"") == std::string::npos;
    line += (line.empty() ? "" : " ") + (plain ? word : '"' + word + '"');
  }
  return line;
}

void printFields(const Explanation& explanation) {
  std::string filled;
  std::string missing;
  for (const FieldCount& field : explanation.fields) {
    const int lacking = explanation.rows - field.filled;
    const auto entry = [&field](const std::string& list, int n) {
      return (list.empty() ? "" : ", ") + field.name + ' ' + std::to_string(n);
    };
    filled += field.filled > 0 ? entry(filled, field.filled) : "";
    missing += lacking > 0 ? entry(missing, lacking) : "";
  }
  printLine("filled", filled);
  printLine("missing", missing);
}

bool printAsText(const Explanation& explanation) {
  if (explanation.keyword) {
    const std::string& words = explanation.keyword->words;
    printLine("title words", words.empty() ? "(none are left)" : words);
    printLine("in an address", explanation.keyword->encoded);
  }
  if (const auto& addOn = explanation.answer.addOn) {
    printLine("route", "the add-on of [" + addOn->section + ']');
    printLine("command", joined(explanation.command));
    printLine("status", explanation.addOnStatus ? std::to_string(*explanation.addOnStatus) : "");
  } else {
    printLine("route", "built-in: " + explanation.whyBuiltIn);
    printFetches(explanation.fetches);
  }
  printLine("rows", std::to_string(explanation.rows));
  printFields(explanation);
  printLine("reason", sentence(explanation.answer));
  return static_cast<bool>(std::cout.flush());
}

Json::Value jsonOf(const Fetch& fetch) {
  Json::Value value;
  value["address"] = jsonText(fetch.address);
  value["status"] = fetch.exit;
  value["http"] = fetch.http > 0 ? Json::Value(fetch.http) : Json::Value();
  value["bytes"] = static_cast<Json::Int64>(fetch.bytes);
  value["seconds"] = fetch.seconds;
  value["error"] =
      fetch.exit != 0 ? jsonText(libquilp::curlSentence(fetch.exit, hostOf(fetch))) : Json::Value();
  return value;
}

bool printAsJson(const Explanation& explanation) {
  Json::Value value;
  if (explanation.keyword) {
    value["words"] = jsonText(explanation.keyword->words);
    value["encoded"] = jsonText(explanation.keyword->encoded);
  }
  const libquilp::Answer& answer = explanation.answer;
  value["section"] = answer.addOn ? jsonText(answer.addOn->section) : Json::Value();
  if (answer.addOn) {
    for (const std::string& word : explanation.command) {
      value["command"].append(validUtf8(word));
    }
    value["status"] =
        explanation.addOnStatus ? Json::Value(*explanation.addOnStatus) : Json::Value();
  } else {
    value["builtIn"] = jsonText(explanation.whyBuiltIn);
    value["fetched"] = Json::Value(Json::arrayValue);
    for (const Fetch& fetch : explanation.fetches) {
      value["fetched"].append(jsonOf(fetch));
    }
  }
  value["rows"] = explanation.rows;
  for (const FieldCount& field : explanation.fields) {
    value["filled"][field.name] = field.filled;
  }
  if (answer.reason != libquilp::Reason::kOk) {
    value["reason"]["code"] = codeOf(answer);
    value["reason"]["text"] = jsonText(sentence(answer));
  } else {
    value["reason"] = Json::Value();
  }
  return printJson(value);
}

}  // namespace

bool print(const Explanation& explanation, Format format) {
  return format == Format::kJson ? printAsJson(explanation) : printAsText(explanation);
}

}  // namespace quilp
