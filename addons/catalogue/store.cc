#include "store.h"

#include <zlib.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "bytes.h"
#include "layout.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 26;
}  // namespace

std::string deflated(std::string_view bytes) {
  std::string out;
  Packer(out).number(bytes.size());
  const std::size_t head = out.size();
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  out.resize(head + size);
  if (compress2(reinterpret_cast<Bytef*>(out.data() + head), &size,
                reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                5) != Z_OK) {
    throw std::bad_alloc();
  }
  out.resize(head + size);
  return out;
}

std::string inflated(std::string_view bytes) {
  Unpacker from(bytes);
  const std::uint64_t stored = from.number();
  if (stored > kLargestBlock || stored > from.rest().size() * 1100 + 1024) {
    throw Damaged("a block's size is wrong");
  }
  std::string out(static_cast<std::size_t>(stored), '\0');
  auto size = static_cast<uLongf>(stored);
  if (uncompress(reinterpret_cast<Bytef*>(out.data()), &size,
                 reinterpret_cast<const Bytef*>(from.rest().data()),
                 static_cast<uLong>(from.rest().size())) != Z_OK ||
      size != stored) {
    throw Damaged("a block cannot be unpacked");
  }
  return out;
}

Store::Store(const std::string& address)
    : tables_(isServer(address) ? openServer(address) : openFile(address)), meta_(tables_->meta()) {
  if (metaNumber("version") != kVersion) {
    throw std::runtime_error(tables_->place() +
                             ": not a catalogue of this version; import it again");
  }
}

std::uint64_t Store::metaNumber(const std::string& name) const {
  const auto found = meta_.find(name);
  return found == meta_.end() ? 0 : std::strtoull(found->second.c_str(), nullptr, 10);
}

Title Store::title(std::uint32_t rank) {
  const auto packed = tables_->row("title", rank / kTitlesARow);
  if (!packed) {
    throw Damaged("a title is missing");
  }
  const std::string bytes = inflated(*packed);
  Unpacker from(bytes);
  for (unsigned skip = rank % kTitlesARow; skip > 0; --skip) {
    unpackTitle(from);
  }
  return unpackTitle(from);
}

std::string Store::person(std::uint32_t number) {
  const auto packed = tables_->row("person", number / kPeopleARow);
  if (!packed) {
    throw Damaged("a person is missing");
  }
  Unpacker from(*packed);
  for (unsigned skip = number % kPeopleARow; skip > 0; --skip) {
    from.text();
  }
  return std::string(from.text());
}

std::optional<Season> Store::season(std::uint32_t show, unsigned number) {
  if (number >= kSeasons) {
    return std::nullopt;
  }
  const auto packed = tables_->row("season", std::uint64_t{show} * kSeasons + number);
  if (!packed) {
    return std::nullopt;
  }
  const std::string bytes = inflated(*packed);
  Season season{number};
  for (Unpacker from(bytes); !from.atEnd();) {
    season.episodes.push_back(unpackEpisode(from));
  }
  return season;
}

std::vector<unsigned> Store::seasonsOf(std::uint32_t show) {
  const std::uint64_t first = std::uint64_t{show} * kSeasons;
  std::vector<unsigned> seasons;
  for (const std::uint64_t key : tables_->keys("season", first, first + kSeasons)) {
    seasons.push_back(static_cast<unsigned>(key - first));
  }
  return seasons;
}

std::optional<Ident> Store::ident(std::uint32_t id) {
  const auto packed = tables_->row("ident", id / kIdentsARow);
  if (!packed) {
    return std::nullopt;
  }
  for (Unpacker from(*packed); !from.atEnd();) {
    const unsigned first = from.byte();
    Ident ident;
    ident.isEpisode = first >= kIdentsARow;
    (ident.isEpisode ? ident.show : ident.rank) = from.number32();
    ident.season = ident.isEpisode ? from.number32() : 0;
    if (first % kIdentsARow == id % kIdentsARow) {
      return ident;
    }
  }
  return std::nullopt;
}

}  // namespace quilp::catalogue
