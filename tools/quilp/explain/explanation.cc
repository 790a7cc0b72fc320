#include "explain/explanation.h"

#include <json/value.h>

#include <iostream>

#include "output/json_output.h"
#include "output/table.h"
#include "output/utf8.h"
#include "platform.h"

namespace quilp {
namespace {

bool isGood(const Transfer& transfer) { return transfer.exit == 0 && transfer.http == 200; }

std::string outcomeOf(const Transfer& transfer) {
  std::string text =
      transfer.http > 0 ? "HTTP " + std::to_string(transfer.http) : std::string("no answer");
  text += transfer.bytes >= 0 ? ", " + std::to_string(transfer.bytes) + " bytes" : "";
  if (transfer.exit != 0) {
    text += ", client's status " + std::to_string(transfer.exit);
    text += transfer.error.empty() ? "" : ": " + transfer.error;
  }
  return text;
}

/// The first one, and those that went wrong: a search fetches one or two more for each result.
void printTransfers(const std::vector<Transfer>& transfers) {
  if (transfers.empty()) {
    printLine("fetched", "unknown: the client was not heard");
    return;
  }
  std::size_t others = 0;
  for (const Transfer& transfer : transfers) {
    if (&transfer != &transfers.front() && isGood(transfer)) {
      ++others;
      continue;
    }
    printLine("fetched", transfer.address);
    printLine("", outcomeOf(transfer));
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
  if (explanation.section) {
    printLine("route", "the add-on of [" + *explanation.section + ']');
    printLine("command", joined(explanation.command));
    printLine("status", explanation.shellStatus ? std::to_string(*explanation.shellStatus) : "");
  } else {
    printLine("route", "built-in: " + explanation.whyBuiltIn);
    printTransfers(explanation.transfers);
  }
  printLine("rows", std::to_string(explanation.rows));
  printFields(explanation);
  printLine("reason", explanation.reason ? explanation.reason->text : "");
  return static_cast<bool>(std::cout.flush());
}

Json::Value jsonOf(const Transfer& transfer) {
  Json::Value value;
  value["address"] = jsonText(transfer.address);
  value["status"] = transfer.exit;
  value["http"] = transfer.http > 0 ? Json::Value(transfer.http) : Json::Value();
  value["bytes"] =
      transfer.bytes >= 0 ? Json::Value(static_cast<Json::Int64>(transfer.bytes)) : Json::Value();
  value["error"] = jsonText(transfer.error);
  return value;
}

bool printAsJson(const Explanation& explanation) {
  Json::Value value;
  if (explanation.keyword) {
    value["words"] = jsonText(explanation.keyword->words);
    value["encoded"] = jsonText(explanation.keyword->encoded);
  }
  value["section"] = jsonText(explanation.section.value_or(""));
  if (explanation.section) {
    for (const std::string& word : explanation.command) {
      value["command"].append(validUtf8(word));
    }
    value["status"] =
        explanation.shellStatus ? Json::Value(*explanation.shellStatus) : Json::Value();
  } else {
    value["builtIn"] = jsonText(explanation.whyBuiltIn);
    value["fetched"] = Json::Value(Json::arrayValue);
    for (const Transfer& transfer : explanation.transfers) {
      value["fetched"].append(jsonOf(transfer));
    }
  }
  value["rows"] = explanation.rows;
  for (const FieldCount& field : explanation.fields) {
    value["filled"][field.name] = field.filled;
  }
  if (explanation.reason) {
    value["reason"]["code"] = explanation.reason->code;
    value["reason"]["text"] = jsonText(explanation.reason->text);
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
