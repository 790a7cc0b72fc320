#pragma once

#include <optional>
#include <string>
#include <vector>

#include "explain/transfer_log.h"
#include "plugin/registry.h"
#include "plugin/shell_call.h"

namespace quilp {

/// Why a search found nothing.
struct Reason {
  const char* code;  // for programs
  std::string text;
};

/// Why an add-on that cannot even be run, or failed, gave nothing; none when it ended well.
std::optional<Reason> reasonOfRun(const libquilp::RegistrySection& section, int status);

/// Why an add-on's document cannot be read; none when its root element is there.
std::optional<Reason> reasonOfDocument(const char* path, const char* root);

/// Why a find page that the client was to leave in a file gave nothing.
Reason reasonOfFindPage(const std::vector<Transfer>& transfers, const char* path);

/// Why a document of the music service gave no albums. Asks for the document once more.
Reason reasonOfService(const std::vector<Transfer>& transfers);

}  // namespace quilp
