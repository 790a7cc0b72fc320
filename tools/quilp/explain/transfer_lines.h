#pragma once

#include <string>
#include <vector>

#include "explain/transfer_log.h"

// What the client writes, read.

namespace quilp {

/// The configuration for a line of each transfer.
inline constexpr char kTransferLine[] =
    "write-out = \"%{stderr}\\nquilp-transfer\\t%{exitcode}\\t%{http_code}\\t%{size_download}\\t"
    "%{url_effective}\\t%{errormsg}\\n\"\n";

/// Reads such lines; others are handed back as they are.
std::vector<Transfer> transfersOfLines(const std::string& text, std::string& others);

/// Reads the verbose account of transfers that were made one after the other.
std::vector<Transfer> transfersOfAccount(const std::string& text);

}  // namespace quilp
