// The plain C interface, as a host uses it: through the built library.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "quilp.h"
#include "support.h"

namespace {

using std::string;
using Clock = std::chrono::steady_clock;

constexpr char kMovies[] =
    "<movielist><movie><id><![CDATA[tt01]]></id><title><![CDATA[A & <B>]]></title></movie>"
    "<movie><title><![CDATA[C]]></title><year><![CDATA[1999]]></year></movie></movielist>";
constexpr char kMovie[] =
    "<movie><title><![CDATA[A]]></title><genre><![CDATA[G]]></genre><genre><![CDATA[H]]></genre>"
    "<actor><name><![CDATA[N]]></name><role><![CDATA[R]]></role></actor></movie>";
// The add-ons would run for a minute. How soon a call really ends is measured, not tested: here
// other tests run at the same time.
constexpr auto kLate = std::chrono::seconds(5);

struct Free {
  void operator()(quilp_request* request) const { quilp_request_free(request); }
  void operator()(quilp_answer* answer) const { quilp_answer_free(answer); }
};
using Request = std::unique_ptr<quilp_request, Free>;
using Answer = std::unique_ptr<quilp_answer, Free>;

Request requestFor(quilp_lookup what, quilp_text which, const char* text, long deadline = 0) {
  Request request(quilp_request_new(what));
  EXPECT_EQ(quilp_request_set_text(request.get(), which, text), 0);
  EXPECT_EQ(quilp_request_set_number(request.get(), QUILP_DEADLINE, deadline), 0);
  return request;
}

Answer searchMovies(const char* keyword = "x", long deadline = 0) {
  return Answer(quilp_run(requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, keyword, deadline).get()));
}

long processesNamed(const string& name) {
  long n = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    try {
      n += test::readFile(entry.path() / "comm") == name ? 1 : 0;
    } catch (const std::ios_base::failure&) {
      // It ended meanwhile.
    }
  }
  return n;
}

/// What hanging add-ons start.
bool anySleeps() { return processesNamed("sleep\n") > 0; }

class Plain : public testing::Test {
 protected:
  void TearDown() override {
    EXPECT_EQ(test::Holdings::after(before_), before_);
    EXPECT_FALSE(anySleeps());
  }

 private:
  test::Holdings before_ = test::Holdings::now();
};

TEST_F(Plain, ValuesAreThoseOfTheDocument) {
  test::answerWith("Movie", kMovies,
                   "echo \"$QUILP_NAME,$QUILP_YEAR,$QUILP_LANGUAGE\" >/etc/config/asked\n");
  const Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "A.B 2010 720p");
  quilp_request_set_number(request.get(), QUILP_COUNT, 3);
  quilp_request_set_number(request.get(), QUILP_YEAR, 2010);
  quilp_request_set_text(request.get(), QUILP_LANGUAGE, "fr");
  Answer answer(quilp_run(request.get()));
  EXPECT_EQ(test::readFile("/etc/config/asked"), "A.B 2010 720p,2010,fr\n");
  EXPECT_EQ(test::arguments(), "[searchmovie][-t][A B][-n][3]");
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_OK);
  EXPECT_STREQ(quilp_answer_sentence(answer.get()), "");
  ASSERT_EQ(quilp_answer_count(answer.get()), 2u);
  EXPECT_STREQ(quilp_answer_text(answer.get(), 0, "title"), "A & <B>");
  EXPECT_STREQ(quilp_answer_text(answer.get(), 1, "year"), "1999");
  EXPECT_EQ(quilp_answer_text(answer.get(), 1, "id"), nullptr);
  EXPECT_EQ(quilp_answer_text(answer.get(), 2, "title"), nullptr);
  EXPECT_THAT(quilp_answer_json(answer.get()),
              testing::AllOf(testing::HasSubstr("{\"id\":\"tt01\",\"title\":\"A & <B>\"}"),
                             testing::HasSubstr("\"reason\":\"ok\"")));

  test::answerWith("Movie", kMovie);
  answer.reset(quilp_run(requestFor(QUILP_MOVIE_DETAILS, QUILP_ID, "tt0000001").get()));
  EXPECT_EQ(test::arguments(), "[getmovieinfobyid][-i][tt0000001]");
  EXPECT_EQ(quilp_answer_size(answer.get(), 0, "genre"), 2u);
  EXPECT_STREQ(quilp_answer_value(answer.get(), 0, "genre", 1), "H");
  EXPECT_STREQ(quilp_answer_value(answer.get(), 0, "actor", 0), "N");
  EXPECT_STREQ(quilp_answer_role(answer.get(), 0, 0), "R");
}

TEST_F(Plain, EveryEmptyAnswerHasAReason) {
  struct Case {
    const char* script;
    quilp_reason reason;
    long number;
  };
  for (const Case& each :
       {Case{"exit 3", QUILP_EXIT_STATUS, 3}, Case{"kill -9 $$", QUILP_SIGNAL, 9},
        Case{"exit 0", QUILP_MALFORMED_DOCUMENT, 0},
        Case{"for f; do :; done; echo '<movielist>' >\"$f\"", QUILP_MALFORMED_DOCUMENT, 0},
        Case{"for f; do :; done; echo '<movielist/>' >\"$f\"", QUILP_NOTHING_FOUND, 0}}) {
    test::writeScript("/etc/config/addon", string(each.script) + '\n');
    test::registerAddOn("Movie", "/etc/config/addon");
    const Answer answer = searchMovies();
    EXPECT_EQ(quilp_answer_reason(answer.get()), each.reason) << each.script;
    EXPECT_EQ(quilp_answer_number(answer.get()), each.number) << each.script;
    EXPECT_STRNE(quilp_answer_sentence(answer.get()), "") << each.script;
    EXPECT_STREQ(quilp_answer_add_on(answer.get()), "/etc/config/addon");
  }
  test::registerAddOn("Movie", "/etc/config/none");
  EXPECT_EQ(quilp_answer_reason(searchMovies().get()), QUILP_CANNOT_START);
  test::removeRegistry();
  const Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "x");
  quilp_request_set_number(request.get(), QUILP_ROUTE, QUILP_ADD_ON);
  EXPECT_EQ(quilp_answer_reason(Answer(quilp_run(request.get())).get()), QUILP_NO_ADD_ON);
  EXPECT_EQ(quilp_answer_reason(searchMovies("").get()), QUILP_WRONG_REQUEST);
  EXPECT_EQ(quilp_answer_reason(Answer(quilp_run(nullptr)).get()), QUILP_WRONG_REQUEST);
  EXPECT_EQ(quilp_request_set_number(request.get(), QUILP_COUNT, 0), -1);
  if (sizeof(long) > 4) {
    EXPECT_EQ(quilp_request_set_number(request.get(), QUILP_DEADLINE, LONG_MAX), -1);
  }
}

TEST_F(Plain, ADeadlineEndsAllThatAnAddOnStarted) {
  for (const char* script : {"sleep 60", "sleep 60 & sleep 60", "trap '' TERM INT; sleep 60",
                             "(sleep 60 &) & sleep 60"}) {
    test::writeScript("/etc/config/addon", string(script) + '\n');
    test::registerAddOn("Movie", "/etc/config/addon");
    const auto start = Clock::now();
    const Answer answer = searchMovies("x", 100);
    const auto took = Clock::now() - start;
    EXPECT_GE(took, std::chrono::milliseconds(100)) << script;
    EXPECT_LT(took, std::chrono::milliseconds(100) + kLate) << script;
    EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_TIMED_OUT) << script;
    EXPECT_FALSE(anySleeps()) << script;
  }
}

TEST_F(Plain, WhatWasFoundBeforeTheDeadlineIsGiven) {
  test::answerWith("Movie", kMovies, "sleep 60\n");
  const Answer answer = searchMovies("x", 200);
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_TIMED_OUT);
  EXPECT_EQ(quilp_answer_count(answer.get()), 2u);
}

TEST_F(Plain, ADocumentThatTakesTooLongIsLeft) {
  const auto cancelAtItsEnd = [](int movies) {
    string document = "<movielist>";
    for (int i = 0; i < movies; ++i) {
      document += "<movie><id><![CDATA[tt01]]></id><title><![CDATA[A]]></title></movie>\n";
    }
    test::answerWith("Movie", document + "</movielist>");
    const Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "x");
    quilp_request_set_observer(
        request.get(),
        [](void* user, quilp_event event, const char*, long) {
          if (event == QUILP_ADD_ON_ENDED) {
            quilp_request_cancel(static_cast<quilp_request*>(user));
          }
        },
        request.get());
    return Answer(quilp_run(request.get()));
  };
  const Answer small = cancelAtItsEnd(3);
  EXPECT_EQ(quilp_answer_reason(small.get()), QUILP_OK);
  EXPECT_EQ(quilp_answer_count(small.get()), 3u);
  const Answer large = cancelAtItsEnd(400000);
  EXPECT_EQ(quilp_answer_reason(large.get()), QUILP_CANCELLED);
  EXPECT_LT(quilp_answer_count(large.get()), 400000u);
}

TEST_F(Plain, AnotherThreadCancels) {
  test::writeScript("/etc/config/addon", ": >/etc/config/started\nsleep 60\n");
  test::registerAddOn("Movie", "/etc/config/addon");
  unlink("/etc/config/started");
  const Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "x");
  Clock::time_point cancelled;
  std::thread other([&] {
    while (access("/etc/config/started", F_OK) != 0) {
      std::this_thread::yield();
    }
    cancelled = Clock::now();
    quilp_request_cancel(request.get());
  });
  const Answer answer(quilp_run(request.get()));
  const auto end = Clock::now();
  other.join();
  EXPECT_LT(end - cancelled, kLate);
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_CANCELLED);
  EXPECT_EQ(quilp_answer_reason(Answer(quilp_run(request.get())).get()), QUILP_CANCELLED);
}

TEST_F(Plain, ASignalHandlerOfTheCallingThreadCancels) {
  static quilp_request* running;
  test::writeScript("/etc/config/addon", "sleep 60\n");
  test::registerAddOn("Movie", "/etc/config/addon");
  const Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "x");
  running = request.get();
  std::signal(SIGALRM, [](int) { quilp_request_cancel(running); });
  ualarm(100000, 0);
  const auto start = Clock::now();
  EXPECT_EQ(quilp_answer_reason(Answer(quilp_run(running)).get()), QUILP_CANCELLED);
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(100) + kLate);
  std::signal(SIGALRM, SIG_DFL);
}

TEST_F(Plain, AHostMayCollectAnyChildAndCloseItsStreams) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "a guard is a child under the thread sanitizer";
#endif
  test::answerWith("Movie", kMovies, "");
  const auto found = [] { return quilp_answer_count(searchMovies().get()); };
  std::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(found(), 2u);
  test::writeScript("/etc/config/addon", "exit 3\n");
  test::registerAddOn("Movie", "/etc/config/addon");
  EXPECT_EQ(quilp_answer_number(searchMovies().get()), 3);
  std::signal(SIGCHLD, SIG_DFL);
  std::atomic<bool> over{false};
  std::atomic<int> collected{0};
  std::thread collector([&] {
    while (!over) {
      collected += waitpid(-1, nullptr, WNOHANG) > 0 ? 1 : 0;
    }
  });
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(quilp_answer_number(searchMovies().get()), 3);
  }
  over = true;
  collector.join();
  EXPECT_EQ(collected, 0);

  test::answerWith("Movie", kMovies, "");
  const pid_t child = fork();
  if (child == 0) {
    for (const int descriptor : {0, 1, 2}) {
      close(descriptor);
    }
    _exit(found() == 2 && fcntl(0, F_GETFD) < 0 && fcntl(1, F_GETFD) < 0 ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

/// The number of processes that are, or guard for, a host.
long hosts() { return processesNamed(test::readFile("/proc/self/comm")); }

TEST_F(Plain, AKilledHostLeavesNoProcess) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "a fork can start no thread under the thread sanitizer";
#endif
  const test::Curl curl(
      "case $* in *-Z*) : >/etc/config/started; sleep 60;; esac\n"
      "exec /sbin/real \"$@\"\n");
  const long before = hosts();
  for (const char* script :
       {": >/etc/config/started; sleep 60", "sleep 60 & : >/etc/config/started; sleep 60", ""}) {
    unlink("/etc/config/started");
    test::removeRegistry();  // the built-in route, for the last one
    if (*script != '\0') {
      test::writeScript("/etc/config/addon", string(script) + '\n');
      test::registerAddOn("Movie", "/etc/config/addon");
    }
    const pid_t host = fork();
    if (host == 0) {
      setpgid(0, 0);
      searchMovies("everything");
      _exit(0);
    }
    while (access("/etc/config/started", F_OK) != 0) {
      std::this_thread::yield();
    }
    EXPECT_TRUE(hosts() > before + 1) << "no guard is seen";
    kill(-host, SIGKILL);
    int status = 0;
    EXPECT_EQ(waitpid(host, &status, 0), host);
    EXPECT_TRUE(WIFSIGNALED(status));
    const auto killed = Clock::now();
    while ((anySleeps() || hosts() > before) && Clock::now() - killed < kLate) {
      std::this_thread::yield();
    }
    EXPECT_FALSE(anySleeps()) << script;
    EXPECT_EQ(hosts(), before) << script;
  }
  test::removeRegistry();
}

TEST_F(Plain, AGuardHoldsNoDescriptorOfItsHost) {
  test::answerWith("Movie", kMovies, "ls -l /proc/$PPID/fd >/etc/config/open\n");
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_EQ(quilp_answer_count(searchMovies().get()), 2u);
  const string open = test::readFile("/etc/config/open");
  EXPECT_THAT(open, testing::HasSubstr("signalfd"));
  EXPECT_THAT(open, testing::Not(testing::HasSubstr("pipe:")));
  EXPECT_LE(std::count(open.begin(), open.end(), '\n'), 4) << open;
  close(ends[0]);
  close(ends[1]);
}

TEST_F(Plain, NamesAreReadWithoutAsking) {
  const auto read = [](const char* name, quilp_name_kind kind) {
    const Answer answer(quilp_read_name(name, kind));
    const string json = quilp_answer_json(answer.get());
    return json.substr(json.find("\"results\""));
  };
  EXPECT_EQ(read("/x/A Row/Season 2/A Row 2x01-02 {imdb-tt0000042} [1080p].mkv", QUILP_NAME_ANY),
            "\"results\":[{\"container\":\"mkv\",\"episode\":[\"1\",\"2\"],"
            "\"identifiers\":[\"imdb:tt0000042\"],\"kind\":\"episode\",\"resolution\":\"1080p\","
            "\"season\":\"2\",\"title\":\"A Row\"}],\"sentence\":\"\"}");
  EXPECT_EQ(read("Ann Lee - A Song.mkv", QUILP_NAME_SONG),
            "\"results\":[{\"artist\":[\"Ann Lee\"],\"container\":\"mkv\",\"kind\":\"song\","
            "\"title\":\"A Song\"}],\"sentence\":\"\"}");
  std::vector<std::thread> threads;
  for (int i = 0; i < 16; ++i) {
    threads.emplace_back([&read] {
      EXPECT_NE(read("Salt.2010.mkv", QUILP_NAME_MOVIE).find("\"year\":\"2010\""), string::npos);
      EXPECT_NE(read("\xff\x80", QUILP_NAME_ANY).find("\"kind\""), string::npos);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  const Answer wrong(quilp_read_name(nullptr, QUILP_NAME_ANY));
  EXPECT_EQ(quilp_answer_reason(wrong.get()), QUILP_WRONG_REQUEST);
}

/// A call of one of several kinds; every answer must have a reason that such a call can have.
bool isAnswered(unsigned kind, unsigned random) {
  if (kind == 0) {
    const Answer answer(quilp_read_name("Salt.2010.mkv", QUILP_NAME_ANY));
    return quilp_answer_reason(answer.get()) == QUILP_OK;
  }
  const long deadline = random % 3 == 0 ? 1 + static_cast<long>(random % 5) : 0;
  const Request request = kind == 1 ? requestFor(QUILP_TV_DETAILS, QUILP_ID, "tt8000001", deadline)
                          : kind == 2
                              ? requestFor(QUILP_SONG, QUILP_PATH, "/x/A_B.mkv", deadline)
                              : requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "x", deadline);
  std::thread other([&request, random] {
    std::this_thread::sleep_for(std::chrono::microseconds(random % 4000));
    quilp_request_cancel(request.get());
  });
  const Answer answer(quilp_run(request.get()));
  other.join();
  const quilp_reason reason = quilp_answer_reason(answer.get());
  const bool isRight = reason == QUILP_OK || reason == QUILP_CANCELLED || reason == QUILP_TIMED_OUT;
  EXPECT_TRUE(isRight) << kind << ": " << quilp_answer_sentence(answer.get());
  return isRight;
}

// tools/soak makes more of them, by QUILP_CALLS.
TEST_F(Plain, RandomCancelsLeaveNothing) {
  test::answerWith("Movie", kMovies, "");
  const char* wanted = std::getenv("QUILP_CALLS");
  constexpr int kThreads = 16;
  const int each = wanted != nullptr ? std::atoi(wanted) / kThreads : 20;
  std::vector<std::thread> threads;
  std::atomic<int> answers{0};
  for (unsigned seed = 0; seed < kThreads; ++seed) {
    threads.emplace_back([&answers, seed, each] {
      unsigned state = seed * 7919 + 1;
      for (int i = 0; i < each; ++i) {
        state = state * 1103515245 + 12345;
        answers += isAnswered((seed + static_cast<unsigned>(i)) % 5, state / 65536) ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(answers, kThreads * each);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(Plain, PagesAreFetchedUnderControl) {
  test::removeRegistry();
  Answer answer = searchMovies("The Paper Lighthouse");
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_OK) << quilp_answer_sentence(answer.get());
  EXPECT_GT(quilp_answer_count(answer.get()), 0u);
  EXPECT_EQ(quilp_answer_add_on(answer.get()), nullptr);
  const auto start = Clock::now();
  answer = searchMovies("The Paper Lighthouse", 5);
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(5) + kLate);
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_TIMED_OUT);
}

Request searchOf20() {
  Request request = requestFor(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "everything");
  EXPECT_EQ(quilp_request_set_number(request.get(), QUILP_COUNT, 20), 0);
  return request;
}

TEST_F(Plain, ASearchFetchesItsPagesTogether) {
  test::removeRegistry();
  test::newSiteRequests();
  velMovie_* movies = nullptr;
  ASSERT_EQ(imdbBasicGetMovies("everything", 20, &movies), 20);
  std::vector<string> classic = test::newSiteRequests();
  const test::Curl curl("echo >>/etc/config/runs\nexec /sbin/real \"$@\"\n");
  const Request request = searchOf20();
  std::vector<string> told;
  quilp_request_set_observer(
      request.get(),
      [](void* user, quilp_event event, const char* text, long status) {
        if (event == QUILP_PAGE_FETCHED) {
          static_cast<std::vector<string>*>(user)->push_back(text + (' ' + std::to_string(status)));
        }
      },
      &told);
  const Answer answer(quilp_run(request.get()));
  std::vector<string> together = test::newSiteRequests();
  EXPECT_EQ(test::readFile("/etc/config/runs"), "\n\n\n\n\n");  // of curl, for 41 pages
  unlink("/etc/config/runs");
  std::sort(classic.begin(), classic.end());
  std::sort(together.begin(), together.end());
  EXPECT_EQ(together, classic);
  EXPECT_EQ(told.size(), classic.size());
  EXPECT_THAT(told, testing::Each(testing::EndsWith(" 200")));
  ASSERT_EQ(quilp_answer_count(answer.get()), 20u);
  for (std::size_t i = 0; i < 20; ++i) {
    EXPECT_STREQ(quilp_answer_text(answer.get(), i, "title"), movies[i].title);
    EXPECT_STREQ(quilp_answer_text(answer.get(), i, "url"), movies[i].url);
    EXPECT_STREQ(quilp_answer_text(answer.get(), i, "outline"), movies[i].outline);
  }
  velFreeMovies(movies, 20);
}

/// A child that may open `free` descriptors more searches.
TEST_F(Plain, ASearchTellsOfPagesThatItHadNoDescriptorFor) {
  test::removeRegistry();
  int told = 0;
  for (rlim_t free = 0; free < 60; free += 6) {
    const pid_t child = fork();
    if (child == 0) {
      const int next = dup(STDERR_FILENO);
      const rlimit limit = {static_cast<rlim_t>(next) + free, static_cast<rlim_t>(next) + free};
      close(next);
      const Request request = searchOf20();
      if (setrlimit(RLIMIT_NOFILE, &limit) != 0) {
        _exit(3);
      }
      // A request that could not be cancelled is none.
      if (free == 0 && quilp_request_new(QUILP_SONG) != nullptr) {
        _exit(4);
      }
      const Answer answer(quilp_run(request.get()));
      const bool isWhole = quilp_answer_count(answer.get()) == 20 &&
                           quilp_answer_text(answer.get(), 19, "url") != nullptr;
      const quilp_reason reason = quilp_answer_reason(answer.get());
      _exit(isWhole && reason == QUILP_OK ? 0 : reason != QUILP_OK ? 1 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << free << " free: status " << status;
    told += WIFEXITED(status) && WEXITSTATUS(status) == 1 ? 1 : 0;
  }
  EXPECT_THAT(told, testing::AllOf(testing::Gt(0), testing::Lt(10)));
}

TEST_F(Plain, ACancelEndsTheFetchesOfASearch) {
  test::removeRegistry();
  const test::Curl curl(
      "case $* in *plotsummary*) : >/etc/config/started; sleep 60;; esac\n"
      "exec /sbin/real \"$@\"\n");
  unlink("/etc/config/started");
  const Request request = searchOf20();
  std::thread other([&request] {
    while (access("/etc/config/started", F_OK) != 0) {
      std::this_thread::yield();
    }
    quilp_request_cancel(request.get());
  });
  const auto start = Clock::now();
  const Answer answer(quilp_run(request.get()));
  other.join();
  EXPECT_LT(Clock::now() - start, 2 * kLate);
  EXPECT_EQ(quilp_answer_reason(answer.get()), QUILP_CANCELLED);
  ASSERT_EQ(quilp_answer_count(answer.get()), 20u);
  EXPECT_STRNE(quilp_answer_text(answer.get(), 19, "url"), "");  // of a title page
}

}  // namespace
