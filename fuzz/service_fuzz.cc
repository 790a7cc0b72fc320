#include <cstring>

#include "fake_client.h"
#include "fuzz.h"
#include "libquilp.h"
#include "music/artwork.h"
#include "music/metadata.h"
#include "platform.h"

// Reads any bytes as a document of the music service that QUILP_FUZZ_SERVICE names; the other one
// answers with a good document. Runs in the box.

namespace {

using namespace libquilp;

enum class Service { metadata, artwork };

constexpr int kCount = 3;

constexpr char kMetadata[] =
    "<metadata><artist-list><artist id=\"a\"/></artist-list><release-group-list>"
    "<release-group id=\"a\" type=\"Album\"><title>T</title></release-group>"
    "<release-group id=\"b\" type=\"Album\"><title>U</title></release-group>"
    "</release-group-list></metadata>";
constexpr char kArtwork[] =
    "{\"albums\": {\"a\": {\"albumcover\": [{\"url\": \"u\"}]}},"
    " \"artistbackground\": [{\"url\": \"v\"}]}";

std::string_view answer(const std::string& address, std::string_view input) {
  const bool toArtwork = address.compare(0, std::strlen(FANART_WS_BASE), FANART_WS_BASE) == 0;
  const Service asked = toArtwork ? Service::artwork : Service::metadata;
  return asked == Service::QUILP_FUZZ_SERVICE ? input : toArtwork ? kArtwork : kMetadata;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::bytesOf(data, size);
  const fuzz::FakeClient client(
      [&input](const std::string& address) { return answer(address, input); });

  const auto found = searchAlbums("album", "", kCount, Context());
  fuzz::expect(found.count <= kCount, "a search gives too many albums");

  const auto listed = listAlbums("artist", kCount, Context());
  fuzz::expect(listed.count <= listed.records.count() && listed.records.count() <= kCount,
               "a listing gives too many albums");

  const auto pictures = fetchPictures("artist", kCount, Context());
  fuzz::expect(pictures.count <= kCount, "an artist has too many pictures");
  return 0;
}
