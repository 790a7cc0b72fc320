#include "plugin/add_on_call.h"

#include <cstring>

#include "plugin/outside.h"

namespace libquilp {
namespace {

constexpr std::size_t kPrefixSize = 5;

}  // namespace

const char* withoutPrefix(const char* id) {
  return id != nullptr && strnlen(id, kPrefixSize) == kPrefixSize ? id + kPrefixSize : "";
}

AddOnCall::AddOnCall(const AddOn& addOn, const std::vector<std::string>& arguments,
                     const Variables& variables, const Context& context) {
  file_.choose();
  std::vector<std::string> words = {addOn.program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.insert(words.end(), {"-o", file_.name()});
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  if (context.observer != nullptr) {
    context.observer->addOnStarted(words);
  }
  Environment environment(variables);
  end_ = askAddOn(argv.data(), environment.data(), context.control);
  if (context.observer != nullptr) {
    context.observer->addOnEnded(end_);
  }
}

}  // namespace libquilp
