#include <cstring>
#include <optional>

#include "imdb/title_details.h"
#include "imdb/title_page.h"
#include "platform.h"
#include "plugin/files.h"
#include "plugin/page_fetch.h"
#include "tv/details.h"

namespace libquilp {
namespace {

constexpr std::string_view kHeader =
    "<h1 class=\"header\"> <span class=\"itemprop\" itemprop=\"name\">";
constexpr std::string_view kDash = "\xE2\x80\x93";  // U+2013

// <h3>Share this Rating</h3> <p>Title: <strong>TITLE</strong> (YEARS)</p>
Cut sharedTitleOf(std::string_view page) {
  return Cutter(page).between("<h3>Share this Rating</h3>", "</p>");
}

// <h1 class="header"> <span class="itemprop" itemprop="name">TITLE</span>
//   <span class="nobr">(2008–2013)</span> </h1>
Cut titleOf(std::string_view page) {
  if (const Cut title = Cutter(page).between(kHeader, "</span>")) {
    return title;
  }
  return Cutter(sharedTitleOf(page).value_or("")).between("<strong>", "</strong>");
}

std::optional<std::string> yearsOf(std::string_view page) {
  Cutter header(page);
  if (header.past(kHeader) && contains(header.rest(), "</h1>")) {
    return trimmed(header.between("<span class=\"nobr\">(", ")</span>"));
  }
  const auto shared = trimmed(sharedTitleOf(page));
  Cutter afterTitle(shared ? *shared : std::string_view());
  return trimmed(afterTitle.past("</strong>") ? afterTitle.between("(", ")") : Cut());
}

// A running show has nothing after the dash.
void readDates(std::string_view page, velTVShowInfo& info) {
  const auto years = yearsOf(page);
  if (!years) {
    return;
  }
  // A year ends at a zero byte.
  const auto dated = [](std::string_view year, const char* day) {
    return duplicate(std::string(year.substr(0, year.find('\0'))) + day);
  };
  Cutter cutter(*years);
  info.first_air_date = dated(cutter.upToOrRest(kDash), "-01-01");
  if (!cutter.done()) {
    info.last_air_date = dated(cutter.rest(), "-12-31");
  }
}

// <h4 class="inline">Creators:</h4> <span class="itemprop" itemprop="name">CREATOR</span> … </div>
Cut creatorsOf(std::string_view page) {
  return Cutter(page).between("<h4 class=\"inline\">Creators:</h4>", "</div>");
}

// <h4 class="inline">Runtime:</h4> <time itemprop="duration" datetime="PT49M">49 min</time> </div>
Cut durationOf(std::string_view page) {
  const Cut block = Cutter(page).between("<h4 class=\"inline\">Runtime:</h4>", "</div>");
  return block ? Cutter(*block).between("\">", "</time>") : Cut();
}

bool isWordByte(char c) {
  static constexpr std::string_view kWordBytes =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ'?"
      "áâäãåèéêëìíîïòóôöõøùúûüÿýñçšžŸŽð"
      "\x82";
  return kWordBytes.find(c) != std::string_view::npos;
}

std::optional<std::string> fetchBanner(std::string_view page, const Context& context) {
  const Cut path = firstPicturePathOf(page);
  if (!path || !isSitePath(*path)) {
    return {};
  }
  const auto picture = fetchWithoutLimits(std::string(IMDB_MAIN_BASE).append(*path), context);
  const Cut banner = picture ? bannerOf(*picture) : Cut();
  return banner ? std::optional<std::string>(*banner) : std::nullopt;
}

}  // namespace

// <div class="mediastrip"> <a href="/PATH" …><img …></a> … </div>
Cut firstPicturePathOf(std::string_view page) {
  const Cut strip = Cutter(page).between("<div class=\"mediastrip\">", "</div>");
  return strip ? Cutter(*strip).between("<a href=\"", "\"") : Cut();
}

// <a class="cursor-default" ><img src="ADDRESS" …></a>, or <meta itemprop='image'
// content='ADDRESS'/>
Cut bannerOf(std::string_view page) {
  if (const Cut picture = Cutter(page).between("class=\"cursor-default\" >", "</a>")) {
    return Cutter(*picture).between("src=\"", "\"");
  }
  return Cutter(page).between("<meta itemprop='image' content='", "'/>");
}

// Finds the leftmost, longest match of "a word byte, any byte, one or more word bytes or blanks".
// regcomp would depend on the host's locale and might match characters instead of bytes. Only the
// run at the end can vary in length, so the first place that fits is the leftmost match, and the
// whole run its longest.
void cutRole(std::string& role) {
  const auto isInRun = [&role](std::size_t i) { return role[i] == ' ' || isWordByte(role[i]); };
  const std::size_t size = std::strlen(role.c_str());
  for (std::size_t i = 0; i + 2 < size; ++i) {
    if (isWordByte(role[i]) && isInRun(i + 2)) {
      std::size_t end = i + 3;
      while (end < size && isInRun(end)) {
        ++end;
      }
      role.resize(end);
      return;
    }
  }
}

void readShowPage(const std::string& page, const char* id, const FetchedTexts& fetched,
                  velTVShowInfo& info) {
  info.id = SafeStrdup(id);
  info.title = duplicate(titleOf(page));
  readDates(page, info);
  info.poster = duplicate(posterOf(page));
  info.banner = duplicate(fetched.banner);
  info.outline = duplicate(fetched.outline);
  appendNames(creatorsOf(page).value_or(""), info.creators);
  readCast(page, info.actor_names, info.actor_roles, &cutRole);
  readGenres(page, info.genres);
  info.duration = duplicate(durationOf(page));
  info.rating = duplicate(userRatingOf(page));
}

Outcome fetchShow(const char* id, const Context& context, velTVShowInfo& info) {
  const FilePage page = fetchToFile(titleAddress(id, kTVReference), tvShowInfoPage, context);
  if (!page.text) {
    return {1, Reason::kNoPage};
  }
  FetchedTexts fetched;
  fetched.banner = fetchBanner(*page.text, context);
  fetched.outline = fetchOutline(*page.text, id, context);
  readShowPage(*page.text, id, fetched, info);
  return {};
}

}  // namespace libquilp
