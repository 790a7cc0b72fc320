#!/usr/bin/python3
"""Looks up a movie within two seconds, and says why where there is none: lookup.py WORDS"""
import sys

import quilp

if len(sys.argv) != 2:
    sys.exit(2)
movies = quilp.look_up(quilp.Lookup.MOVIE_SEARCH, keyword=sys.argv[1], timeout=2)
for movie in movies:
    print(f"{movie.text('title') or '?'} ({movie.text('year') or '?'})")
if not movies:
    sys.exit(movies.sentence)
