#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "plugin/exec_command.h"
#include "plugin/page_fetch.h"
#include "plugin/shell_call.h"
#include "support.h"

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

string found(ShellCall::Lookup lookup, const char* type) {
  char shell[kShellSize];
  std::memset(shell, '#', sizeof shell);
  const char* result = lookup(type, shell, sizeof shell);
  EXPECT_TRUE(result == nullptr || result == shell);
  return result == nullptr ? "none" : result;
}

string byClass(const char* type) { return found(GetFirstEnabledShellByClass, type); }
string byType(const char* type) { return found(GetFirstEnabledShellByType, type); }

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
  char small[9];
  std::memset(small, '#', sizeof small);
  EXPECT_EQ(GetFirstEnabledShellByType("Movie", small, 8), small);
  EXPECT_EQ(string(small, 9), "ssssssss#");
}

int exec(std::vector<string> arguments) {
  std::vector<char*> argv;
  for (string& argument : arguments) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  return ExecCommand(argv.data());
}

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
  EXPECT_EQ(exec({"sh", "-c", "sleep 1; exit 3"}), 0);
}

TEST_F(Runner, HidesTheProgramsOutput) {
  EXPECT_EQ(test::standardOutputOf([] {
              exec({"sh", "-c", "echo out; ls -l /proc/$$/fd >&2"});
            }),
            "");
  EXPECT_EQ(test::standardErrorOf([] { exec({"sh", "-c", "echo err >&2"}); }), "");
}

TEST_F(Shell, GetsItsArgumentsAndLeavesNoFile) {
  test::registerAddOn("Movie", writeScript("/etc/config/shell",
                                           "printf '[%s]' \"$@\" >/etc/config/arguments\n"
                                           "eval \"file=\\${$#}\"\n"
                                           "printf '<movie><id>x</id></movie>' >\"$file\"\n"));
  string file;
  {
    ShellCall shell("Movie");
    ASSERT_TRUE(shell.found());
    EXPECT_EQ(shell.run({"verb", "-i", "", "-n", Decimal(-2147483647 - 1)}), 0);
    file = shell.file();
    EXPECT_EQ(test::readFile("/etc/config/arguments"),
              "[verb][-i][][-n][-2147483648][-o][" + file + "]");
    EXPECT_THAT(file, testing::MatchesRegex("/tmp/libquilp\\.[A-Za-z0-9]{6}"));
    EXPECT_STREQ(shell.document("movie").getChildNode("id").getText(), "x");
    EXPECT_FALSE(shell.document("movielist"));
  }
  EXPECT_NE(access(file.c_str(), F_OK), 0);
}

TEST_F(Shell, OneThatCannotBeExecutedWroteNothing) {
  writeFile("/etc/config/plain", "#!/bin/sh\nexit 7\n");
  // The look before the call cannot see that this one's interpreter is gone: the child is forked.
  writeScript("/etc/config/orphan", "");
  writeFile("/etc/config/orphan", "#!/no/such/interpreter\n");
  const pid_t host = getpid();
  for (const char* command : {"", "/etc/config/none", "/etc/config/plain", "/etc",
                              "no-such-program", "/etc/config/orphan"}) {
    test::registerAddOn("Movie", command);
    ShellCall shell("Movie");
    EXPECT_EQ(shell.run({"verb"}), 0) << command;
    if (getpid() != host) {
      _exit(99);  // a second host
    }
    EXPECT_FALSE(shell.document("movie")) << command;
  }
}

TEST_F(Shell, ABareNameIsSearchedAlongThePath) {
  const string path = std::getenv("PATH");
  mkdir("/etc/config/bin", 0755);
  writeScript("/etc/config/bin/addon", "exit 5\n");
  test::registerAddOn("Movie", "addon");
  EXPECT_EQ(ShellCall("Movie").run({"verb"}), 0);
  ASSERT_EQ(chdir("/etc/config/bin"), 0);  // an empty folder in the path is this one
  for (const string& folders :
       {string("/none:/etc/config/bin"), "/etc/config/bin:" + path, string("/none:")}) {
    setenv("PATH", folders.c_str(), 1);
    EXPECT_EQ(ShellCall("Movie").run({"verb"}), 5) << folders;
  }
  setenv("PATH", path.c_str(), 1);
}

TEST(Prefix, IsDroppedBlindlyButNotBeyondTheEnd) {
  EXPECT_STREQ(withoutPrefix("abcdeid"), "id");
  EXPECT_STREQ(withoutPrefix("abcde"), "");
  EXPECT_STREQ(withoutPrefix("abcd"), "");
  EXPECT_STREQ(withoutPrefix(nullptr), "");
}

TEST(Print, CopiesAFileUnchanged) {
  const string text = string(3000, 'x') + "\n\xFF no line end";
  writeFile("/etc/config/file", text);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(PrintFile("/etc/config/file"), 0); }), text);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(PrintFile("/etc/config/none"), 1); }), "");
}

PageFile page = {"/var/tmp/test.xxx", {}};

TEST_F(Fetch, ToAFileThatIsRemovedBefore) {
  writeFile("/etc/config/kept", "kept");
  ASSERT_EQ(symlink("/etc/config/kept", page.path), 0);
  const FilePage fetched = fetchToFile("https://www.imdb.com/title/tt9000001/?x", page);
  EXPECT_EQ(fetched.status, 0);
  EXPECT_THAT(fetched.text.value_or(""), testing::HasSubstr("The Paper Lighthouse"));
  EXPECT_EQ(test::readFile(page.path), fetched.text);
  EXPECT_EQ(test::readFile("/etc/config/kept"), "kept");

  EXPECT_EQ(fetchToFile("nothing://here", page).status, 1);  // an unknown protocol, for curl
  EXPECT_NE(access(page.path, F_OK), 0);
}

TEST_F(Fetch, AQuoteRunsNothing) {
  test::newSiteRequests();
  const string address = "https://www.imdb.com/'; echo x >/etc/config/ran; '";
  EXPECT_NE(fetchToFile(address, page).status, 0);
  EXPECT_FALSE(fetchThroughPipe(address));
  EXPECT_FALSE(fetchLeavingPipe(address));
  EXPECT_NE(access("/etc/config/ran", F_OK), 0);
  EXPECT_THAT(test::newSiteRequests(), testing::IsEmpty());
}

TEST_F(Fetch, BracketsMakeOneRequest) {
  test::newSiteRequests();
  EXPECT_TRUE(fetchThroughPipe("https://www.imdb.com/title/tt900000[1-3]/{a,b}"));
  fetchToFile("https://www.imdb.com/title/tt900000[1-3]/", page);
  EXPECT_THAT(test::newSiteRequests(), testing::SizeIs(2));
}

TEST_F(Fetch, OfThePipesThatAreLeftBehindOneStaysUntilItIsCollected) {
  const auto before = test::Holdings::now();
  const char* address = "https://www.imdb.com/title/tt9000001/plotsummary";
  {
    const PipeCollector collector;
    for (int i = 0; i < 3; ++i) {
      EXPECT_THAT(fetchLeavingPipe(address).value_or(""), testing::HasSubstr("plotSummary"));
      EXPECT_EQ(test::Holdings::now().descriptors, before.descriptors + 1);
    }
  }
  EXPECT_EQ(test::Holdings::after(before), before);
}

}  // namespace
}  // namespace libquilp
