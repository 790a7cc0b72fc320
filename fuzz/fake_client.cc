#include "fake_client.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <vector>

#include "fuzz.h"
#include "platform.h"

namespace fuzz {
namespace {

using namespace libquilp;

Site currentSite;

/// Splits a command like a shell, as far as the library relies on it: words, single quotes, "\'",
/// and ";" and ">" as separate words.
std::vector<std::string> shellWords(const std::string& command) {
  std::vector<std::string> words(1);
  bool quoted = false;
  for (std::size_t i = 0; i < command.size(); ++i) {
    const char c = command[i];
    if (c == '\'') {
      quoted = !quoted;
    } else if (quoted) {
      words.back() += c;
    } else if (c == '\\') {
      words.back() += command[++i];
    } else if (c == ' ') {
      words.emplace_back();
    } else if (c == ';') {
      words.insert(words.end(), {";", ""});
    } else {
      expect(std::isalnum(static_cast<unsigned char>(c)) || std::strchr("/._-:>&", c) != nullptr,
             "a character of a command is not quoted");
      words.back() += c;
    }
  }
  expect(!quoted, "a quote of a command is not closed");
  return words;
}

bool isOneOf(const std::string& word, std::initializer_list<const char*> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool isAddress(const std::string& word) {
  for (const std::string base :
       {IMDB_MAIN_BASE, IMDB_AKAS_BASE, MUSICBRAINZ_WS_BASE, FANART_WS_BASE}) {
    if (word.compare(0, base.size() + 1, base + "/") == 0) {
      return true;
    }
  }
  return false;
}

struct Request {
  std::string address;
  std::string output;
  std::string headers;
};

Request requestIn(const std::string& command) {
  std::vector<std::string> words = shellWords(command);
  if (words[0] == "rm") {
    expect(words.size() > 4 && words[1] == "-f" && words[2].compare(0, 9, "/var/tmp/") == 0 &&
               words[3] == ";",
           "a command removes something else");
    words.erase(words.begin(), words.begin() + 4);
  }
  expect(words[0] == kHttpClient, "a command runs something else");
  Request request;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (isOneOf(words[i], {"-o", "-D"})) {
      expect(i + 1 < words.size(), "an option of curl has no value");
      (words[i] == "-o" ? request.output : request.headers) = words[i + 1];
      ++i;
    } else if (isOneOf(words[i], {"-A", "--connect-timeout", "--max-time"})) {
      ++i;
    } else if (!isOneOf(words[i], {"-g", "-s", "-L", ">/dev/null", "2>&1"})) {
      expect(request.address.empty() && isAddress(words[i]),
             "curl gets an argument that is not an address");
      request.address = words[i];
    }
  }
  return request;
}

void write(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace

FakeClient::FakeClient(Site site) { currentSite = std::move(site); }
FakeClient::~FakeClient() { currentSite = nullptr; }

}  // namespace fuzz

extern "C" {

int system(const char* command) {
  if (!fuzz::currentSite) {  // the fuzzer's own
    return reinterpret_cast<int (*)(const char*)>(dlsym(RTLD_NEXT, "system"))(command);
  }
  const fuzz::Request request = fuzz::requestIn(command);
  if (!request.headers.empty()) {
    fuzz::write(request.headers, "HTTP/1.1 200 OK\r\n\r\n");
  }
  fuzz::write(request.output, fuzz::currentSite(request.address));
  return 0;
}

std::FILE* popen(const char* command, const char*) {
  const std::string_view page = fuzz::currentSite(fuzz::requestIn(command).address);
  return fmemopen(const_cast<char*>(page.data()), page.size(), "r");
}

int pclose(std::FILE* pipe) { return std::fclose(pipe); }
}
