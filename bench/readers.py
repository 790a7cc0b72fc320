"""Python's reader of release names: what guessit tells of the names in a file, as lines of JSON.

Usage: readers.py NAMES OUTPUT
"""

import json
import sys

import guessit

KEYS = {"title": "title", "year": "year", "season": "season", "episode": "episode",
        "absolute_episode": "absolute_episode", "date": "air_date", "type": "kind",
        "episode_title": "episode_title", "screen_size": "resolution", "source": "source_medium",
        "video_codec": "video_codec", "audio_codec": "audio_codec", "release_group": "group",
        "edition": "edition", "part": "part", "language": "language"}

names, output = sys.argv[1:]
with open(names, encoding="utf-8") as lines, open(output, "w", encoding="utf-8") as told:
    for line in lines:
        name = line.rstrip("\n")
        found = guessit.guessit(name)
        fields = {key: found[theirs] for theirs, key in KEYS.items() if theirs in found}
        print(json.dumps(dict(fields, name=name), default=str), file=told)
