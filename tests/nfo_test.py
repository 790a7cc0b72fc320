"""Every field of an add-on's documents comes back from the NFO files, under the names that Kodi publishes."""

import html
import json
import os
import pathlib
import re
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

HARD = "Salt & \"Ember\" <1> 'x' ]]> 茶 😀 &amp; end"
ACTORS = [("Solène Aubry", "Vera \"Salt\" Marsh & co"), ("Leo <b>", "The Postman"), ("Ida Roth", "")]

# Root: for each element of the add-on's document its values, and where they must stand; None: nowhere. What
# differs between the two is given as (document's, file's).
MOVIE = {
    "id": (["tmdb:77"], "uniqueid[@type='tmdb'][@default='true']", ["77"]),
    "title": ([HARD], "title"),
    "year": (["2012"], "year"),
    "rating": (["6.8"], "ratings/rating[@max='10'][@default='true']/value"),
    "director": (["Pilar Ostrow", "Émile Sørby"], "director"),
    "company": (["Salt & Sons"], "studio"),
    "country": (["Norway", "Chile"], "country"),
    "mpaa": (["PG-13"], "mpaa"),
    "genre": (["Comedy", "Drama"], "genre"),
    "outline": ([HARD + " outline"], "outline"),
    "plot": ([f"First line\nsecond line {HARD}"], "plot"),
    "poster": (["https://images.example/a.jpg?x=1&y=2"], "thumb[@aspect='poster']"),
}
SHOW = {
    "id": (["tt8000001"], "uniqueid[@type='imdb'][@default='true']"),
    "title": (["Signal & Row"], "title"),
    "first_air_date": (["2008-09-01"], "premiered"),
    "poster": (["https://images.example/show.jpg"], "thumb[@aspect='poster']"),
    "banner": (["https://images.example/banner.jpg"], "thumb[@aspect='banner']"),
    "outline": ([HARD], "outline"),
    "rating": (["7.5"], "ratings/rating[@max='10'][@default='true']/value"),
    "genres": (["Drama", "Mystery"], "genre"),
    "duration": (["45 min"], "runtime", ["45"]),
    "content_rating": (["TV-14"], "mpaa"),
    "network": (["Channel <9>", "Other"], "studio"),
}
EPISODE = {
    "id": (["x9"], "uniqueid[@type='unknown'][@default='true']"),
    "title": (["The Points %d"], "title"),
    "air_date": (["2009-01-0%d"], "aired"),
    "thumbnail": (["https://images.example/%d.jpg"], "thumb[@aspect='thumb']"),
    "outline": (["What happens in %d"], "plot"),
    "genre": (["Drama"], "genre"),
    "director": (["Ida Roth"], "director"),
    "rating": (["8.1"], "ratings/rating[@max='10'][@default='true']/value"),
}
# All elements that a media centre knows of those that are written.
KNOWN = set("title showtitle ratings outline plot mpaa runtime uniqueid genre country director year premiered aired "
            "studio thumb actor season episode".split())

ADDON = """#!/bin/sh
verb=$1
shift
number=
while getopts t:n:i:l:s:e:o: option; do
  case $option in
    e) number=.$OPTARG ;;
    o) out=$OPTARG ;;
  esac
done
exec cp "/tmp/documents/$verb$number" "$out"
"""


def cdata(text):
    return "<![CDATA[" + html.escape(text, quote=False) + "]]>"


def elements(fields, number=0):
    return "".join(f"<{name}>{cdata(value % number if '%d' in value else value)}</{name}>"
                   for name, (values, *_) in fields.items() for value in values)


def document(root, fields, number=0):
    cast = "".join(f"<actor><name>{cdata(name)}</name><role>{cdata(role)}</role></actor>"
                   for name, role in ACTORS)
    return f"<{root}>{elements(fields, number)}{cast}</{root}>"


def found(root, entry, fields):
    return f"<{root}><{entry}>{elements({name: fields[name] for name in ('id', 'title')})}</{entry}></{root}>"


def roots_of(path):
    """The files of several episodes have a root for each."""
    text = path.read_text(encoding="utf-8")
    declaration = re.match(r"<\?xml [^>]*\?>\n", text)
    return list(ElementTree.fromstring("<all>" + text[declaration.end():] + "</all>"))


class NfoTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        documents = pathlib.Path("/tmp/documents")
        documents.mkdir()
        for name, text in {
                "searchmovie": found("movielist", "movie", MOVIE),
                "getmovieinfobyid": document("movie", MOVIE),
                "searchtvshow": found("tvshowlist", "tvshow", SHOW),
                "gettvshowinfo": document("tvshow", SHOW),
                "gettvshowinfo.3": document("tvepisode", EPISODE, 3),
                "gettvshowinfo.4": document("tvepisode", EPISODE, 4)}.items():
            (documents / name).write_text(text, encoding="utf-8")
        addon = pathlib.Path("/etc/config/addon")
        addon.write_text(ADDON)
        addon.chmod(0o755)
        pathlib.Path("/etc/config/zorp.conf").write_text("".join(
            f"[{kind}]\nClass=Kestrawind\nType={kind}\nEnable=TRUE\nShell={addon}\n"
            for kind in ("Movie", "TV")))
        season = pathlib.Path("/tmp/films/Signal & Row/Season 2")
        season.mkdir(parents=True)
        (season / "S02E03-E04.mkv").touch()
        pathlib.Path("/tmp/films/Film {tmdb-77}.mkv").touch()
        cls.scan()

    @staticmethod
    def scan():
        text = subprocess.run([os.environ["QUILP_PROGRAM"], "scan", "/tmp/films", "--write", "nfo", "--journal",
                               "/tmp/journal", "--format", "json"], check=True, stdout=subprocess.PIPE).stdout
        return json.loads(text)

    def check(self, root, fields, number=0):
        for name, (values, place, *others) in fields.items():
            wanted = [value.replace("%d", str(number)) for value in (others[0] if others else values)]
            self.assertEqual([each.text for each in root.findall(place)], wanted, name)
        self.assertEqual([(actor.findtext("name"), actor.findtext("role") or "", actor.findtext("order"))
                          for actor in root.findall("actor")],
                         [(name, role, str(i)) for i, (name, role) in enumerate(ACTORS)])
        self.assertLessEqual({each.tag for each in root}, KNOWN)
        self.assertEqual([each for each in root.iter() if not len(each) and not each.text], [])

    def test_film(self):
        root, = roots_of(pathlib.Path("/tmp/films/Film {tmdb-77}.nfo"))
        self.assertEqual(root.tag, "movie")
        self.check(root, MOVIE)

    def test_show(self):
        root, = roots_of(pathlib.Path("/tmp/films/Signal & Row/tvshow.nfo"))
        self.assertEqual(root.tag, "tvshow")
        self.check(root, SHOW)
        self.assertEqual(root.findtext("year"), "2008")

    def test_identifiers_are_known_again(self):
        pathlib.Path("/tmp/films/Film {tmdb-77}.mkv").rename("/tmp/films/Film.mkv")
        pathlib.Path("/tmp/films/Film {tmdb-77}.nfo").rename("/tmp/films/Film.nfo")
        rows = {row["kind"]: row for row in self.scan()}
        self.assertEqual([(rows[kind]["id"], rows[kind]["reason"].split(";")[0])
                          for kind in ("movie", "episode")],
                         [(id_, "its NFO file has the identifier") for id_ in ("tmdb:77", "tt8000001")])
        for end in ("mkv", "nfo"):
            pathlib.Path(f"/tmp/films/Film.{end}").rename(f"/tmp/films/Film {{tmdb-77}}.{end}")

    def test_episodes(self):
        roots = roots_of(pathlib.Path("/tmp/films/Signal & Row/Season 2/S02E03-E04.nfo"))
        self.assertEqual([root.tag for root in roots], ["episodedetails"] * 2)
        for number, root in zip((3, 4), roots):
            self.check(root, EPISODE, number)
            self.assertEqual([root.findtext(name) for name in ("season", "episode", "showtitle", "year")],
                             ["2", str(number), "Signal & Row", "2009"])


unittest.main()
