"""The Python binding, with the built library. Runs in the box: python_test.sh."""
import os
import signal
import threading
import time
import unittest

import quilp
from quilp import Actor, Event, Lookup, Reason, Request, Route


def register(script: str) -> None:
    with open("/etc/config/addon", "w", encoding="utf-8") as addon:
        addon.write("#!/bin/sh\n" + script)
    os.chmod("/etc/config/addon", 0o755)
    with open("/etc/config/zorp.conf", "w", encoding="utf-8") as registry:
        registry.write("[a]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/addon\n")


def register_document(text: str) -> None:
    register(f"for f; do :; done\ncat >\"$f\" <<'END'\n{text}\nEND\n")


class Binding(unittest.TestCase):
    def test_values(self) -> None:
        register_document(
            "<movie><title><![CDATA[Ä & B]]></title><genre><![CDATA[G]]></genre><genre>"
            "<![CDATA[H]]></genre><actor><name><![CDATA[N]]></name><role><![CDATA[R]]></role>"
            "</actor></movie>")
        events = []
        answer = quilp.look_up(Lookup.MOVIE_DETAILS, id="tt1",
                               observer=lambda event, text, number: events.append((event, text)))
        self.assertEqual([event for event, _ in events], [Event.ADD_ON_STARTED, Event.ADD_ON_ENDED])
        self.assertEqual(events[0][1], "/etc/config/addon")
        self.assertTrue(answer, answer.sentence)
        self.assertEqual([movie.text("title") for movie in answer], ["Ä & B"])
        movie = answer[0]
        self.assertEqual((movie.text("year"), movie.all("genre")), (None, ("G", "H")))
        self.assertEqual(movie.cast, (Actor("N", "R"),))
        self.assertEqual(movie.all("actor"), ("N",))
        self.assertEqual((answer.add_on, answer.number), ("/etc/config/addon", 0))
        with self.assertRaises(IndexError):
            answer[1]

    def test_a_failure_is_no_exception(self) -> None:
        register("exit 3\n")
        answer = quilp.look_up(Lookup.MOVIE_SEARCH, keyword="x")
        self.assertFalse(answer)
        self.assertEqual((answer.reason, answer.number, len(answer)), (Reason.EXIT_STATUS, 3, 0))

    def test_a_name_is_read(self) -> None:
        answer = quilp.read_name("A Row/Season 2/A Row 2x01-02 [1080p].mkv")
        self.assertEqual(answer[0].all("episode"), ("1", "2"))
        self.assertEqual(quilp.read_name("Salt", quilp.NameKind.SONG)[0].text("kind"), "song")
        for wrong in (("a\0b",), ("x", 4)):
            with self.assertRaises(ValueError):
                quilp.read_name(*wrong)

    def test_wrong_use_raises(self) -> None:
        for wrong in ({"count": 0}, {"count": 2**64 + 1}, {"keyword": "a\0b"}, {"timeout": 0},
                      {"timeout": float("nan")}, {"timeout": 1e12}, {"route": 9}, {}):
            with self.assertRaises(ValueError, msg=str(wrong)):
                quilp.look_up(Lookup.MOVIE_SEARCH, **wrong)
        for wrong in ({"keyword": b"x"}, {"count": 1.5}, {"none": 1}):
            with self.assertRaises(TypeError, msg=str(wrong)):
                quilp.look_up(Lookup.MOVIE_SEARCH, **wrong)

    def test_timeout_and_cancel(self) -> None:
        register("sleep 60\n")
        start = time.monotonic()
        answer = quilp.look_up(Lookup.MOVIE_SEARCH, keyword="x", timeout=0.0001)
        self.assertEqual(answer.reason, Reason.TIMED_OUT)
        request = Request(Lookup.MOVIE_SEARCH, keyword="x", route=Route.ADD_ON)
        threading.Timer(0.1, request.cancel).start()
        self.assertEqual(request.run().reason, Reason.CANCELLED)
        self.assertLess(time.monotonic() - start, 10)

    def test_ctrl_c_ends_the_run(self) -> None:
        register("echo $$ >/etc/config/process\nsleep 60\n")
        threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT)).start()
        start = time.monotonic()
        with self.assertRaises(KeyboardInterrupt):
            quilp.look_up(Lookup.MOVIE_SEARCH, keyword="x")
        self.assertLess(time.monotonic() - start, 10)
        with open("/etc/config/process", encoding="utf-8") as process:
            self.assertFalse(os.path.exists(f"/proc/{process.read().strip()}"))

    def test_an_observer_that_raises_ends_the_run(self) -> None:
        register("sleep 60\n")

        def observe(event: Event, _text: str, _number: int) -> None:
            if event == Event.ADD_ON_STARTED:
                raise KeyError("mine")

        with self.assertRaises(KeyError):
            quilp.look_up(Lookup.MOVIE_SEARCH, keyword="x", observer=observe)

    def test_one_run_at_a_time(self) -> None:
        register("exit 3\n")
        raised = []

        def observe(_event: Event, _text: str, _number: int) -> None:
            try:
                request.run()
            except RuntimeError as error:
                raised.append(error)

        request = Request(Lookup.MOVIE_SEARCH, keyword="x", observer=observe)
        self.assertEqual(request.run().reason, Reason.EXIT_STATUS)
        self.assertTrue(raised)


if __name__ == "__main__":
    unittest.main()
