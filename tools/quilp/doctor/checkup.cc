#include "doctor/checkup.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <optional>
#include <stdexcept>

#include "catalogue/store.h"
#include "kit/settings.h"
#include "platform.h"
#include "platform/lacking.h"
#include "platform/registry_file.h"
#include "platform/registry_view.h"
#include "platform/stock_add_ons.h"
#include "plugin/run_curl.h"
#include "text/ini_file.h"

namespace quilp {
namespace {

using libquilp::RegistrySection;
using Diagnoses = std::vector<Diagnosis>;
using State = Diagnosis::State;

constexpr int kOldDays = 60;  // the data sets are made anew each day

std::string folderOf(const std::string& file) { return file.substr(0, file.rfind('/')); }

// --- The registry and its add-ons

const char* adviceFor(const Media& media) {
  const std::string type = media.type;
  return type == "Music" ? "quilp addon enable musicbrainz"
         : type == "KTV" ? ""  // names are read without one
                         : "quilp addon enable catalogue";
}

void addMedia(const RegistryView& registry, const Media& media, Diagnoses& diagnoses) {
  const RegistrySection* section = registry.serving(media, Use::kRecords);
  if (section == nullptr) {
    const std::string advice = adviceFor(media);
    diagnoses.push_back({media.type, advice.empty() ? State::kOk : State::kWarning,
                         "no add-on is enabled: the built-in route answers",
                         advice.empty() ? "" : "\"" + advice + '"'});
    return;
  }
  const std::string defect = RegistryView::defect(*section);
  diagnoses.push_back(
      {media.type, defect.empty() ? State::kOk : State::kFault,
       '[' + section->name + "] " + (defect.empty() ? section->shell.value_or("") : defect),
       defect.empty() ? "" : "install it, or disable that section"});
}

void addRegistry(Diagnoses& diagnoses) {
  const RegistryView& registry = RegistryView::get();
  const std::string file = libquilp::kRegistryFile;
  if (registry.problem().empty()) {
    diagnoses.push_back({"registry", State::kOk, file});
  } else if (registry.isMissing()) {
    diagnoses.push_back({"registry", State::kWarning, file + " is missing",
                         "\"quilp addon enable NAME\" makes it"});
  } else {
    diagnoses.push_back({"registry", State::kFault, file + ' ' + registry.problem(),
                         "correct the file: no add-on is asked meanwhile"});
  }
  for (const Media& media : libquilp::kAllMedia) {
    addMedia(registry, media, diagnoses);
  }
}

bool isEnabled(const StockAddOn& addOn) {
  const auto& sections = RegistryView::get().sections();
  return std::any_of(sections.begin(), sections.end(), [&addOn](const RegistrySection& section) {
    return section.isEnabled() && isOf(addOn, section);
  });
}

void addStockAddOns(Diagnoses& diagnoses) {
  for (const StockAddOn& addOn : stockAddOns()) {
    const std::string lack = isEnabled(addOn) ? lackOf(addOn) : "";
    if (!lack.empty()) {
      diagnoses.push_back({addOn.name, State::kFault, "enabled, but cannot answer", lack});
    }
  }
}

// --- The settings

bool isKnownSection(const std::string& name) {
  static constexpr std::array<const char*, 5> kOthers = {"cache", "coverartarchive", "fanart",
                                                         "wikipedia", "catalogue"};
  return stockAddOn(name) != nullptr ||
         std::find(kOthers.begin(), kOthers.end(), name) != kOthers.end();
}

bool isKnownKey(const std::string& section, const std::string& key) {
  using Names = std::vector<std::string>;
  static const std::map<std::string, Names> kOwn = {{"catalogue", {"path", "base"}},
                                                    {"chain", {"movie", "tv", "music", "timeout"}},
                                                    {"cache", {"path", "size"}},
                                                    {"tmdb", {"poster_size", "still_size"}}};
  static const Names kOfServices = {"base",     "key",     "key_file",
                                    "language", "timeout", "certificates"};
  const auto has = [&key](const Names& names) {
    return std::find(names.begin(), names.end(), key) != names.end();
  };
  const auto own = kOwn.find(section);
  const bool isService = own == kOwn.end() || section == "tmdb";
  return (own != kOwn.end() && has(own->second)) || (isService && has(kOfServices));
}

bool isForAll(const std::string& file) {
  struct stat status {};
  return !file.empty() && stat(file.c_str(), &status) == 0 && (status.st_mode & S_IROTH) != 0;
}

void addSection(const libquilp::IniFile& file, const std::string& section, Diagnoses& diagnoses) {
  const auto warn = [&diagnoses](const std::string& finding, const char* advice) {
    diagnoses.push_back({"settings", State::kWarning, finding, advice});
  };
  const auto valueOf = [&](const char* key) {
    const char* value = file.value((section + ':' + key).c_str(), nullptr);
    return std::string(value != nullptr ? value : "");
  };
  const std::string name = '[' + section + ']';
  if (!isKnownSection(section)) {
    warn("nothing reads " + name, "quilp.conf(5) lists the sections");
  } else {
    for (const std::string& key : file.keys(section)) {
      if (!isKnownKey(section, key)) {
        std::string finding = "nothing reads ";
        warn(finding.append(key).append("= of ").append(name), "quilp.conf(5) lists the keys");
      }
    }
  }
  if (!valueOf("key").empty() && isForAll(kit::settingsFile())) {
    warn("every user can read the key of " + name, "move it to a file of its own: key_file=");
  }
  if (isForAll(valueOf("key_file"))) {
    warn("every user can read " + valueOf("key_file"),
         "let only those read it who run lookups: chmod 640, and chgrp");
  }
}

void addSettings(Diagnoses& diagnoses) {
  const std::string name = kit::settingsFile();
  if (access(name.c_str(), F_OK) != 0) {
    diagnoses.push_back({"settings", State::kOk, name + " is not there: all is as usual"});
    return;
  }
  const libquilp::IniFile file(name.c_str());
  if (!file.loaded()) {
    diagnoses.push_back({"settings", State::kFault, name + " cannot be read",
                         "correct the file, or its permissions"});
    return;
  }
  diagnoses.push_back({"settings", State::kOk, name});
  for (int i = 0; i < file.sections(); ++i) {
    addSection(file, file.section(i), diagnoses);
  }
}

// --- The catalogue

/// The days since a date such as 2026-11-24; none for another text.
std::optional<long> daysSince(const std::string& date) {
  std::tm day{};
  const char* end = strptime(date.c_str(), "%Y-%m-%d", &day);
  if (end == nullptr || *end != '\0') {
    return std::nullopt;
  }
  return static_cast<long>(std::difftime(std::time(nullptr), timegm(&day)) / 86400);
}

void addCatalogue(Diagnoses& diagnoses) {
  const std::string address = kit::catalogueFile();
  const bool isThere = address.front() != '/' || access(address.c_str(), F_OK) == 0;
  if (!isThere) {
    return;  // an add-on that needs it has told so
  }
  try {
    catalogue::Store store(address);
    const auto date = store.meta().find("date");
    const std::string day = date != store.meta().end() ? date->second : "";
    const bool isOld = daysSince(day).value_or(0) > kOldDays;
    diagnoses.push_back(
        {"catalogue", isOld ? State::kWarning : State::kOk,
         store.place() + ", " + std::to_string(store.tables().bytes() / 1000000) + " MB, of " + day,
         isOld ? "\"quilp catalogue fetch\" and \"quilp catalogue import\"" : ""});
  } catch (const std::exception& error) {
    diagnoses.push_back(
        {"catalogue", State::kFault, error.what(), "\"quilp catalogue import\" makes it anew"});
  }
}

// --- Cache, curl, folders

void addFolder(const char* subject, const std::string& folder, State otherwise,
               const std::string& why, Diagnoses& diagnoses) {
  if (access(folder.c_str(), W_OK | X_OK) == 0) {
    diagnoses.push_back({subject, State::kOk, folder});
  } else {
    diagnoses.push_back({subject, otherwise, folder + ": " + std::strerror(errno), why});
  }
}

void addCurl(Diagnoses& diagnoses) {
  const std::string path = libquilp::kHttpClient;
  const libquilp::CurlEnd end =
      libquilp::runCurl({"", path + " --version 2>/dev/null", "", ""}, nullptr);
  const std::string output = end.output.value_or("");
  if (end.status != 0 || output.empty()) {
    diagnoses.push_back({"curl", State::kWarning, path + " cannot be run",
                         "the built-in route needs it: install curl there"});
  } else if (output.find("https") == std::string::npos) {
    diagnoses.push_back({"curl", State::kWarning, path + " cannot fetch https",
                         "install one that can: the built-in route needs it"});
  } else {
    diagnoses.push_back({"curl", State::kOk, path + ", " + output.substr(0, output.find(' ', 5))});
  }
}

}  // namespace

std::vector<Diagnosis> checkUp() {
  Diagnoses diagnoses;
  addRegistry(diagnoses);
  addSettings(diagnoses);
  if (diagnoses.back().state != State::kFault) {  // what follows reads the settings
    addStockAddOns(diagnoses);
    addCatalogue(diagnoses);
    addFolder("cache", folderOf(kit::Settings().get("cache", "path", libquilp::kHttpCache)),
              State::kWarning, "make that folder: without it, every answer is asked for again",
              diagnoses);
  }
  addCurl(diagnoses);
  addFolder("documents", folderOf(libquilp::kTemporaryName), State::kFault,
            "add-ons write their documents there", diagnoses);
  addFolder("pages", folderOf(libquilp::kMovieSearchPage), State::kWarning,
            "the built-in route keeps its pages there", diagnoses);
  return diagnoses;
}

}  // namespace quilp
