// Runs an add-on for each line of standard input, which holds a year or nothing, and then
// arguments, between tabs. Prints of each run: microseconds less an empty process, peak memory in
// KB, microseconds that an empty process took more than its least just then, the answer's
// identifiers. The least of some runs counts, so that a busy machine hardly does.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Run {
  double microseconds = 0;
  long kilobytes = 0;
};

Run runOnce(std::vector<std::string>& words) {
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  const auto start = Clock::now();
  pid_t child = 0;
  if (posix_spawn(&child, argv[0], nullptr, nullptr, argv.data(), environ) != 0) {
    std::perror(argv[0]);
    std::exit(1);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  return {std::chrono::duration<double, std::micro>(Clock::now() - start).count(), usage.ru_maxrss};
}

Run leastOf(int runs, std::vector<std::string>& words) {
  Run least = runOnce(words);
  for (int i = 1; i < runs; ++i) {
    const Run run = runOnce(words);
    least = {std::min(least.microseconds, run.microseconds),
             std::max(least.kilobytes, run.kilobytes)};
  }
  return least;
}

std::string identifiers(const std::string& file) {
  std::ifstream in(file);
  const std::string text((std::istreambuf_iterator<char>(in)), {});
  std::string found;
  for (std::size_t at = 0; (at = text.find("<id>", at)) != std::string::npos;) {
    at = text.find("tt", at);
    const std::size_t end = at == std::string::npos ? at : text.find_first_of("]<", at);
    if (end == std::string::npos) {
      break;
    }
    found.append(found.empty() ? "" : " ").append(text, at, end - at);
  }
  return found;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) {
    return 0;  // the empty process
  }
  if (argc != 4) {
    std::fprintf(stderr, "usage: catalogue_measure PROGRAM ANSWER-FILE RUNS <REQUESTS\n");
    return 2;
  }
  const std::string file = argv[2];
  const int runs = static_cast<int>(std::strtol(argv[3], nullptr, 10));
  std::vector<std::string> nothing = {argv[0]};
  const Run empty = leastOf(300, nothing);
  for (std::string line; std::getline(std::cin, line);) {
    std::vector<std::string> words = {argv[1]};
    const std::size_t year = line.find('\t');
    setenv("QUILP_YEAR", line.substr(0, year).c_str(), 1);
    line.erase(0, year + 1);
    for (std::size_t start = 0; start <= line.size();) {
      const std::size_t end = std::min(line.find('\t', start), line.size());
      words.push_back(line.substr(start, end - start));
      start = end + 1;
    }
    words.insert(words.end(), {"-o", file});
    std::remove(file.c_str());
    const Run run = leastOf(runs, words);
    const Run noise = leastOf(runs, nothing);
    std::printf("%.0f\t%ld\t%.0f\t%s\n", run.microseconds - empty.microseconds, run.kilobytes,
                noise.microseconds - empty.microseconds, identifiers(file).c_str());
  }
  return 0;
}
