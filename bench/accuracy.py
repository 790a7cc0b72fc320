"""How many names each reader reads right: over the table of the tests, and over a folder of labelled
names with its own scorer (FOLDER/score.py, FOLDER/*.tsv)."""

import json
import pathlib
import re
import subprocess
import unicodedata

# What counts: the first field is the title, of the others those count that are told.
MEASURES = {"movie": ("title", "year"),
            "episode": ("title", "season", "episode", "absolute_episode", "air_date")}


def table_rows(path):
    """The rows of the tests' table: {"name": ..., "kind": ..., and the expected fields}."""
    for line in path.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            name, *fields = line.split("\t")
            yield dict((field.split("=", 1) for field in fields), name=name)


def plain(text):
    """The letters and digits of a title, which is all that one can expect of all readers."""
    folded = unicodedata.normalize("NFKC", str(text)).casefold().replace("'", "")
    return " ".join(re.sub(r"[\W_]+", " ", folded.replace("&", " and ")).split())


def values(told):
    if told is None or told == "":
        return set()
    return {str(one) for one in (told if isinstance(told, list) else str(told).split(";"))}


def is_right(row, told):
    title, *numbers = MEASURES[row["kind"]]
    found = told.get(title)
    if plain(found[0] if isinstance(found, list) else found or "") != plain(row.get(title, "")):
        return False
    # A number without a season may stand under either key.
    told = dict(told)
    if not values(told.get("episode")) or "season" not in row:
        both = told.get("absolute_episode") or told.get("episode")
        told.update({key: both for key in ("episode", "absolute_episode") if key in row})
    return all(values(told.get(key)) == values(row[key]) for key in numbers if key in row)


def told_by(path):
    lines = path.read_text(encoding="utf-8").splitlines()
    return {entry["name"]: entry for entry in map(json.loads, lines)}


def over_table(rows, path):
    """[right, all] by kind."""
    told, counts = told_by(path), {kind: [0, 0] for kind in MEASURES}
    for row in rows:
        if row.get("kind") in MEASURES:
            counts[row["kind"]][0] += is_right(row, told.get(row["name"], {}))
            counts[row["kind"]][1] += 1
    return counts


def over_folder(folder, corpus, path, script=None):
    """[right, all] of the joint measures by kind, as the folder's scorer counts them."""
    result = path.with_suffix(".score")
    command = ["python3", folder / "score.py", "--corpus", corpus, "--json", result]
    if script:
        command += ["--script", script]
    subprocess.run(command, stdin=path.open(), stdout=subprocess.DEVNULL, check=True)
    counts = json.loads(pathlib.Path(result).read_text())
    return {kind: counts.get(f"kind\t{kind}\t{joint}", [0, 0])
            for kind, joint in (("movie", "title+year"), ("episode", "title+season+episode"))}


def names_of(corpus):
    """The names of a folder's file: its column "name"."""
    heads, *lines = corpus.read_text(encoding="utf-8").splitlines()
    column = heads.split("\t").index("name")
    return [line.split("\t")[column] for line in lines]


def percent(count):
    right, every = count
    return f"{100 * right / every:.1f} %" if every else "-"
