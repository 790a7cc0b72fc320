#include "record/drift.h"

#include <json/reader.h>
#include <json/value.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>

#include "ascii.h"

namespace quilp {
namespace {

using Fields = std::map<std::vector<std::string>, std::string>;

constexpr std::size_t kLongest = 60;

/// "title", "result 2 title", "actor 1 name"; an array's elements are counted from 1.
void addFields(const Json::Value& value, std::vector<std::string>& path, Fields& fields) {
  if (value.isArray() || value.isObject()) {
    for (auto it = value.begin(); it != value.end(); ++it) {
      std::string step = value.isObject() ? it.name() : std::to_string(it.index() + 1);
      path.push_back(std::move(step));
      addFields(*it, path, fields);
      path.pop_back();
    }
  } else if (!value.isNull() && !value.asString().empty()) {
    fields[path] = value.asString();
  }
}

Fields fieldsOf(const std::string& json) {
  Json::Value value;
  Fields fields;
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  if (reader->parse(json.data(), json.data() + json.size(), &value, nullptr)) {
    std::vector<std::string> path;
    addFields(value, path, fields);
  }
  return fields;
}

std::string nameOf(const std::vector<std::string>& path) {
  const bool isRow =
      !path.empty() && libquilp::isDigit(static_cast<unsigned char>(path.front()[0]));
  std::string name = isRow ? "result" : "";
  for (const std::string& step : path) {
    name += (name.empty() ? "" : " ") + step;
  }
  return "field " + name + ": ";
}

std::string quoted(const std::string& value) {
  return '"' + (value.size() > kLongest ? value.substr(0, kLongest) + "..." : value) + '"';
}

void compareFields(const Fields& before, const Fields& now, std::vector<std::string>& drift) {
  for (const auto& [path, value] : before) {
    const auto found = now.find(path);
    if (found == now.end()) {
      drift.push_back(nameOf(path) + "vanished, was " + quoted(value));
    } else if (found->second != value) {
      drift.push_back(nameOf(path) + "changed from " + quoted(value) + " to " +
                      quoted(found->second));
    }
  }
  for (const auto& [path, value] : now) {
    if (before.count(path) == 0) {
      drift.push_back(nameOf(path) + "came, is " + quoted(value));
    }
  }
}

/// The status of the last answer; the ones before it redirect.
std::string httpStatus(const Exchange& exchange) {
  const std::string headers = '\n' + exchange.headers.value_or("");
  const std::size_t line = headers.rfind("\nHTTP/");
  const std::size_t space = line == std::string::npos ? line : headers.find(' ', line);
  return space == std::string::npos ? "no HTTP status" : "HTTP " + headers.substr(space + 1, 3);
}

std::string outcomeOfFetch(const Exchange& exchange) {
  return httpStatus(exchange) +
         (exchange.status != 0 ? ", curl's exit status " + std::to_string(exchange.status) : "");
}

std::string outcomeOfAddOn(const Exchange& exchange) {
  if (exchange.error != 0) {
    return std::string("cannot be started: ") + std::strerror(exchange.error);
  }
  if (WIFSIGNALED(exchange.status)) {
    return "ended by signal " + std::to_string(WTERMSIG(exchange.status));
  }
  return "exit status " + std::to_string(WEXITSTATUS(exchange.status)) +
         (exchange.answer ? "" : ", no document");
}

void compare(const char* kind, const std::vector<Exchange>& before, std::vector<Exchange> now,
             std::string (*outcome)(const Exchange&), std::vector<std::string>& drift) {
  const auto nameOf = [kind](const Exchange& exchange) {
    std::string name = kind;
    for (const std::string& word : exchange.question) {
      name += ' ' + word;
    }
    return name + ": ";
  };
  for (const Exchange& old : before) {
    const auto found = std::find_if(now.begin(), now.end(), [&old](const Exchange& exchange) {
      return exchange.question == old.question;
    });
    if (found == now.end()) {
      drift.push_back(nameOf(old) + "not asked any more");
      continue;
    }
    if (outcome(old) != outcome(*found)) {
      drift.push_back(nameOf(old) + outcome(old) + ", now " + outcome(*found));
    }
    now.erase(found);
  }
  for (const Exchange& exchange : now) {
    drift.push_back(nameOf(exchange) + "asked now");
  }
}

void compareMarkers(const std::map<std::string, bool>& before,
                    const std::map<std::string, bool>& now, std::vector<std::string>& drift) {
  for (const auto& [marker, found] : before) {
    const auto other = now.find(marker);  // none: no page that could have it
    if (other != now.end() && other->second != found) {
      drift.push_back("marker " + quoted(marker) + (found ? ": vanished" : ": came"));
    }
  }
}

}  // namespace

std::vector<std::string> driftOf(const Told& before, const Told& now) {
  std::vector<std::string> drift;
  compare("add-on", before.recording.addOns, now.recording.addOns, &outcomeOfAddOn, drift);
  compare("page", before.recording.fetches, now.recording.fetches, &outcomeOfFetch, drift);
  compareMarkers(before.recording.markers, now.recording.markers, drift);
  compareFields(fieldsOf(before.json), fieldsOf(now.json), drift);
  if (before.status != now.status) {
    drift.push_back("exit status: " + std::to_string(before.status) + ", now " +
                    std::to_string(now.status));
  }
  return drift;
}

}  // namespace quilp
