#!/usr/bin/python3
"""A tree of media files, named as people and groups name them, and what each one is.

usage: scan_tree.py SETS TREE TRUTH [--movies N] [--episodes N] [--songs N] [--seed N]

SETS has the data sets of catalogue_data, uncompressed. Of the files, which are empty, one in twenty is of
nothing that the sets have, and one in twenty is misleading. TRUTH gets a line of JSON for each item: its path in
the tree, "is" (identifier; of a song its title; null for nothing that is known), season and episode, the
class of its name, and whether one can tell: no other title has that name, and the name says what it must.
"""

import argparse
import collections
import json
import pathlib
import random
import re
import unicodedata

FILMS = {"movie", "short", "tvMovie", "video", "tvSpecial"}
SHOWS = {"tvSeries", "tvMiniSeries", "tvPilot"}
GROUPS = ("SALTY", "TIDE", "GULL", "PiER")
TAGS = ("720p.BluRay.x264", "1080p.BluRay.DTS.x265", "1080p.WEB-DL.DD5.1.H264", "DVDRip.XviD",
        "2160p.UHD.BluRay.HDR.HEVC", "720p.HDTV.x264")
TOPICS = ("Harbour Lights", "Paper Moths", "Salt Road", "Late Ferry", "Quiet Rooms", "Long Tide")
SINGERS = ("Anna Lane", "Tom Reed", "Ida Roth", "Los Tres Faros", "林小雨", "陳大海", "한별", "สายลม")
Title = collections.namedtuple("Title", "id type title original year votes names")


def rows(folder, name):
    with open(folder / f"{name}.tsv", encoding="utf-8") as file:
        next(file)
        for line in file:
            yield line.rstrip("\n").split("\t")


def plain(text):
    """What two names have to share to look alike."""
    text = unicodedata.normalize("NFKD", text.casefold().replace("&", " and "))
    text = "".join(c if c.isalnum() else "" if unicodedata.combining(c) or c == "'" else " "
                   for c in text)
    numerals = {"ii": "2", "iii": "3", "iv": "4"}
    words = [numerals.get(word, word) for word in text.split()]
    return " ".join(words[1:] if words[:1] in (["the"], ["a"]) and words[1:] else words)


class Sets:
    def __init__(self, folder):
        votes = {row[0]: int(row[2]) for row in rows(folder, "title.ratings")}
        other = collections.defaultdict(list)
        for row in rows(folder, "title.akas"):
            other[row[0]].append(row[2])
        self.films, self.shows, episodes = [], {}, {}
        self.bearers = collections.defaultdict(set)  # of a name: identifiers, with and without year
        for id_, type_, title, original, adult, year, _, _, _ in rows(folder, "title.basics"):
            if type_ == "tvEpisode":
                episodes[id_] = (title, year)
                continue
            if type_ not in FILMS | SHOWS:
                continue
            names = {title, original, *other[id_]}
            one = Title(id_, type_, title, original, int(year) if year != "\\N" else 0,
                        votes.get(id_, 0), sorted(names - {title, original}))
            if type_ in SHOWS:
                self.shows[id_] = one
            elif adult == "0":
                self.films.append(one)
            for name in names:
                self.bearers[type_ in SHOWS, plain(name)].add((id_, one.year))
        self.episodes = collections.defaultdict(dict)  # of a show: (season, number) -> title
        for id_, show, season, number in rows(folder, "title.episode"):
            if show in self.shows and season != "\\N" and id_ in episodes:
                self.episodes[show][int(season), int(number)] = episodes[id_][0]

    def alone(self, is_show, name, year=None):
        """Whether at most one title has the name, in that year or one beside it."""
        return len({id_ for id_, at in self.bearers.get((is_show, plain(name)), ())
                    if not year or not at or abs(at - year) <= 1}) <= 1


def dotted(text):
    return re.sub(r"[^\w&'-]+", ".", text).strip(".")


def safe(text):
    return text.replace(":", " -").replace("/", "-").replace("?", "").strip(" .")


def typo(text, rng):
    at = rng.choice([i for i in range(1, len(text) - 1) if text[i].isalpha()])
    return rng.choice((text[:at] + text[at + 1:], text[:at] + text[at] + text[at:],
                       text[:at] + rng.choice("aeinorst") + text[at + 1:]))


def without_accents(text):
    return "".join(c for c in unicodedata.normalize("NFD", text) if not unicodedata.combining(c))


# Each gives files; the first names the item, or its folder does.
def scene(t, y, rng):
    return [f"{dotted(t)}.{y}.{rng.choice(TAGS)}-{rng.choice(GROUPS)}.mkv"]


MOVIES = {
    "scene": scene,
    "scene in a folder": lambda t, y, rng: [(name := scene(t, y, rng)[0])[:-4] + "/" + name],
    "folder and file": lambda t, y, rng: [f"{safe(t)} ({y})/{safe(t)} ({y}).mkv"],
    "brackets": lambda t, y, rng: [f"{safe(t)} [{y}] [1080p].mp4"],
    "blanks": lambda t, y, rng: [f"{safe(t)} {y} 720p.avi"],
    "low line": lambda t, y, rng: [f"{dotted(t).lower().replace('.', '_')}_{y}_dvdrip.avi"],
    "edition": lambda t, y, rng: [f"{safe(t)} ({y}) {rng.choice(('Directors Cut', 'EXTENDED'))} 1080p.mkv"],
    "site": lambda t, y, rng: [f"[ www.example.com ] {dotted(t)}.{y}.DVDRip.avi"],
    "nameless file": lambda t, y, rng: [f"{safe(t)} ({y})/movie.mkv"],
    "parts": lambda t, y, rng: [f"{dotted(t)}.{y}.DVDRip.cd{i}.avi" for i in (1, 2)],
    "disc": lambda t, y, rng: [f"{safe(t)} ({y})/BDMV/STREAM/{i:05}.m2ts" for i in (1, 2)],
    "without accents": lambda t, y, rng: scene(without_accents(t), y, rng),
    "typing error": lambda t, y, rng: [f"{safe(typo(t, rng))} ({y}).mkv"],
    "year off by one": lambda t, y, rng: [f"{safe(t)} ({y + rng.choice((-1, 1))}).mkv"],
    "no year": lambda t, y, rng: [f"{safe(t)}.mkv"],
    "year first": lambda t, y, rng: [f"({y}) {safe(t)}.avi"],
    "year in wide brackets": lambda t, y, rng: [f"{safe(t)}（{y}）[1080P].mkv"],
    "capitals": lambda t, y, rng: [f"{dotted(t).upper()}.{y}.1080P.WEB-DL.H264-TIDE.mkv"],
    "languages": lambda t, y, rng: [f"{dotted(t)}.{y}.{rng.choice(('FRENCH', 'GERMAN.DL'))}.BDRip.x264.mkv"],
}
EPISODES = {
    "scene": lambda t, y, s, e, n, rng:
        f"{dotted(t)}.S{s:02}E{e:02}.{rng.choice(TAGS)}-{rng.choice(GROUPS)}.mkv",
    "season folder": lambda t, y, s, e, n, rng:
        f"{safe(t)}/Season {s:02}/{safe(t)} - S{s:02}E{e:02} - {safe(n)}.mkv",
    "number in a season folder": lambda t, y, s, e, n, rng:
        f"{safe(t)}{f' ({y})' if y else ''}/Season {s}/S{s:02}E{e:02} - {safe(n)}.mkv",
    "year": lambda t, y, s, e, n, rng: f"{dotted(t)}.{y or ''}.S{s:02}E{e:02}.720p.mkv",
    "cross": lambda t, y, s, e, n, rng: f"{dotted(t).lower().replace('.', '_')}_{s}x{e:02}.avi",
    "words": lambda t, y, s, e, n, rng: f"{safe(t)} Season {s} Episode {e}.mp4",
    "without accents": lambda t, y, s, e, n, rng: f"{dotted(without_accents(t))}.s{s:02}e{e:02}.mkv",
    "typing error": lambda t, y, s, e, n, rng: f"{safe(typo(t, rng))} S{s:02}E{e:02}.mkv",
    "two in a file": lambda t, y, s, e, n, rng: f"{safe(t)} S{s:02}E{e:02}-E{e + 1:02}.mkv",
    "German": lambda t, y, s, e, n, rng: f"{safe(t)} Staffel {s} Folge {e:02}.mkv",
    "Russian": lambda t, y, s, e, n, rng: f"{safe(t)} Сезон {s} Серия {e}.avi",
    "Chinese": lambda t, y, s, e, n, rng: f"{safe(t)}.第{s}季.第{e:02}集.国语.mkv",
    "absolute number": lambda t, y, s, e, n, rng: f"[Tide-Subs] {safe(t)} - {e:02} [1080p].mkv",
}
SONGS = {
    "artist and title": lambda a, t, i: [f"{a} - {t}.kar"],
    "sound and pictures": lambda a, t, i: [f"SC{i:04}-05 - {a} - {t}.{x}" for x in ("cdg", "mp3")],
    "tags": lambda a, t, i: [f"{a} - {t} (Karaoke Version).mp4"],
    "marks": lambda a, t, i: [f"{a}[F]_{t}[E][L].mkv"],
    "number": lambda a, t, i: [f"{i:02} {a} - {t} [Instrumental].mp3"],
}


class Tree:
    def __init__(self, sets, folder, rng):
        self.sets, self.folder, self.rng = sets, folder, rng
        self.truth, self.taken = [], set()

    def add(self, files, kind, name, is_, sure, **more):
        """False where there is a file of that name, or the name is too long."""
        item = files[0].split("/BDMV/")[0]
        stem = item.rsplit(".", 1)[0]
        paths = [self.folder / file for file in files]
        if {item, stem} & self.taken or any(len(part.encode()) > 250 for part in paths[0].parts):
            return False
        self.taken.update((item, stem, *(path.parent.name for path in paths[:1]
                                         if path.parent != self.folder and kind == "movie")))
        for path in paths:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        self.truth.append({"file": item, "kind": kind, "class": name, "is": is_, "sure": sure, **more})
        return True

    def invented(self):
        """A title that the sets do not have."""
        letters = "bcdfglmnprst"
        words = ["".join(self.rng.choice(letters) + self.rng.choice("aeiou") for _ in range(4)).capitalize()
                 for _ in range(2)]
        return " ".join(words)

    def movies(self, count):
        known = [film for film in self.sets.films if film.year and len(plain(film.title)) > 2]
        films = iter(self.rng.sample(known, len(known)))
        for i in range(count):
            while not self.movie(next(films), i % 20):
                pass

    def movie(self, film, turn):
        rng = self.rng
        if turn == 0:
            title, year = self.invented(), rng.randrange(1930, 2026)
            return self.add(scene(title, year, rng), "movie", "unknown", None, False)
        if turn == 1:
            return self.misleading(film)
        name = rng.choice(list(MOVIES) + ["other title", "identifier", "NFO"])
        title = film.title
        if name == "other title":
            title = rng.choice([film.original, *film.names])
        if name in ("identifier", "NFO"):
            files = ([f"{safe(title)} {{imdb-{film.id}}}.mkv"] if name == "identifier"
                     else [f"{rng.randrange(10**9):09}x/{rng.choice(TOPICS)}.mkv"])
            alone = True
        else:
            if name == "typing error" and len(title) < 8 or name == "without accents" and title.isascii():
                name = "scene"
            files = MOVIES.get(name, scene)(title, film.year, rng)
            alone = self.sets.alone(False, title, None if name in ("no year", "year off by one",
                                                                   "typing error") else film.year)
        if not self.add(files, "movie", name, film.id, alone):
            return False
        if name == "NFO":
            (self.folder / files[0]).with_suffix(".nfo").write_text(
                f'<movie><uniqueid type="imdb">{film.id}</uniqueid></movie>\n')
        return True

    def misleading(self, film):
        """Names that are nearly those of a film, and are of none that is known, or of another year."""
        rng, title, year, is_ = self.rng, film.title, film.year, None
        name = rng.choice(("wrong year", "another part", "another word", "another film's folder"))
        files = None
        if name == "wrong year":
            year, is_ = year - rng.randrange(6, 20), film.id
        elif name == "another part":
            title += f" {rng.randrange(5, 9)}"
        elif name == "another word":
            words = title.split()
            words[rng.randrange(len(words))] = self.invented().split()[0]
            title = " ".join(words)
        else:
            other, is_ = rng.choice(self.sets.films), film.id
            files = [f"{safe(other.title)} ({other.year})/{scene(title, year, rng)[0]}"]
        if is_ is None and (False, plain(title)) in self.sets.bearers:
            return False
        return self.add(files or scene(title, year, rng), "movie", name, is_, False)

    def episodes(self, count):
        shows = [self.sets.shows[id_] for id_ in self.sets.episodes]
        self.rng.shuffle(shows)
        done = 0
        while done < count:  # in turns, for some shows have few
            show = shows.pop()
            numbers = sorted(self.sets.episodes[show.id])
            name = self.rng.choice(list(EPISODES))
            for number in self.rng.sample(numbers, min(len(numbers), 40, count - done)):
                done += self.episode(show, number, name, done % 20)
        return done

    def episode(self, show, number, name, turn):
        rng, (season, episode) = self.rng, number
        known = self.sets.episodes[show.id][number]
        if turn == 0:
            file = EPISODES["scene"](self.invented(), 0, season, episode, "", rng)
            return self.add([file], "episode", "unknown", None, False)
        if turn == 1:
            file = EPISODES["scene"](show.title, 0, season + 60, episode, "", rng)
            return self.add([file], "episode", "no such episode", None, False)
        if (name == "typing error" and len(show.title) < 8 or name == "absolute number" and season != 1 or
                name == "two in a file" and (season, episode + 1) not in self.sets.episodes[show.id]):
            name = "scene"
        file = EPISODES[name](show.title, show.year, season, episode, known, rng)
        told = name in ("year", "number in a season folder") and show.year
        alone = self.sets.alone(True, show.title, show.year if told else None)
        numbers = {"two in a file": [episode, episode + 1], "absolute number": None}.get(name, episode)
        return self.add([file], "episode", name, show.id, alone, episode=numbers, episode_title=known,
                        season=None if name == "absolute number" else season)

    def songs(self, count):
        for i in range(count):
            while not self.song(i):
                pass

    def song(self, i):
        rng = self.rng
        title = f"{rng.choice(TOPICS)} of {self.invented()}"
        if i % 20 == 0:
            return self.add([f"Songs/QK{rng.randrange(10**4):04}-{i % 90 + 10}.cdg"], "song", "unknown", None,
                            False)
        if i % 20 == 1:
            return self.add([f"Songs/{title}.kar"], "song", "title alone", title, False)
        name = rng.choice(list(SONGS))
        files = [f"Songs/{file}" for file in SONGS[name](rng.choice(SINGERS), title, rng.randrange(1, 99))]
        return self.add(files, "song", name, title, True)


def make(sets, tree, truth, movies=5000, episodes=4000, songs=1000, seed=1):
    made = Tree(Sets(pathlib.Path(sets)), pathlib.Path(tree), random.Random(seed))
    made.movies(movies)
    made.episodes(episodes)
    made.songs(songs)
    with open(truth, "w", encoding="utf-8") as file:
        for one in made.truth:
            file.write(json.dumps(one, ensure_ascii=False) + "\n")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    for name in ("sets", "tree", "truth"):
        parser.add_argument(name)
    for name, count in (("movies", 5000), ("episodes", 4000), ("songs", 1000), ("seed", 1)):
        parser.add_argument(f"--{name}", type=int, default=count)
    make(**vars(parser.parse_args()))


if __name__ == "__main__":
    main()
