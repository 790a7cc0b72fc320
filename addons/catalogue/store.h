#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tables.h"
#include "title.h"

namespace quilp::catalogue {

struct Season {
  unsigned number = 0;
  std::vector<Episode> episodes{};
};

/// What an identifier stands for.
struct Ident {
  bool isEpisode = false;
  std::uint32_t rank = 0;  // of a title
  std::uint32_t show = 0;  // of an episode: the show's identifier
  unsigned season = 0;
};

/// A catalogue, for reading. Used by one thread at a time.
/// Throws Damaged, or std::runtime_error where there is no such catalogue.
class Store {
 public:
  /// The path of a file, or the address of a server.
  explicit Store(const std::string& address);

  const std::map<std::string, std::string>& meta() const { return meta_; }
  std::uint64_t metaNumber(const std::string& name) const;
  std::string place() { return tables_->place(); }
  Tables& tables() { return *tables_; }

  Title title(std::uint32_t rank);
  std::string person(std::uint32_t number);
  std::optional<Season> season(std::uint32_t show, unsigned number);
  std::vector<unsigned> seasonsOf(std::uint32_t show);
  std::optional<Ident> ident(std::uint32_t id);

 private:
  std::unique_ptr<Tables> tables_;
  std::map<std::string, std::string> meta_;
};

/// Packs a block so that it takes less room, and unpacks it.
std::string deflated(std::string_view bytes);
std::string inflated(std::string_view bytes);

}  // namespace quilp::catalogue
