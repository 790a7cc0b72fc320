#include "explain/explain.h"

#include <algorithm>
#include <mutex>

#include "libquilp.h"
#include "output/exit_status.h"
#include "platform/registry_view.h"

namespace quilp {
namespace {

/// Writes down what it is told.
class Watch : public libquilp::Observer {
 public:
  explicit Watch(Explanation& explanation) : explanation_(explanation) {}

  void addOnStarted(const std::vector<std::string>& argv) override { explanation_.command = argv; }
  void addOnEnded(const libquilp::ProgramEnd& end) override {
    if (end.started()) {
      explanation_.addOnStatus = end.exitStatus();
    }
  }
  void pageFetched(const libquilp::Fetch& fetch) override {
    const std::lock_guard<std::mutex> lock(adding_);
    explanation_.fetches.push_back(fetch);
  }
  void rowsFound(int rows) override { explanation_.rows = rows; }
  void fieldFound(const char* element, int filled) override {
    explanation_.fields.push_back({element, filled});
  }

 private:
  Explanation& explanation_;
  std::mutex adding_;
};

bool hasKeyword(const libquilp::Request& request) {
  return std::any_of(
      request.options.begin(), request.options.end(),
      [](const libquilp::Option& option) { return option.value == libquilp::Value::kKeyword; });
}

}  // namespace

Explanation explain(const libquilp::Request& request, const libquilp::Values& values,
                    libquilp::Control* control) {
  Explanation explanation;
  if (hasKeyword(request)) {
    explanation.keyword = {ProcessKeyword(values.keyword, 0), ProcessKeyword(values.keyword, 1)};
  }
  Watch watch(explanation);
  const libquilp::PrintedAnswer answer = request.print(request, values, {&watch, control});
  explanation.answer = answer;
  if (!answer.addOn) {
    explanation.whyBuiltIn = RegistryView::get().whyNone(request.media, libquilp::Use::kPrint);
  }
  explanation.exitStatus = exitStatusOf(answer);
  return explanation;
}

}  // namespace quilp
