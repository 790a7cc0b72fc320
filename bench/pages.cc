#include <initializer_list>

#include "imdb/title_page.h"
#include "imdb/title_search.h"
#include "inputs.h"
#include "movie/details.h"
#include "movie/records.h"
#include "tv/details.h"
#include "tv/records.h"

// No page leads to another one, so that cutting it fetches nothing.

namespace bench {
namespace {

using libquilp::Field;

constexpr int kRows = 20;
constexpr int kCast = 40;
constexpr int kEpisodes = 24;

/// Menus, pictures and recommendations, as they fill a page between its fields.
std::string filler(std::size_t size) {
  return repeated(
      "<div class=\"rec_item\"><a href=\"/title/tt0000000/?ref_=rec\"><img alt=\"\" "
      "src=\"https://images.example/rec.jpg\"></a><span class=\"nobr\">Another title</span> "
      "<b>and what <i>others</i> say of it</b><br></div>\n",
      size);
}

/// A page of the parts with `gap` bytes between them.
std::string pageOf(std::initializer_list<std::string> parts, std::size_t gap) {
  std::string page = "<!DOCTYPE html>\n<html>\n<head>";
  for (const std::string& part : parts) {
    page += part;
    page += filler(gap);
  }
  return page + "</body>\n</html>\n";
}

std::string rows(const char* row, int count) {
  return repeated(row, std::string(row).size() * static_cast<std::size_t>(count));
}

template <class Record, std::size_t N>
int valuesOf(const Field<Record> (&table)[N], const Record& record) {
  int values = 0;
  for (const auto& field : table) {
    if (field.text != nullptr) {
      values += record.*field.text != nullptr ? 1 : 0;
      continue;
    }
    values += static_cast<int>((record.*field.list).size());
    values += field.roles != nullptr ? static_cast<int>((record.*field.roles).size()) : 0;
  }
  return values;
}

int cutFindPage(const std::string& html) {
  static const libquilp::TitleSearch<velMovie_> search = {libquilp::movieSearchPage,
                                                          "x",
                                                          &velMovie_::id,
                                                          &velMovie_::title,
                                                          &velMovie_::year,
                                                          &velMovie_::url,
                                                          &velMovie_::outline,
                                                          &velFreeMovies};
  const auto movies = libquilp::readFindPage(html, search, kRows);
  int values = 0;
  for (const velMovie_& movie : movies) {
    values += valuesOf(libquilp::kMovieFields, movie);
  }
  return values;
}

int cutTitlePage(const std::string& html) {
  const auto poster = libquilp::posterOf(html);
  const auto outline = libquilp::fetchOutline(html, "tt1", libquilp::Context());
  return (poster ? 1 : 0) + (outline ? 1 : 0);
}

int cutCombinedPage(const std::string& html) {
  velMovieInfo_ info = velMovieInfo_();
  libquilp::readCombinedPage(html, "tt1", info);
  const int values = valuesOf(libquilp::kMovieInfoFields, info);
  velFreeMovieInfo(&info);
  return values - 2;  // the identifier is given, the plot is the outline again
}

int cutShowPage(const std::string& html) {
  velTVShowInfo info = velTVShowInfo();
  libquilp::readShowPage(html, "tt1",
                         {{}, libquilp::fetchOutline(html, "tt1", libquilp::Context())}, info);
  const int values = valuesOf(libquilp::kShowInfoFields, info);
  velFreeTVShowInfo(&info);
  return values - 1;  // the identifier is given; of the years two values are made
}

int cutEpisodeList(const std::string& html) {
  return libquilp::episodeIdOf(html, 2, kEpisodes) ? 1 : 0;
}

int cutEpisodePage(const std::string& html) {
  velTVEpisode info = velTVEpisode();
  libquilp::readEpisodePage(html, 2, 5, libquilp::fetchOutline(html, "tt1", libquilp::Context()),
                            info);
  const int values = valuesOf(libquilp::kPrintedEpisodeFields, info);
  velFreeTVEpisode(&info);
  return values - 2;  // season and episode are given
}

constexpr char kFoundRow[] =
    R"(<tr class="findResult odd"><td class="primary_photo"><a href="/title/tt0123456/?ref_=fn_tt"><img
src="https://images.example/tiny.png"></a></td><td class="result_text"><a
href="/title/tt0123456/?ref_=fn_tt">The Paper Lighthouse</a> (I) (2011) <br>aka <i>"Paper"</i></td></tr>
)";

constexpr char kHead[] =
    R"html(<title>The Paper Lighthouse (2011)</title><meta property='og:title' content="&quot;Harbour Lights&quot; Pilot (TV Episode 2011)">
<link rel='image_src' href="https://images.example/poster.jpg"><meta itemprop="datePublished" content="2011-01-20" />
</head><body>)html";

constexpr char kSummary[] = R"(<div class="summary_text" itemprop="description">
      A keeper folds a lighthouse out of old letters &mdash; and it is lit.   </div>)";

constexpr char kCombinedActor[] =
    R"(<tr class="odd"><td class="nm"><a href="/name/nm0000001/" onclick="(new
Image()).src='/rg/castlist/position-1/images/nm0000001/';">Leo Brandt</a></td><td class="ddd"> ...
</td><td class="char"><a href="/character/ch0000001/">The Postman</a></td></tr>
)";

constexpr char kActor[] =
    R"(<tr class="odd"><td class="primary_photo"><a href="/name/nm1/"><img src="https://images.example/a.png"></a></td>
<td class="itemprop" itemprop="actor"><a href="/name/nm1/"><span class="itemprop" itemprop="name">Leo Brandt</span></a></td>
<td class="ellipsis">...</td><td class="character"><div><a href="/character/ch1/?ref_=tt">The Postman</a></div></td></tr>
)";

constexpr char kShowHeader[] =
    "<h1 class=\"header\"> <span class=\"itemprop\" itemprop=\"name\">Harbour Lights</span>\n"
    "<span class=\"nobr\">(2008\xE2\x80\x93"
    "2013)</span></h1>";

constexpr char kGenres[] =
    R"(<a href="/genre/d"><span class="itemprop" itemprop="genre">Drama</span></a>
<a href="/genre/m"><span class="itemprop" itemprop="genre">Mystery</span></a>)";

constexpr char kRating[] = R"(<div class="titlePageSprite star-box-giga-star"> 8.5 </div>)";

std::string castTable() { return "<table class=\"cast_list\">" + rows(kActor, kCast) + "</table>"; }

std::string names(const std::string& heading, int count) {
  return "<div class=\"txt-block\"><h4 class=\"inline\">" + heading + "</h4>" +
         rows(
             "<a href=\"/name/nm2/\"><span class=\"itemprop\" itemprop=\"name\">Ida "
             "Roth</span></a>",
             count) +
         "</div>";
}

std::string episodeEntries() {
  std::string entries;
  for (int i = 1; i <= kEpisodes; ++i) {
    const std::string n = std::to_string(i);
    entries.append("<div class=\"list_item\"><div class=\"image\"><a href=\"/title/tt").append(n);
    entries.append("/\"><div data-const=\"tt").append(n);
    entries.append("\" class=\"hover\"><img src=\"https://images.example/s.jpg\"><div>S2, Ep");
    entries.append(n).append("</div></div></a></div><div class=\"info\"><strong>Part ").append(n);
    entries.append("</strong>").append(filler(600)).append("</div></div>\n");
  }
  return entries;
}

}  // namespace

std::vector<Page> pages() {
  return {
      {"find",
       pageOf({kHead, "<table class=\"findList\">" + rows(kFoundRow, kRows) + "</table>", ""},
              8000),
       &cutFindPage,
       {"//table[@class='findList']//td[@class='primary_photo']/a/@href",
        "//table[@class='findList']//td[@class='result_text']/a[1]",
        "//table[@class='findList']//td[@class='result_text']/a/following-sibling::text()[1]"},
       {".findList .primary_photo > a", ".findList .result_text > a", ".findList .result_text"}},
      {"title",
       pageOf({kHead, kRating, kSummary, castTable(), ""}, 20000),
       &cutTitlePage,
       {"//link[@rel='image_src']/@href", "//div[@class='summary_text']"},
       {"link[rel=image_src]", "div.summary_text"}},
      {"combined",
       pageOf(
           {kHead,
            R"(<div class="photo"><a name="poster" href="https://images.example/p"></a></div>)",
            R"(<div class="starbar-meta"><b>7.5/10</b></div>)",
            R"(<h5>Director:</h5><div class="info-content"><a href="/name/nm3/" onclick="(new
Image()).src='/rg/directorlist/position-1/images/nm3/';">Ida Roth</a></div>)",
            R"(<h5>Genre:</h5><div class="info-content"><a href="/Sections/Genres/Drama/">Drama</a></div>)",
            R"(<h5>Plot:</h5><div class="info-content">A keeper folds a lighthouse. |
<a class="tn15more" href="/title/tt1/plotsummary">Add synopsis</a></div>)",
            "<h3>Cast</h3><table class=\"cast\">" + rows(kCombinedActor, kCast) +
                "</table><form action=\"/character/create\"></form>",
            R"(<h5>Country:</h5><div class="info-content"><a href="/country/at">Austria</a></div>)",
            R"(<h5>Company:</h5><div class="info-content"><a href="/company/co0000001/">Stamp &amp; Seal</a></div>)",
            ""},
           9000),
       &cutCombinedPage,
       {"//title", "//div[@class='starbar-meta']/b", "//h5[.='Plot:']/following-sibling::div[1]",
        "//h5[.='Company:']/following-sibling::div[1]/a", "//div[@class='photo']/a/@href",
        "//h5[.='Country:']/following-sibling::div[1]/a", "//td[@class='nm']/a",
        "//td[@class='char']", "//h5[.='Genre:']/following-sibling::div[1]/a",
        "//h5[.='Director:']/following-sibling::div[1]/a"},
       {"title", ".starbar-meta > b", "h5:contains('Plot:') + div",
        "h5:contains('Company:') + div > a", ".photo > a", "h5:contains('Country:') + div > a",
        "td.nm > a", "td.char", "h5:contains('Genre:') + div > a",
        "h5:contains('Director:') + div > a"}},
      {"show",
       pageOf(
           {kHead, kShowHeader, kRating, kGenres,
            R"(<div class="mediastrip"><a href="https://images.example/m"></a></div>)", kSummary,
            names("Creators:", 2), castTable(),
            R"(<h4 class="inline">Runtime:</h4><time itemprop="duration" datetime="PT49M">49 min</time></div>)",
            ""},
           14000),
       &cutShowPage,
       {"//h1[@class='header']/span[@itemprop='name']", "//h1[@class='header']/span[@class='nobr']",
        "//link[@rel='image_src']/@href", "//div[@class='mediastrip']/a/@href",
        "//div[@class='summary_text']", "//h4[.='Creators:']/..//span[@itemprop='name']",
        "//table[@class='cast_list']//span[@itemprop='name']",
        "//table[@class='cast_list']//td[@class='character']/div", "//span[@itemprop='genre']",
        "//time[@itemprop='duration']", "//div[contains(@class,'star-box-giga-star')]"},
       {"h1.header > span[itemprop=name]", "h1.header > span.nobr", "link[rel=image_src]",
        ".mediastrip > a", ".summary_text", "h4:contains('Creators:') ~ a span",
        ".cast_list span[itemprop=name]", ".cast_list td.character > div", "span[itemprop=genre]",
        "time[itemprop=duration]", ".star-box-giga-star"}},
      {"episodes",
       pageOf(
           {kHead,
            "<h3 id=\"episode_top\"  itemprop=\"name\">Season 2</h3>" + episodeEntries() + "<hr>",
            ""},
           12000),
       &cutEpisodeList,
       {"//div[@class='image']//div[@data-const][div='S2, Ep24']/@data-const"},
       {"div.image div[data-const]:contains('S2, Ep24')"}},
      {"episode",
       pageOf(
           {kHead,
            R"(<div class="poster"><a href="/m"><img alt="" src="https://images.example/s.jpg"></a></div>)",
            kRating, kGenres, kSummary, names("Director:", 1), castTable(), ""},
           16000),
       &cutEpisodePage,
       {"//meta[@property='og:title']/@content", "//meta[@itemprop='datePublished']/@content",
        "//div[@class='summary_text']", "//div[@class='poster']//img/@src",
        "//h4[.='Director:']/..//span[@itemprop='name']", "//span[@itemprop='genre']",
        "//table[@class='cast_list']//span[@itemprop='name']",
        "//table[@class='cast_list']//td[@class='character']/div",
        "//div[contains(@class,'star-box-giga-star')]"},
       {"meta[property='og:title']", "meta[itemprop=datePublished]", ".summary_text", ".poster img",
        "h4:contains('Director:') ~ a span", "span[itemprop=genre]",
        ".cast_list span[itemprop=name]", ".cast_list td.character > div", ".star-box-giga-star"}},
  };
}

}  // namespace bench
