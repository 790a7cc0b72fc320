#include "serve.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>

namespace quilp::kit {
namespace {

constexpr int kNoAnswer = 1;
constexpr int kWrong = 2;

int complain(const char* program, std::string text, int status) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
  std::fprintf(stderr, "%s: %s\n", program, text.c_str());
  return status;
}

}  // namespace

int serve(const char* program, int argc, char** argv, const std::vector<Verb>& verbs,
          std::string (*test)()) {
  try {
    if (argc > 1 && std::string(argv[1]) == "test") {
      const std::string text = test == nullptr ? "needs neither settings nor a network" : test();
      return std::printf("%s: %s\n", program, text.c_str()) < 0 ? kNoAnswer : 0;
    }
    const Call call = readCall(argc, argv);
    const auto verb = std::find_if(verbs.begin(), verbs.end(),
                                   [&](const Verb& each) { return call.verb == each.name; });
    if (verb == verbs.end()) {
      return complain(program, "no verb \"" + call.verb + '"', kWrong);
    }
    Document document(verb->root);
    if (!verb->answer(call, document)) {
      return complain(program, "nothing found", kNoAnswer);
    }
    document.write(call.output);
    return 0;
  } catch (const WrongCall& error) {
    return complain(program, error.what(), kWrong);
  } catch (const std::exception& error) {
    return complain(program, error.what(), kNoAnswer);
  }
}

const char* showRoot(int argc, char** argv) {
  const char* root = "tvshow";
  for (int i = 2; i + 1 < argc; i += 2) {
    root = std::strcmp(argv[i], "-e") == 0 ? "tvepisode" : root;
  }
  return root;
}

}  // namespace quilp::kit
