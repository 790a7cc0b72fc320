"""Answers add-ons on loopback as their services do: services_server.py PORT LOG CERTIFICATE KEY

What it answers is in the folder services: a request is answered by the first row that fits."""

import http.server
import os
import re
import ssl
import sys
import time
import urllib.parse

MBID = "1111aaaa-2222-4333-8444-00000000000"

# Of a row: path, what the query must hold, the file, or the text of an answer.
ROWS = [
    ("/musicbrainz/release-group", {"query": r'releasegroup:"Breakwater \\"Live\\""( AND artist:"Mira Holm")?'}, "musicbrainz_albums.json"),
    ("/musicbrainz/release-group", {"query": r"releasegroup:\(breakwater \\-\\- live\)"}, "musicbrainz_albums.json"),
    ("/musicbrainz/release-group", {"artist": MBID + "a", "offset": "0"}, "musicbrainz_browse.json"),
    ("/musicbrainz/release-group", {"artist": MBID + "a", "offset": "2"},
     '{"release-groups": [{"id": "x", "title": "Neap", "first-release-date": "1997"}], "release-group-count": 3}'),
    ("/musicbrainz/release-group", {}, '{"count": 0, "release-groups": []}'),
    ("/musicbrainz/artist", {"query": '(?i).*Mira Holm.*'}, "musicbrainz_artists.json"),
    ("/musicbrainz/artist", {}, '{"artists": []}'),
    ("/musicbrainz/artist/" + MBID + "a", {"inc": "url-rels"}, "musicbrainz_relations.json"),
    ("/coverartarchive/release-group/" + MBID + "1", {}, "coverartarchive.json"),
    ("/fanart/music/" + MBID + "a", {"api_key": "fk3y"}, "fanart.json"),
    ("/wikidata/w/api.php", {"srsearch": "(?i)copper gate haswbstatement:P31=Q11424.*"}, "wikidata_search.json"),
    ("/wikidata/w/api.php", {"srsearch": "(?i)mooring haswbstatement:P31=Q5398426.*"}, '{"query": {"search": [{"title": "Q930001"}]}}'),
    ("/wikidata/w/api.php", {"srsearch": "haswbstatement:P345=tt9100001"}, '{"query": {"search": [{"title": "Q910001"}]}}'),
    ("/wikidata/w/api.php", {"action": "query", "list": "search"}, '{"query": {"search": []}}'),
    ("/wikidata/w/api.php", {"ids": r"Q910001\|Q910002"}, "wikidata_hits.json"),
    ("/wikidata/w/api.php", {"ids": "Q910001"}, "wikidata_movie.json"),
    ("/wikidata/w/api.php", {"ids": "Q910002"}, "wikidata_hits.json"),
    ("/wikidata/w/api.php", {"ids": "Q930001"}, "wikidata_show.json"),
    ("/wikidata/w/api.php", {"ids": "Q930002"}, "wikidata_season.json"),
    ("/wikidata/w/api.php", {"ids": "Q930003"}, "wikidata_episode.json"),
    ("/wikidata/w/api.php", {"ids": "Q9200.*"}, "wikidata_names.json"),
    ("/wikidata/w/api.php", {"ids": "Q11424"}, "{}"),
    ("/wikidata/w/api.php", {"titles": "File:Copper gate poster.jpg"}, '''{"query": {"pages": [
       {"title": "File:Copper gate poster.jpg", "imageinfo": [{"thumburl": "https://upload.example.org/960px-gate.jpg"}]}]}}'''),
    ("/wikipedia/en/api/rest_v1/page/summary/Film", {}, "{}"),
    ("/wikipedia/en/api/rest_v1/page/summary/The_Copper_Gate_(film)", {}, "wikipedia_summary.json"),
    ("/wikidata/w/api.php", {"action": "wbgetentities", "ids": "Q900001"}, "musicbrainz_entity.json"),
    ("/wikidata/w/api.php", {"titles": r"File:Mira Holm \(2014\).jpg\|File:Holm & band.png"}, "wikimedia_files.json"),
    ("/tmdb/search/movie", {"query": "(?i)(the )?paper boat", "language": "en-US", "api_key": "k3y"}, "tmdb_search_english.json"),
    ("/tmdb/search/movie", {"query": "(?i)(the )?paper boat", "year": "", "api_key": "k3y"}, "tmdb_search.json"),
    ("/tmdb/search/tv", {"query": "(?i)flutlicht"}, '{"results": [{"id": 8101, "name": "Flutlicht", "overview": "x"}]}'),
    ("/tmdb/search/movie", {}, '{"results": []}'),
    ("/tmdb/search/tv", {}, '{"results": []}'),
    ("/tmdb/find/tt8000001", {}, "tmdb_find.json"),
    ("/tmdb/movie/8001", {"append_to_response": ".*translations.*"}, "tmdb_movie.json"),
    ("/tmdb/tv/8101", {}, "tmdb_show.json"),
    ("/tmdb/tv/8101/season/1/episode/2", {}, "tmdb_episode.json"),
    ("/tmdb/configuration", {}, "{}"),
    ("/tvmaze/search/shows", {"q": "(?i)salt tide"}, "tvmaze_search.json"),
    ("/tvmaze/search/shows", {}, "[]"),
    ("/tvmaze/lookup/shows", {"imdb": "tt7000001"}, "tvmaze_show.json"),
    ("/tvmaze/shows/7001", {}, "tvmaze_show.json"),
    ("/tvmaze/shows/7001/episodebynumber", {"season": "1", "number": "1"}, "tvmaze_episode.json"),
]


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        log.write("%s %s %.3f\n" % (self.path, self.headers.get("Authorization", "-"), time.time()))
        log.flush()
        address = urllib.parse.urlsplit(self.path)
        path = urllib.parse.unquote(address.path)
        query = urllib.parse.parse_qs(address.query)
        status, body = 404, b""
        for wanted, values, answer in ROWS:
            fits = all(re.fullmatch(value, query.get(name, [""])[0]) for name, value in values.items())
            if wanted == path and fits:
                status, body = 200, answer.encode()
                if answer.endswith(".json"):
                    with open(os.path.join(os.path.dirname(__file__), "services", answer), "rb") as file:
                        body = file.read()
                break
        self.send_response(status)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


log = open(sys.argv[2], "a")
server = http.server.ThreadingHTTPServer(("127.0.0.1", int(sys.argv[1])), Handler)
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[3], sys.argv[4])
server.socket = context.wrap_socket(server.socket, server_side=True)
server.serve_forever()
