#pragma once

#include <functional>
#include <string>
#include <vector>

#include "call.h"
#include "document.h"

namespace quilp::kit {

/// A verb of an add-on.
struct Verb {
  const char* name;
  const char* root;  // of the document

  /// Fills the document. Returns false where there is nothing to tell. May throw std::exception.
  std::function<bool(const Call& call, Document& document)> answer;
};

/// The main function of an add-on: answers one call, and returns the exit status: 0 for a document,
/// 1 for none, 2 for a wrong call. What went wrong is one line on standard error.
///
/// The verb "test" of "quilp addon test" tells on standard output whether the add-on can work:
/// `test` returns that, or throws std::exception. It is null for an add-on that needs nothing.
int serve(const char* program, int argc, char** argv, const std::vector<Verb>& verbs,
          std::string (*test)() = nullptr);

/// The root element of gettvshowinfo, which depends on what is asked.
const char* showRoot(int argc, char** argv);

}  // namespace quilp::kit
