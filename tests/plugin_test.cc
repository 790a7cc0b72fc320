#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "plugin/add_on_call.h"
#include "plugin/page_fetch.h"
#include "plugin/run_program.h"
#include "support.h"
#include "xml/xml_node.h"

namespace libquilp {
namespace {

using std::string;
using test::writeFile;
using test::writeScript;

const char kRegistry[] = "/etc/config/zorp.conf";

class Plugin : public testing::Test {
 protected:
  void TearDown() override {
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

 private:
  test::Holdings before_ = test::Holdings::now();
};
using Registry = Plugin;
using Runner = Plugin;
using Shell = Plugin;
using Fetch = Plugin;

string found(const char* type, bool ownClassOnly) {
  const auto addOn = findAddOn(type, ownClassOnly, Context());
  return addOn ? addOn->program : "none";
}

string byClass(const char* type) { return found(type, true); }
string byType(const char* type) { return found(type, false); }

TEST_F(Registry, WithoutAReadableFileThereIsNone) {
  const auto lookup = [] { EXPECT_EQ(byClass("Movie"), "none"); };
  const string message = "iniparser_load(/etc/config/zorp.conf) failed!\n";
  EXPECT_EQ(test::standardErrorOf(lookup), message);
  writeFile(kRegistry, "[a\nType\n===\n");
  EXPECT_THAT(test::standardErrorOf(lookup), testing::EndsWith(message));
  for (const string empty : {"", "# nothing\n", "Type=Movie\n"}) {
    writeFile(kRegistry, empty);
    EXPECT_EQ(test::standardErrorOf(lookup), "") << empty;
  }
}

TEST_F(Registry, TheFirstEnabledSectionOfTheTypeServes) {
  writeFile(kRegistry,
            "[disabled]\nClass=Kestrawind\nType=Movie\nEnable=true\nShell=/disabled\n"
            "[off]\nClass=Kestrawind\nType=Movie\nShell=/off\n"
            "[foreign]\nClass=Other\nType=Movie\nEnable=TRUE\nShell=/foreign\nName=F\n"
            "[classless]\nType=TV\nEnable=TRUE\nShell=/classless\n"
            "[own]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/own\n"
            "[second]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/second\n"
            "[empty]\nClass=Kestrawind\nType=KTV\nEnable=TRUE\n"
            "[later]\nClass=Kestrawind\nType=KTV\nEnable=TRUE\nShell=/later\n");
  EXPECT_EQ(byClass("Movie"), "/own");
  EXPECT_EQ(byType("Movie"), "/foreign");
  EXPECT_EQ(byClass("TV"), "none");
  EXPECT_EQ(byType("TV"), "/classless");
  EXPECT_EQ(byClass("movie"), "none");
  EXPECT_EQ(byClass("KTV"), "");
}

TEST_F(Registry, LongNamesAndCommandsStayInTheirBuffers) {
  // The cut key of the first section is a name that stands there without a value.
  const string name(79, 'n');
  writeFile(kRegistry, "[" + name + "]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/long\n[" +
                           name + "more]\nEnable=TRUE\n[ok]\nClass=Kestrawind\nType=Movie\n" +
                           "Enable=TRUE\nShell=" + string(900, 's') + "\n");
  EXPECT_EQ(byClass("Movie"), string(900, 's'));
}

ProgramEnd run(std::vector<string> arguments) {
  std::vector<char*> argv;
  for (string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  return runProgram(argv.data());
}

int exec(const std::vector<string>& arguments) { return run(arguments).reported(); }

TEST_F(Runner, GivesTheExitStatus) {
  EXPECT_EQ(exec({"/bin/sh", "-c", "exit 3"}), 3);
  EXPECT_EQ(exec({"sh", "-c", "exit 255"}), 255);
  EXPECT_EQ(exec({"sh", "-c", "kill -KILL $$"}), 1);
  EXPECT_EQ(exec({"sh", "-c", "test \"$1\" = \"a 'b' $2\" -a -z \"$3\"", "x", "a 'b' \xFF\n",
                  "\xFF\n", ""}),
            0);
}

TEST_F(Runner, ASignalThatInterruptsTheWaitLeavesNoChild) {
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  ualarm(100000, 0);
  const ProgramEnd end = run({"sh", "-c", "sleep 1; exit 3"});
  EXPECT_EQ(end.reported(), 0);
  EXPECT_EQ(end.exitStatus(), 3);
}

TEST_F(Runner, HidesTheProgramsOutput) {
  EXPECT_EQ(test::standardOutputOf([] {
              exec({"sh", "-c", "echo out; ls -l /proc/$$/fd >&2"});
            }),
            "");
  EXPECT_EQ(test::standardErrorOf([] { exec({"sh", "-c", "echo err >&2"}); }), "");
}

TEST_F(Shell, GetsItsArgumentsAndLeavesNoFile) {
  const string shell = writeScript("/etc/config/shell",
                                   "printf '[%s]' \"$@\" >/etc/config/arguments\n"
                                   "eval \"file=\\${$#}\"\n"
                                   "printf '<movie><id>x</id></movie>' >\"$file\"\n");
  string file;
  {
    const AddOnCall call({"section", shell}, {"verb", "-i", ""}, Context());
    EXPECT_EQ(call.end().reported(), 0);
    file = call.file();
    EXPECT_EQ(test::readFile("/etc/config/arguments"), "[verb][-i][][-o][" + file + "]");
    EXPECT_THAT(file, testing::MatchesRegex("/tmp/libquilp\\.[A-Za-z0-9]{6}"));
    EXPECT_EQ(test::readFile(file), "<movie><id>x</id></movie>");
  }
  EXPECT_NE(access(file.c_str(), F_OK), 0);
}

TEST_F(Shell, OneThatCannotBeExecutedIsNotStarted) {
  writeFile("/etc/config/plain", "#!/bin/sh\nexit 7\n");
  for (const char* command :
       {"", "/etc/config/none", "/etc/config/plain", "/etc", "no-such-program"}) {
    EXPECT_FALSE(run({command}).started()) << command;
    EXPECT_EQ(exec({command}), 0) << command;
  }
#ifndef __arm__  // the emulator of the tests does not tell what became of an exec
  writeScript("/etc/config/orphan", "");
  writeFile("/etc/config/orphan", "#!/no/such/interpreter\n");
  EXPECT_FALSE(run({"/etc/config/orphan"}).started());
  // The system's shell runs a script that names no interpreter.
  writeScript("/etc/config/script", "");
  writeFile("/etc/config/script", "test \"$1\" = \"a b\" && exit 5\n");
  EXPECT_EQ(exec({"/etc/config/script", "a b"}), 5);
#endif
}

TEST_F(Shell, ABareNameIsSearchedAlongThePath) {
  const string path = std::getenv("PATH");
  mkdir("/etc/config/bin", 0755);
  writeScript("/etc/config/bin/addon", "exit 5\n");
  EXPECT_EQ(exec({"addon"}), 0);
  ASSERT_EQ(chdir("/etc/config/bin"), 0);  // an empty folder in the path is this one
  for (const string& folders :
       {string("/none:/etc/config/bin"), "/etc/config/bin:" + path, string("/none:")}) {
    setenv("PATH", folders.c_str(), 1);
    EXPECT_EQ(exec({"addon"}), 5) << folders;
  }
  setenv("PATH", path.c_str(), 1);
}

TEST(Prefix, IsDroppedBlindlyButNotBeyondTheEnd) {
  EXPECT_STREQ(withoutPrefix("abcdeid"), "id");
  EXPECT_STREQ(withoutPrefix("abcde"), "");
  EXPECT_STREQ(withoutPrefix("abcd"), "");
  EXPECT_STREQ(withoutPrefix(nullptr), "");
}

TEST(Copy, LosesNothingButWhatFollowsAZeroByteInALine) {
  const string text = string(3000, 'x') + "\n\xFF no line end";
  writeFile("/etc/config/file", text);
  EXPECT_EQ(readCopied("/etc/config/file"), text);
  writeFile("/etc/config/file", string("a\0b\nc", 5));
  EXPECT_EQ(readCopied("/etc/config/file"), "ac");
  EXPECT_FALSE(readCopied("/etc/config/none"));
}

PageFile page = {"/var/tmp/test.xxx", {}};

TEST_F(Fetch, ToAFileThatIsRemovedBefore) {
  writeFile("/etc/config/kept", "kept");
  ASSERT_EQ(symlink("/etc/config/kept", page.path), 0);
  const FilePage fetched = fetchToFile("https://www.imdb.com/title/tt9000001/?x", page, Context());
  EXPECT_EQ(fetched.status, 0);
  EXPECT_THAT(fetched.text.value_or(""), testing::HasSubstr("The Paper Lighthouse"));
  EXPECT_EQ(test::readFile(page.path), fetched.text);
  EXPECT_EQ(test::readFile("/etc/config/kept"), "kept");

  EXPECT_EQ(fetchToFile("nothing://here", page, Context()).status,
            1);  // an unknown protocol, for curl
  EXPECT_NE(access(page.path, F_OK), 0);
}

TEST_F(Fetch, AQuoteRunsNothing) {
  test::newSiteRequests();
  const string address = "https://www.imdb.com/'; echo x >/etc/config/ran; '";
  EXPECT_NE(fetchToFile(address, page, Context()).status, 0);
  EXPECT_FALSE(fetchThroughPipe(address, Context()));
  EXPECT_NE(access("/etc/config/ran", F_OK), 0);
  EXPECT_THAT(test::newSiteRequests(), testing::IsEmpty());
}

TEST_F(Fetch, BracketsMakeOneRequest) {
  test::newSiteRequests();
  EXPECT_TRUE(fetchThroughPipe("https://www.imdb.com/title/tt900000[1-3]/{a,b}", Context()));
  fetchToFile("https://www.imdb.com/title/tt900000[1-3]/", page, Context());
  EXPECT_THAT(test::newSiteRequests(), testing::SizeIs(2));
}

class Fetches : public Observer {
 public:
  void pageFetched(const libquilp::Fetch& fetch) override { all.push_back(fetch); }
  std::vector<libquilp::Fetch> all;
};

TEST_F(Fetch, TheObserverIsToldOfEach) {
  Fetches told;
  const Context context = {&told};
  const string address = "https://www.imdb.com/";
  const auto piped = fetchThroughPipe(address + "title/tt9000001/?x", context);
  fetchToFile(address + "find?q=fault403", page, context);
  fetchToFile("nothing://here", page, context);
  ASSERT_EQ(told.all.size(), 3U);
  EXPECT_EQ(told.all[0].address, address + "title/tt9000001/?x");
  EXPECT_EQ(told.all[0].http, 200);
  EXPECT_EQ(told.all[0].bytes, static_cast<long>(piped->size()));
  EXPECT_EQ(told.all[2].http, 0);
  EXPECT_EQ(told.all[2].exit, 1);
}

}  // namespace
}  // namespace libquilp
