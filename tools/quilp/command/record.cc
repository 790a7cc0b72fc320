#include "command/record.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "command/commands.h"
#include "command/options.h"
#include "command/time_limit.h"
#include "output/exit_status.h"
#include "output/message.h"
#include "output/utf8.h"
#include "plugin/files.h"
#include "record/drift.h"
#include "record/tape.h"

namespace quilp {
namespace {

using Words = std::vector<std::string>;

std::string file;

/// Only these look up nothing but what they are given as words.
void requireLookup(const Words& words) {
  const std::vector<std::string> known = {"movie", "tv", "music", "karaoke"};
  if (words.empty() || std::find(known.begin(), known.end(), words.front()) == known.end()) {
    throw WrongUsage("only lookups can be recorded: movie, tv, music, karaoke");
  }
  for (const std::string& word : words) {
    if (word == "-" || word == "-0") {
      throw WrongUsage("what standard input lists is not recorded; name the files themselves");
    }
  }
}

void write(const std::string& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  if (!stream.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

int record(const std::string& path, const Words& words, RunWords run) {
  requireLookup(words);
  beginRecording(words);
  const int status = run(words);
  if (statusAfterLookup(0) != 0) {
    return status;  // half a lookup could not be repeated
  }
  const Recording recording = takeRecording();
  if (status != kWrongUsage || !recording.addOns.empty() || !recording.fetches.empty()) {
    write(path, recording.text());
  }
  return status;
}

int replay(const std::string& path, const Words& more, RunWords run) {
  Recording recording = readRecording(path);
  Words words = recording.words;
  requireLookup(words);
  words.insert(words.end(), more.begin(), more.end());
  beginReplay(std::move(recording));
  const int status = run(words);
  const std::string question = unanswered();
  if (question.empty()) {
    return status;
  }
  tell("the recording has no answer to " + question);
  return status != 0 ? status : kNothingFound;
}

struct Ended {
  std::string output;
  int status;
};

/// Runs the words in a child, so that nothing that a command keeps is left.
Ended capture(const Words& words, RunWords run, bool isQuiet) {
  const int output = memfd_create("quilp", MFD_CLOEXEC);
  const pid_t child = output >= 0 ? fork() : -1;
  if (child == 0) {
    dup2(output, STDOUT_FILENO);
    const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (isQuiet && null >= 0) {
      dup2(null, STDERR_FILENO);
    }
    const int status = run(words);
    std::cout.flush();
    std::fflush(stdout);
    _exit(status);
  }
  int status = 0;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const auto text = libquilp::readFile(("/proc/self/fd/" + std::to_string(output)).c_str());
  close(output);
  if (child < 0 || !text || !WIFEXITED(status)) {
    throw std::runtime_error("cannot run a lookup");
  }
  return {*text, WEXITSTATUS(status)};
}

int drift(RunWords run) {
  const int now = memfd_create("quilp", MFD_CLOEXEC);
  const std::string path = "/proc/self/fd/" + std::to_string(now);
  Words words = {"--replay", file, "--format", "json"};
  Told before{readRecording(file), {}, 0};
  const Ended old = capture(words, run, true);
  words = {"--record", path};
  words.insert(words.end(), before.recording.words.begin(), before.recording.words.end());
  words.insert(words.end(), {"--format", "json"});
  const Ended anew = capture(words, run, false);
  const Told after{readRecording(path), anew.output, anew.status};
  close(now);
  before.json = old.output;
  before.status = old.status;
  const Words lines = driftOf(before, after);
  for (const std::string& line : lines) {
    std::cout << lineText(line) << '\n';
  }
  if (!std::cout.flush()) {
    throw std::runtime_error("cannot write");
  }
  return lines.empty() ? 0 : kNothingFound;
}

/// A file that is no recording is told from a lookup that finds nothing.
template <class Run>
int orWrongUsage(Run run) {
  try {
    return run();
  } catch (const std::runtime_error& error) {
    if (dynamic_cast<const WrongUsage*>(&error) != nullptr) {
      throw;
    }
    tell(error.what());
    return kWrongUsage;
  }
}

}  // namespace

bool isRecordedRun(const Words& words) {
  return !words.empty() && (words.front() == "--record" || words.front() == "--replay");
}

int runRecorded(const Words& words, RunWords run) {
  const bool isReplay = words.front() == "--replay";
  if (words.size() < 2) {
    throw WrongUsage("the option \"" + words.front() + "\" needs a value");
  }
  const Words rest(words.begin() + 2, words.end());
  return orWrongUsage(
      [&] { return isReplay ? replay(words[1], rest, run) : record(words[1], rest, run); });
}

void addRecordOptions(Command& program) {
  const auto refuse = [](const std::string&) {
    throw WrongUsage("--record and --replay come first, right after \"quilp\"");
  };
  program.options.push_back(
      {0, "record", "FILE", "Keep all that the lookup of this command sees; first word", refuse});
  program.options.push_back(
      {0, "replay", "FILE", "Repeat what was recorded, without a network; first word", refuse});
}

void addDriftCommand(Command& program, RunWords run) {
  Command& command =
      program.add("drift", "Repeat what was recorded for real, and tell what became different");
  command.operands.push_back({"FILE", "A recording", toText(file)});
  command.run = [run] { return orWrongUsage([run] { return drift(run); }); };
}

}  // namespace quilp
