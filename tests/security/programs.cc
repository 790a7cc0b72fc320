#include "programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "support.h"

namespace test {
namespace {

using std::string;
using Strings = std::vector<string>;

constexpr char kLog[] = "/etc/config/trace";

}  // namespace

std::vector<Program> programsStartedBy(const std::function<void()>& call) {
  std::remove(kLog);
  setenv("QUILP_TRACE", kLog, 1);
  setenv("LD_PRELOAD", QUILP_TRACER, 1);
  EXPECT_EQ(standardErrorOf(call).find("sh: "), string::npos);
  unsetenv("LD_PRELOAD");
  const string log = readFile(kLog);
  std::size_t at = 0;
  const auto next = [&] {
    const string text = log.c_str() + at;
    at += text.size() + 1;
    return text;
  };
  std::vector<Program> programs;
  while (at < log.size()) {
    Program program = {next(), {}};
    for (int n = std::stoi(next()); n > 0; --n) {
      program.arguments.push_back(next());
    }
    programs.push_back(program);
  }
  return programs;
}

Strings addressesFetchedBy(const std::function<void()>& call) {
  static const Strings known = {"-g", "-s",         "-L", "-A", "Mozilla/5.0", "--connect-timeout",
                                "15", "--max-time", "25", "-D", "-o"};
  Strings addresses;
  for (const Program& program : programsStartedBy(call)) {
    const Strings& arguments = program.arguments;
    if (program.file == "/usr/bin/dash") {
      EXPECT_THAT(arguments, testing::SizeIs(testing::Ge(3)));
      continue;
    }
    if (program.file == "/usr/bin/rm") {
      EXPECT_EQ(arguments.size(), 3U);
      continue;
    }
    EXPECT_EQ(program.file, QUILP_STAND_IN);
    EXPECT_EQ(arguments.at(0), "/sbin/curl");
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      const string& argument = arguments[i];
      if (std::count(known.begin(), known.end(), argument) == 0 &&
          argument.compare(0, 14, "/tmp/libquilp.") != 0 &&
          argument.compare(0, 9, "/var/tmp/") != 0) {
        addresses.push_back(argument);
      }
    }
  }
  return addresses;
}

}  // namespace test
