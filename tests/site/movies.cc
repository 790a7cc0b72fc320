// Movies: find page, title page, plot summary, combined page, photo page, alternate title search.

#include "site.h"

#include <memory>

namespace quilp_site {
namespace {

constexpr char kMain[] = "www.imdb.com";
constexpr char kAkas[] = "akas.imdb.com";
constexpr char kTitle[] = "/title/([^/]+)";

// Around every page: text that a cut in the wrong place would catch.
const char kFrame[] = R"(<!DOCTYPE html>
<html>
<head>
<meta charset="utf-8" />
{{head}}
</head>
<body>
<table id="nav"><tr><td class="search"><a href="/find">Search (all)</a></td></tr></table>
<div id="menu"><a href="/title/">Titles</a> | <a href="/name/">Names</a></div>
{{body}}
<div id="footer"><img src="https://images.example/logo.png" /> (c) the sample site</div>
</body>
</html>
)";

const char kFoundRow[] =
    R"(<tr class="findResult odd"> <td class="primary_photo"> <a href="/title/{{id}}/?ref_=fn_tt_tt_1" ><img src="https://images.example/tiny.png" /></a> </td> <td class="result_text"> <a href="/title/{{id}}/?ref_=fn_tt_tt_1" >{{title}}</a> {{found_year}} <br/>aka <i>"{{title}} (working title)"</i> </td> </tr>
)";

const char kNumberedRow[] = R"(<tr class="detailed">
 <td class="number">{{n}}.</td>
 <td class="image"><a href="/title/{{id}}/" title="{{title}}"><img src="{{poster}}" height="74"></a></td>
 <td class="title"><a href="/title/{{id}}/">{{title}}</a>
 <span class="year_type">({{year}})</span><br>
 <span class="outline">{{summary}}</span></td>
</tr>
)";

const char kSummaryParagraph[] = R"(<ul class="zebraList"><li class="odd">
<p class="plotSummary">{{plot_summary}}</p>
<span><em class="nobr">Written by <a href="/search/title">A Viewer</a></em></span></li></ul>)";

const char kPhotoPage[] = R"(<div id="photo-container">
<img id="primary-img" title="{{title}}" alt="{{title}}" src="{{photo}}" />
</div>)";

// A piece of a page that stands there if the movie has the member. A list gives one item after
// another: {{value}} is the item itself, {{n}} its number.
struct Section {
  const char* member;
  const char* open;
  const char* item;
  const char* close;
};

const Section kTitleHead[] = {
    {"title", "<title>", "{{page_title}} - Sample</title>\n", ""},
    {"poster", "", R"(<link rel='image_src' href="{{poster}}">)", ""},
};

const Section kTitleBody[] = {
    {"title", "", "<h1 itemprop=\"name\">{{title}}</h1>\n", ""},
    {"summary",
     "<div class=\"summary_text\" itemprop=\"description\">\n                    ",
     "{{summary}}\n",
     ""},
    {"summary_link",
     "",
     R"(<a href="/title/{{id}}/plotsummary?ref_=tt_ov_pl" >{{summary_link}}</a>&nbsp;&raquo;)",
     ""},
    {"summary", "            ", "</div>", "\n<div class=\"credit\">Credits</div>\n"},
};

const Section kCombinedHead[] = {{"title", "<title>", "{{page_title}}</title>", ""}};

const Section kCombinedBody[] = {
    {"photo_path",
     "<div class=\"photo\">\n",
     R"(<a name="poster" href="{{photo_path}}" title="{{title}}"><img border="0" src="{{poster}}" /></a>)",
     "\n</div>\n"},
    {"rating",
     "<div class=\"starbar-meta\">\n",
     R"(<b>{{rating}}/10</b> &nbsp;&nbsp;<a href="ratings" class="tn15more">1,234 votes</a>)",
     "\n</div>\n"},
    {"directors",
     "<div class=\"info\">\n<h5>Director:</h5>\n<div class=\"info-content\">\n",
     R"(<a href="/name/nm900000{{n}}/" onclick="(new Image()).src='/rg/directorlist/position-{{n}}/images/b.gif?link=name/nm900000{{n}}/';">{{value}}</a><br/>
)",
     "</div>\n</div>\n"},
    {"genres",
     "<div class=\"info\">\n<h5>Genre:</h5>\n<div class=\"info-content\">\n",
     R"(<a href="/Sections/Genres/{{value}}/">{{value}} films</a> | )",
     "\n</div>\n</div>\n"},
    {"plot",
     "<div class=\"info\">\n<h5>Plot:</h5>\n<div class=\"info-content\">\n",
     "{{plot}} ",
     ""},
    {"plot_bar", "", R"(| <a href="synopsis" class="tn15more">{{plot_bar}}</a> )", ""},
    {"plot_link",
     "",
     R"(<a class="tn15more inline" href="/title/{{id}}/plotsummary">{{plot_link}}</a> &raquo;)",
     ""},
    {"plot", "\n", "</div>\n</div>", "\n"},
    {"mpaa",
     "<div class=\"info\">\n",
     R"(<h5><a href="/mpaa">MPAA</a>:</h5><div class="info-content">Rated {{mpaa}} for moments.)",
     "\n</div>\n</div>\n"},
    {"cast",
     "<h3>Cast</h3>&nbsp;<small>(Credited cast)</small>\n<table class=\"cast\">\n",
     R"(<tr class="odd"><td class="nm"><a href="/name/nm910000{{n}}/" onclick="(new Image()).src='/rg/castlist/position-{{n}}/images/b.gif?link=/name/nm910000{{n}}/';">{{name}}</a></td><td class="ddd"> ... </td><td class="char">{{cell}}</td></tr>
)",
     "</table>\n<form action=\"/character/create\"><input type=\"submit\"></form>\n"},
    {"countries",
     "<div class=\"info\">\n<h5>Country:</h5>\n<div class=\"info-content\">\n",
     R"(<a href="/country/c{{n}}">{{value}}</a> | )",
     "\n</div>\n</div>\n"},
    {"certificate",
     "<div class=\"info\">\n<h5>Certification:</h5><div class=\"info-content\">\n",
     R"(<a href="/search/title?certificates=us:pg">USA:{{certificate}}</a> | )",
     "\n</div>\n</div>\n"},
    {"company",
     "<div class=\"info\">\n",
     R"(<h5>Company:</h5><div class="info-content"><a href="/company/co9000001/">{{company}}</a> <a href="companycredits">See more</a>)",
     "</div>\n</div>\n"},
};

template <size_t N>
std::string Sections(const Section (&sections)[N], const Json::Value& movie) {
  std::string page;
  for (const Section& section : sections) {
    if (!movie.isMember(section.member)) {
      continue;
    }
    page += section.open;
    const Json::Value& member = movie[section.member];
    if (!member.isArray()) {
      page += Fill(section.item, movie);
    }
    for (Json::ArrayIndex i = 0; member.isArray() && i < member.size(); ++i) {
      Json::Value item = member[i].isObject() ? member[i] : Json::Value();
      item["value"] = member[i].isString() ? member[i] : "";
      item["n"] = i + 1;
      page += Fill(section.item, item);
    }
    page += section.close;
  }
  return page;
}

std::string Frame(const std::string& head, const std::string& body) {
  Json::Value values;
  values["head"] = head;
  values["body"] = body;
  return Fill(kFrame, values);
}

class Movies {
 public:
  explicit Movies(const Json::Value& data) {
    for (const Json::Value& movie : data["movies"]) {
      Add(movie);
    }
    const Json::Value& filler = data["filler"];
    for (int i = 0; i < filler["count"].asInt(); ++i) {
      Json::Value number;
      number["n"] = i + 1;
      Json::Value movie = filler["movie"];
      for (const std::string& name : movie.getMemberNames()) {
        for (Json::Value* text : {&movie[name], &movie[name][0]}) {
        }
      }
      Add(movie);
    }
  }

 private:
  void Add(Json::Value movie);
};

}  // namespace
}  // namespace quilp_site
