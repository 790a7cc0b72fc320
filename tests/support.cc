#include "support.h"

#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace test {
namespace {

std::size_t entries(const std::string& folder) {
  std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), &closedir);
  std::size_t n = 0;
  while (stream && readdir(stream.get()) != nullptr) {
    ++n;
  }
  return n;
}

std::size_t childProcesses() {
  std::istringstream list(readFile("/proc/self/task/" + std::to_string(getpid()) + "/children"));
  std::size_t n = 0;
  for (std::string pid; list >> pid;) {
    ++n;
  }
  return n;
}

std::string captured(int descriptor, const std::function<void()>& action) {
  std::fflush(nullptr);
  std::FILE* file = std::tmpfile();
  const int saved = dup(descriptor);
  if (file == nullptr || saved < 0) {
    throw std::runtime_error("cannot capture output");
  }
  dup2(fileno(file), descriptor);
  action();
  std::fflush(nullptr);
  dup2(saved, descriptor);
  close(saved);
  std::rewind(file);
  std::string text;
  char piece[4096];
  for (std::size_t size = 0; (size = std::fread(piece, 1, sizeof piece, file)) > 0;) {
    text.append(piece, size);
  }
  std::fclose(file);
  return text;
}

constexpr char kRegistry[] = "/etc/config/zorp.conf";

}  // namespace

void writeFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::trunc);
  file << text;
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

std::string readFile(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string writeScript(const std::string& path, const std::string& body) {
  std::remove(path.c_str());
  writeFile(path, "#!/bin/sh\n" + body);
  chmod(path.c_str(), 0755);
  return path;
}

void registerAddOn(const std::string& type, const std::string& shell) {
  writeFile(kRegistry,
            "[addon]\nClass=Kestrawind\nType=" + type + "\nEnable=TRUE\nShell=" + shell + "\n");
}

void removeRegistry() { std::remove(kRegistry); }

void answerWith(const std::string& type, const std::string& document, const std::string& more) {
  writeFile("/etc/config/document", document);
  registerAddOn(type, writeScript("/etc/config/addon",
                                  "printf '[%s]' \"$@\" >/etc/config/arguments\n"
                                  "for file; do :; done\ncat /etc/config/document >\"$file\"\n" +
                                      more));
}

std::string arguments() {
  const std::string all = readFile("/etc/config/arguments");
  return all.substr(0, all.find("[-o][/tmp/libquilp."));
}

std::string standardOutputOf(const std::function<void()>& action) {
  return captured(STDOUT_FILENO, action);
}

std::string standardErrorOf(const std::function<void()>& action) {
  return captured(STDERR_FILENO, action);
}

std::vector<std::string> newSiteRequests() {
  static std::streamoff seen = 0;
  std::ifstream log("/run/box/site.log");
  log.seekg(seen);
  std::vector<std::string> lines;
  for (std::string line; std::getline(log, line);) {
    seen += static_cast<std::streamoff>(line.size()) + 1;
    lines.push_back(line);
  }
  return lines;
}

long mostMemoryKiB() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return 0;
#endif
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

Curl::Curl(const std::string& body) {
  std::rename("/sbin/curl", "/sbin/real");
  writeScript("/sbin/curl", body);
}

Curl::~Curl() { std::rename("/sbin/real", "/sbin/curl"); }

Holdings Holdings::now() {
  // A sanitizer starts a thread of its own with the first one.
  static const bool warm = (std::thread([] {}).join(), true);
  static_cast<void>(warm);
  return {entries("/proc/self/fd"), entries("/proc/self/task"), childProcesses(), entries("/tmp")};
}

Holdings Holdings::after(const Holdings& before) {
  Holdings left = now();
  for (int i = 0; i < 200 && !(left == before); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    left = now();
    left.threads = std::max(left.threads, before.threads);  // one that was going, in `before`
  }
  return left;
}

bool Holdings::operator==(const Holdings& other) const {
  return descriptors == other.descriptors && threads == other.threads &&
         children == other.children && temporaryFiles == other.temporaryFiles;
}

std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
  return out << holdings.descriptors << " descriptors, " << holdings.threads << " threads, "
             << holdings.children << " children, " << holdings.temporaryFiles << " temporary files";
}

}  // namespace test
