#include "explain/transfer_lines.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "platform.h"

namespace quilp {
namespace {

constexpr std::string_view kMark = "quilp-transfer\t";

bool startsWith(const std::string& line, std::string_view start) {
  return line.size() >= start.size() && strncasecmp(line.data(), start.data(), start.size()) == 0;
}

/// The number that the text starts with; 0 when there is none.
long numberIn(const std::string& text) { return std::strtol(text.c_str(), nullptr, 10); }

/// The word behind the first blank.
std::string secondWord(const std::string& line) {
  const std::size_t start = std::min(line.find(' '), line.size() - 1) + 1;
  return line.substr(start, line.find(' ', start) - start);
}

/// The service's address up to its host, which the account does not name in full.
std::string baseOf(const std::string& host) {
  for (const std::string base : {libquilp::MUSICBRAINZ_WS_BASE, libquilp::FANART_WS_BASE}) {
    const std::size_t start = base.find("://") + 3;
    const std::size_t end = base.find('/', start);
    if (base.substr(start, end - start) == host) {
      return base.substr(0, end);
    }
  }
  return host;
}

}  // namespace

std::vector<Transfer> transfersOfLines(const std::string& text, std::string& others) {
  std::vector<Transfer> transfers;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!startsWith(line, kMark)) {
      others += line.empty() ? "" : line + '\n';
      continue;
    }
    std::istringstream fields(line.substr(kMark.size()));
    std::string exit;
    std::string http;
    std::string bytes;
    Transfer transfer;
    std::getline(fields, exit, '\t');
    std::getline(fields, http, '\t');
    std::getline(fields, bytes, '\t');
    std::getline(fields, transfer.address, '\t');
    std::getline(fields, transfer.error);
    transfer.exit = static_cast<int>(numberIn(exit));
    transfer.http = static_cast<int>(numberIn(http));
    transfer.bytes = numberIn(bytes);
    transfers.push_back(transfer);
  }
  return transfers;
}

// > GET /PATH HTTP/1.1
// > Host: HOST
// < HTTP/1.1 200 OK
// < Content-Length: 17
// curl: (18) MESSAGE
std::vector<Transfer> transfersOfAccount(const std::string& text) {
  std::vector<Transfer> transfers;
  std::istringstream lines(text);
  bool open = false;  // the last transfer may go on
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    if (startsWith(line, "> GET ")) {
      Transfer transfer;
      transfer.address = secondWord(line.substr(2));
      transfers.push_back(transfer);
      open = true;
    } else if (startsWith(line, "curl: (")) {
      if (!open) {
        transfers.emplace_back();
      }
      transfers.back().exit = static_cast<int>(numberIn(line.substr(7)));
      transfers.back().error = line.substr(std::min(line.find(") "), line.size() - 2) + 2);
      open = false;
    } else if (open && startsWith(line, "> Host: ")) {
      transfers.back().address.insert(0, baseOf(secondWord(line.substr(2))));
    } else if (open && startsWith(line, "< HTTP/")) {
      transfers.back().http = static_cast<int>(numberIn(secondWord(line.substr(2))));
    } else if (open && startsWith(line, "< Content-Length: ")) {
      transfers.back().bytes = numberIn(secondWord(line.substr(2)));
    }
  }
  return transfers;
}

}  // namespace quilp
