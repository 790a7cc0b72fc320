#!/usr/bin/python3
"""A TV add-on that answers from its own small table. libquilp runs it as

  addon-tv.py searchtvshow -t KEYWORD -n COUNT -l LANGUAGE -o FILE
  addon-tv.py gettvshowinfo -i ID -l LANGUAGE -o FILE
  addon-tv.py gettvshowinfo -i ID -s SEASON -e EPISODE -l LANGUAGE -o FILE

once it is registered with Type=TV; see quilp-addon(7).
"""

import getopt
import sys

SHOWS = {
    "sr21": {
        "title": {"en": "Signal at the Row's End", "fr": "Signal au bout du rang"},
        "first": "2014-03-02", "last": "2016-05-20", "rating": "7.9",
        "outline": "A signalman & his daughter answer trains that left long ago.",
        "genres": ["Drama", "Mystery"], "network": "Harbour One", "creator": "Pilar Ostrow",
        "cast": [("Hedda Lund", "Jane Doe"), ("Jørn Vale", "Postman")],
        "episodes": {(1, 1): ("The 6.12 to Nowhere", "2014-03-02", "Émile Sørby"),
                     (1, 2): ("Red over Green", "2014-03-09", "Bea Lomax")},
    },
    "sc22": {
        "title": {"en": "The Slow Comet"},
        "first": "2015-09-11", "last": "2015-11-27", "rating": "8.2",
        "outline": "It passes once in a life, and stays for a whole autumn.",
        "genres": ["Family"], "network": "Tide TV", "creator": "Ida Roth",
        "cast": [("Zoé Kerr", "")],
        "episodes": {(1, 1): ("Perihelion", "2015-09-11", "Ida Roth")},
    },
}


class NothingFound(Exception):
    pass


def element(name, value):
    """libquilp reads only the first CDATA section of an element; it cannot contain "]]>"."""
    return f"<{name}><![CDATA[{value.replace(']]>', '')}]]></{name}>\n"


def actors(cast):
    return "".join("<actor>\n" + element("name", name) + element("role", role) + "</actor>\n"
                   for name, role in cast)


def title(show, language):
    return show["title"].get(language, show["title"]["en"])


def search(keyword, count, language):
    text = ""
    found = [(id, show) for id, show in SHOWS.items()
             if any(keyword.lower() in name.lower() for name in show["title"].values())]
    for id, show in found[:count]:
        text += "<tvshow>\n" + element("url", f"https://images.example/{id}-small.jpg")
        text += element("id", id) + element("title", title(show, language))
        text += element("first_air_date", show["first"])
        text += element("outline", show["outline"]) + "</tvshow>\n"
    return f"<tvshowlist>\n{text}</tvshowlist>\n"


def details(id, language):
    if id not in SHOWS:
        raise NothingFound
    show = SHOWS[id]
    text = element("id", id) + element("title", title(show, language))
    text += element("first_air_date", show["first"]) + element("last_air_date", show["last"])
    text += element("poster", f"https://images.example/{id}.jpg")
    text += element("outline", show["outline"]) + element("rating", show["rating"])
    text += actors(show["cast"]) + "".join(element("genres", genre) for genre in show["genres"])
    text += element("network", show["network"]) + element("creator", show["creator"])
    return f"<tvshow>\n{text}</tvshow>\n"


def episode(id, season, number):
    show = SHOWS.get(id)
    if show is None or (season, number) not in show["episodes"]:
        raise NothingFound
    name, date, director = show["episodes"][season, number]
    text = element("id", f"{id}-{season}-{number}") + element("title", name)
    text += element("air_date", date) + actors(show["cast"]) + element("director", director)
    return f"<tvepisode>\n{text}</tvepisode>\n"


def answer(verb, options):
    if verb == "searchtvshow":
        return search(options["-t"], int(options["-n"]), options["-l"])
    if verb == "gettvshowinfo" and "-s" in options:
        return episode(options["-i"], int(options["-s"]), int(options["-e"]))
    if verb == "gettvshowinfo":
        return details(options["-i"], options["-l"])
    raise ValueError(verb)


def main():
    try:
        # Unlike argparse, getopt accepts a value that begins with "-".
        options = dict(getopt.getopt(sys.argv[2:], "t:n:i:s:e:l:o:")[0])
        document = answer(sys.argv[1], options)
        with open(options["-o"], "w", encoding="utf-8", errors="replace") as file:
            file.write(document)
    except (NothingFound, OSError):
        return 1
    except (getopt.GetoptError, LookupError, ValueError):
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main())
