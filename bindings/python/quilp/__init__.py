"""libquilp: descriptive metadata for media files.

    answer = quilp.look_up(quilp.Lookup.MOVIE_SEARCH, keyword="Lighthouse", timeout=2)
    for movie in answer:
        print(movie.text("title"), movie.all("genre"))
    if not answer:
        print(answer.reason, answer.sentence)

A lookup that fails is no exception: Answer.reason says why. Wrong use raises TypeError, ValueError
or RuntimeError. Answers are ordinary objects, which may be used by any thread and kept.
"""

from __future__ import annotations

import json
import math
import operator
import threading
import weakref
from dataclasses import dataclass
from enum import IntEnum
from queue import SimpleQueue
from typing import Any, Callable, Dict, Iterator, Optional, Sequence, Tuple, overload

from . import _library

__all__ = [
    "Actor", "Answer", "Event", "Lookup", "NameKind", "Observer", "Reason", "Request", "Result",
    "Route", "look_up", "read_name", "version",
]


class Lookup(IntEnum):
    """What is looked up, and which arguments of Request that takes."""

    MOVIE_SEARCH = 1  # keyword, count, year, language
    MOVIE_DETAILS = 2  # id, language
    TV_SEARCH = 3  # keyword, count, year, language
    TV_DETAILS = 4  # id, language
    TV_EPISODE = 5  # id of the show, season, episode, language
    ALBUM_SEARCH = 6  # album, artist (optional), count
    ARTIST_ALBUMS = 7  # artist, count
    ARTIST_PICTURES = 8  # artist, count
    SONG = 9  # path of a karaoke song's file, which need not exist


class NameKind(IntEnum):
    """What the caller knows of a name that is to be read."""

    ANY = 0  # nothing: the name, its folders and its extension tell
    MOVIE = 1
    EPISODE = 2
    SONG = 3


class Route(IntEnum):
    """Who may answer."""

    ANY = 0  # an enabled add-on, or else the built-in route
    ADD_ON = 1
    BUILT_IN = 2


class Reason(IntEnum):
    """Why an answer is as it is. Answer.number has the number that belongs to it."""

    OK = 0
    NOTHING_FOUND = 1
    NO_ADD_ON = 2
    CANNOT_START = 3
    EXIT_STATUS = 4
    SIGNAL = 5
    TIMED_OUT = 6  # the answer has what was found so far
    CANCELLED = 7  # the same
    MALFORMED_DOCUMENT = 8
    NO_NETWORK = 9
    HTTP_STATUS = 10
    CHALLENGE = 11
    OUT_OF_MEMORY = 12
    WRONG_REQUEST = 13
    UNKNOWN_PAGE = 14
    OTHER = -1  # of a newer library


class Event(IntEnum):
    """Steps of a lookup."""

    ADD_ON_STARTED = 1  # text: its path
    ADD_ON_ENDED = 2  # number: its exit status, or -1 for a signal
    PAGE_FETCHED = 3  # text: the address; number: the HTTP status, 0 for none
    MESSAGE = 4  # text: a line for a log


Observer = Callable[[Event, str, int], None]


@dataclass(frozen=True)
class Actor:
    name: str
    role: Optional[str]


class Result:
    """One result. Elements are those of quilp-addon(7)."""

    def __init__(self, values: Dict[str, Any]) -> None:
        self._values = values

    @property
    def elements(self) -> Tuple[str, ...]:
        return tuple(self._values)

    def all(self, element: str) -> Tuple[str, ...]:
        """The values of an element: of "actor" the names."""
        value = self._values.get(element, [])
        if isinstance(value, str):
            return (value,)
        return tuple(one["name"] if isinstance(one, dict) else one for one in value)

    def text(self, element: str) -> Optional[str]:
        """The first value of an element; None where there is none."""
        return next(iter(self.all(element)), None)

    @property
    def cast(self) -> Tuple[Actor, ...]:
        return tuple(Actor(one["name"], one.get("role")) for one in self._values.get("actor", []))

    def __repr__(self) -> str:
        return f"Result({self._values!r})"


class Answer(Sequence[Result]):
    """The results of a lookup, and why it has them. True if the reason is OK."""

    def __init__(self, reason: Reason, number: int, whole: Dict[str, Any]) -> None:
        self.reason = reason
        self.number = number
        self.sentence: str = whole["sentence"]
        self.add_on: Optional[str] = whole["add_on"]
        self.seconds: float = whole["milliseconds"] / 1000
        self._results = tuple(Result(one) for one in whole["results"] or ())

    @overload
    def __getitem__(self, i: int) -> Result: ...
    @overload
    def __getitem__(self, i: slice) -> Tuple[Result, ...]: ...
    def __getitem__(self, i: Any) -> Any:
        return self._results[i]

    def __len__(self) -> int:
        return len(self._results)

    def __iter__(self) -> Iterator[Result]:
        return iter(self._results)

    def __bool__(self) -> bool:
        return self.reason == Reason.OK

    def __repr__(self) -> str:
        return f"<Answer {self.reason.name}: {len(self)} results>"


class Request:
    """A lookup that can be run, also several times, and cancelled from another thread.

    timeout is in seconds, for a whole run; None: no limit. The observer is called with each step,
    one at a time, from any thread. What it raises cancels the request and leaves run(). So does
    Ctrl-C, as soon as it is pressed, and what was started is ended.
    """

    def __init__(self, what: Lookup, *, keyword: Optional[str] = None, id: Optional[str] = None,
                 album: Optional[str] = None, artist: Optional[str] = None,
                 path: Optional[str] = None, language: Optional[str] = None,
                 count: Optional[int] = None, year: Optional[int] = None,
                 season: Optional[int] = None, episode: Optional[int] = None,
                 timeout: Optional[float] = None, route: Route = Route.ANY,
                 observer: Optional[Observer] = None) -> None:
        handle = _library.quilp_request_new(Lookup(what))
        if not handle:
            raise MemoryError
        self._handle = handle
        self._free = weakref.finalize(self, _library.quilp_request_free, handle)
        self._running = threading.Lock()
        self._failure: Optional[BaseException] = None
        for which, text in enumerate((keyword, id, album, artist, path, language), 1):
            if text is not None:
                self._set_text(which, text)
        for which, number in enumerate((count, year, season, episode), 1):
            if number is not None:
                self._set_number(which, number)
        if timeout is not None:
            if not 0 < timeout < 2**31 / 1000:  # also for what is no number
                raise ValueError(f"timeout: {timeout} is no time that a lookup can take")
            self._set_number(5, math.ceil(timeout * 1000))
        self._set_number(6, Route(route))
        if observer is not None:
            self._observe(observer)

    def _set_text(self, which: int, text: str) -> None:
        if _library.quilp_request_set_text(self._handle, which, _bytes_of(text)) != 0:
            raise MemoryError

    def _set_number(self, which: int, number: int) -> None:
        number = operator.index(number)
        # ctypes would cut off what does not fit.
        fits = -(2**31) <= number < 2**31
        if not fits or _library.quilp_request_set_number(self._handle, which, number) != 0:
            raise ValueError(f"{number} is no number that the request can have")

    def _observe(self, observer: Observer) -> None:
        myself = weakref.ref(self)  # no cycle: the request is freed as soon as it is not used

        def tell(_user: object, event: int, text: bytes, number: int) -> None:
            try:
                observer(Event(event), text.decode("utf-8", "replace"), number)
            except BaseException as error:
                request = myself()
                if request is not None and request._failure is None:
                    request._failure = error
                    request.cancel()

        self._callback = _library.OBSERVER(tell)
        _library.quilp_request_set_observer(self._handle, self._callback, None)

    def run(self) -> Answer:
        if not self._running.acquire(blocking=False):
            raise RuntimeError("the request is being run")
        try:
            answer = self._run_apart()
            failure, self._failure = self._failure, None
            if failure is not None:
                _library.quilp_answer_free(answer)
                raise failure
            return _answer_of(answer)
        finally:
            self._running.release()

    def _run_apart(self) -> Optional[int]:
        """From another thread: Python handles Ctrl-C only where the main thread runs its code."""
        if threading.current_thread() is not threading.main_thread():
            return _run(self._handle)
        answer: SimpleQueue[Optional[int]] = SimpleQueue()
        threading.Thread(target=lambda: answer.put(_run(self._handle))).start()
        try:
            return answer.get()
        except BaseException:
            self.cancel()
            _library.quilp_answer_free(answer.get())
            raise

    def cancel(self) -> None:
        """Ends the run under way, or the next one. A request stays cancelled."""
        _library.quilp_request_cancel(self._handle)


def _run(handle: int) -> Optional[int]:
    answer: Optional[int] = _library.quilp_run(handle)
    return answer


def _bytes_of(text: str) -> bytes:
    if not isinstance(text, str):
        raise TypeError(f"{text!r} is no str")
    if "\0" in text:
        raise ValueError(f"{text!r} has a zero byte")
    return text.encode("utf-8", "surrogateescape")


def _answer_of(answer: Optional[int]) -> Answer:
    """Frees the library's answer."""
    try:
        return _read(answer)
    finally:
        _library.quilp_answer_free(answer)


def _read(answer: Optional[int]) -> Answer:
    number = _library.quilp_answer_reason(answer)
    known = number in Reason._value2member_map_
    reason = Reason(number) if known else Reason.OTHER
    if reason == Reason.OUT_OF_MEMORY:
        raise MemoryError
    whole = json.loads(_library.quilp_answer_json(answer).decode("utf-8"))
    if reason == Reason.WRONG_REQUEST:
        raise ValueError(whole["sentence"])
    return Answer(reason, _library.quilp_answer_number(answer), whole)


def look_up(what: Lookup, **arguments: Any) -> Answer:
    """Runs a Request of these arguments."""
    return Request(what, **arguments).run()


def read_name(name: str, kind: NameKind = NameKind.ANY) -> Answer:
    """What the name of a release or of a karaoke song's file tells; nobody is asked."""
    return _answer_of(_library.quilp_read_name(_bytes_of(name), NameKind(kind)))


def version() -> str:
    """The version of the library, such as "1.1.0"."""
    text: bytes = _library.quilp_version()
    return text.decode()
