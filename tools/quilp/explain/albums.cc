#include "explain/search.h"
#include "explain/steps.h"
#include "libquilp.h"
#include "music/records.h"
#include "output/document.h"
#include "output/exit_status.h"
#include "plugin/files.h"

namespace quilp {
namespace {

using libquilp::XMLNode;

constexpr char kList[] = "albumlist";
constexpr char kEntry[] = "album";

/// The print function passes an add-on's document on: any text counts, in CDATA or not.
bool countElements(const XMLNode& list, Explanation& explanation) {
  explanation.rows = list.nChildNode(kEntry);
  bool any = false;
  for (const auto& field : libquilp::kPrintedAlbumFields) {
    int filled = 0;
    list.forEachChild(kEntry, [&filled, &field](const XMLNode& entry) {
      const XMLNode element = entry.getChildNode(field.element);
      filled += isFilled(libquilp::firstClear(element)) || isFilled(element.getText(0)) ? 1 : 0;
    });
    explanation.fields.push_back({field.element, filled});
    any = any || filled > 0;
  }
  return any;
}

}  // namespace

Explanation explainAlbums(const std::string& album, const std::string& artist, int count) {
  Explanation explanation;
  const RegistryView& registry = RegistryView::get();
  if (const auto* section = registry.serving(kMusic, Use::kPrint)) {
    libquilp::ShellCall shell(kMusic.type, libquilp::GetFirstEnabledShellByType);
    runAddOn(
        *section, shell,
        {"searchAlbum", "-b", album.c_str(), "-a", artist.c_str(), "-n", libquilp::Decimal(count)},
        kList, explanation);
    if (!explanation.reason && !countElements(shell.document(kList), explanation)) {
      explanation.reason = reasonOfEntries(explanation.rows);
    }
    const bool passedOn = explanation.shellStatus.value_or(0) == 0 &&
                          holdsText(libquilp::readFile(shell.file()).value_or(""));
    explanation.searchStatus = passedOn ? 0 : kNothingFound;
    return explanation;
  }
  explanation.whyBuiltIn = registry.whyNone(kMusic, Use::kPrint);
  TransferLog log(TransferLog::Source::kDocuments);
  Rows<velAlbum_, velFreeAlbums> albums;
  albums.count = velSearchAlbum(album.c_str(), artist.c_str(), count, &albums.records);
  explanation.transfers = log.take();
  if (!countFields(libquilp::kPrintedAlbumFields, albums.records, albums.count, explanation)) {
    explanation.reason = reasonOfService(explanation.transfers);
    explanation.searchStatus = kNothingFound;
  }
  return explanation;
}

}  // namespace quilp
