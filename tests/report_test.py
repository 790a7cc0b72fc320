"""The page of quilp scan --report in a browser: report_test.py PAGE."""

import json
import pathlib
import re
import sys
import unittest

from browser import Page

PATH = pathlib.Path(sys.argv.pop())
TEXT = PATH.read_text(encoding="utf-8")
ROWS = re.compile('(id="rows">)(.*?)(</script>)', re.S)
FILMS = json.loads(ROWS.search(TEXT)[2])
MANY = 5000

# The lines of the cards in their order.
SHOWN = """[...document.querySelectorAll("main article")].map(card =>
  [...card.querySelectorAll("h2, .text div")].map(line => line.textContent).join("\\n"))"""
FOCUS = "(document.activeElement.querySelector('h2') || document.activeElement).innerText"
OPEN = "document.querySelector('dialog').open"
# Two frames later all is drawn.
TIMED = """new Promise(done => {
  const start = performance.now();
  %s;
  requestAnimationFrame(() => requestAnimationFrame(() => done(performance.now() - start)));
})"""
# The least contrast of text with what is below it, by the formula of WCAG 2.
CONTRAST = """Math.min(...[".poster", "h2", ".dim", ".sure", ".unsure", ".unknown", "button",
    "#count"].map(name => {
    const light = colour => {
      const parts = colour.match(/[\\d.]+/g).map(part => part / 255)
        .map(part => part <= .04045 ? part / 12.92 : ((part + .055) / 1.055) ** 2.4);
      return .2126 * parts[0] + .7152 * parts[1] + .0722 * parts[2] + .05;
    };
    const element = document.querySelector(`main ${name}, header ${name}`);
    let back = element;
    while (getComputedStyle(back).backgroundColor === "rgba(0, 0, 0, 0)") back = back.parentElement;
    const pair = [element, back].map((each, i) =>
      light(getComputedStyle(each)[i ? "backgroundColor" : "color"])).sort((a, b) => b - a);
    return pair[0] / pair[1];
  }))"""


def press(name):
    return f"document.querySelector('button[data-show={name}]').click()"


def sorted_by(order):
    return (f"document.getElementById('sort').value = '{order}';"
            "document.getElementById('sort').dispatchEvent(new Event('change'))")


def state(row):
    return "unknown" if not row["match"] else "sure" if row["sure"] else "unsure"


class ReportTest(unittest.TestCase):
    def setUp(self):
        self.page = self.enterContext(Page())
        self.page.size(1280, 800)
        self.page.open(PATH.as_uri())

    def tearDown(self):
        self.assertEqual(self.page.complaints, [])
        self.assertEqual([each for each in self.page.requests
                          if not each.startswith("file:///tmp/")], [])

    def shown(self):
        return self.page.value(SHOWN)

    def test_filters_and_sorts(self):
        self.assertEqual(len(self.shown()), len(FILMS))
        for name in ("sure", "unsure", "unknown"):
            wanted = [row for row in FILMS if state(row) == name]
            self.assertGreater(len(wanted), 0)
            self.page.value(press(name))
            cards = self.shown()
            self.assertEqual(len(cards), len(wanted))
            self.assertTrue(all(re.search(rf"^{name}\b", card, re.M) for card in cards))
        self.page.value(press("sure"))
        sure = sorted(filter(lambda row: row["sure"], FILMS), key=lambda row: row["file"])
        wanted = {"folder": [row["match"] for row in sure],
                  "title": sorted((row["match"] for row in sure),
                                  key=lambda title: (title[0].isalnum(), title)),
                  "year": [row["match"] for row in sorted(sure, key=lambda row: row["match_year"])]}
        for order, titles in wanted.items():
            self.page.value(sorted_by(order))
            self.assertEqual([card.split("\n")[0] for card in self.shown()], titles, order)

    def test_is_used_by_keys(self):
        self.page.key("/")
        self.page.write("LIGHTHOUSE paper")
        self.assertEqual(len(self.shown()), 1)
        self.page.key("Escape")
        self.assertEqual(len(self.shown()), len(FILMS))
        self.page.write("light")
        self.page.key("ArrowDown")
        first, second = [card.split("\n") for card in self.shown()[:2]]
        self.assertIn(self.page.value(FOCUS), first)
        self.page.key("ArrowRight")
        self.assertIn(self.page.value(FOCUS), second)
        self.page.key("Enter", "\r")
        self.assertTrue(self.page.value(OPEN))
        self.assertIn(self.page.value("document.querySelector('dialog h2').innerText"), second)
        self.page.key("Escape")
        self.assertFalse(self.page.value(OPEN))
        self.assertIn(self.page.value(FOCUS), second)
        for key, moves in (("ArrowLeft", first), ("ArrowLeft", first), ("Tab", second)):
            self.page.key(key)
            self.assertIn(self.page.value(FOCUS), moves)
        self.page.key("/")
        self.page.key("Escape")
        self.page.key("ArrowDown")
        self.page.key("ArrowDown")
        tops = self.page.value("[document.activeElement, ...document.querySelectorAll('article')]"
                               ".map(one => one.offsetTop)")
        self.assertEqual(tops[0], sorted(set(tops))[1])

    def test_runs_nothing_of_a_title(self):
        files = sorted(row["file"] for row in FILMS)
        for i in range(len(files)):
            self.page.value(f"document.querySelectorAll('article')[{i}].click()")
            self.assertEqual(self.page.value("document.querySelector('dialog p').textContent"),
                             files[i])
            self.page.value("document.querySelector('dialog').close()")
        self.assertIsNone(self.page.value("window.ran"))
        self.assertEqual(self.page.value("document.querySelectorAll('script').length"), 2)
        self.assertIn("</script><script>window.ran = 1</script>", "\n".join(self.shown()))

    def test_shows_pictures(self):
        loaded = "[...document.images].map(one => one.decode().then(() => one.naturalWidth))"
        self.assertEqual(self.page.value(f"Promise.all({loaded})"), [1])
        (PATH.parent / "moved").mkdir()
        moved = PATH.parent / "moved" / PATH.name
        moved.write_text(TEXT, encoding="utf-8")
        self.page.open(moved.as_uri())
        self.page.value("new Promise(done => setTimeout(done, 200))")
        self.assertEqual(self.page.value("document.images.length"), 0)
        self.assertTrue(all("ERR_FILE_NOT_FOUND" in one for one in self.page.complaints))
        self.page.complaints.clear()

    def test_is_readable_in_the_dark_and_on_a_phone(self):
        backs = []
        for scheme in ("light", "dark"):
            self.page.colours(scheme)
            backs.append(self.page.value("getComputedStyle(document.body).backgroundColor"))
            self.assertGreaterEqual(self.page.value(CONTRAST), 4.5, scheme)
        self.assertNotEqual(*backs)
        self.page.size(360, 640, mobile=True)
        wide = "Math.max(document.documentElement.scrollWidth, visualViewport.width)"
        self.assertEqual(self.page.value(wide), 360)
        # A card may be no narrower than its column, nor its text than what it holds.
        self.assertEqual(self.page.value(
            "[...document.querySelectorAll('article, header, header *')]"
            ".filter(one => one.getBoundingClientRect().right > 360).length"), 0)
        for i in range(len(FILMS)):
            self.page.value(f"document.querySelectorAll('article')[{i}].click()")
            right = self.page.value("Math.max(...[...document.querySelectorAll('dialog, dialog *')]"
                                    ".map(one => one.getBoundingClientRect().right))")
            self.assertLessEqual(right, 360)
            self.page.value("document.querySelector('dialog').close()")

    def test_keeps_up_with_many(self):
        rows = []
        for i in range(MANY):
            row = dict(FILMS[i % len(FILMS)])
            row.update(file=f"/films/{i % 97}/{i} {row['title']}.mkv", match_year=1920 + i % 100)
            rows.append(row)
        data = json.dumps(rows).replace("<", "\\u003c")
        many = PATH.with_name("many.html")
        many.write_text(ROWS.sub(lambda found: found[1] + data + found[3], TEXT), encoding="utf-8")
        self.page.open(many.as_uri())
        times = {"loaded": self.page.value("performance.now()")}
        searched = "search.value = '4999'; search.dispatchEvent(new Event('input'))"
        for name, action in (("unsure", press("unsure")), ("all", press("all")),
                             ("by title", sorted_by("title")), ("by year", sorted_by("year")),
                             ("search", searched)):
            times[name] = self.page.value(TIMED % action)
            self.assertLess(times[name], 5000, name)
        self.assertEqual(len(self.shown()), 1)
        print(f"{MANY} rows:", ", ".join(f"{name} {each:.0f} ms" for name, each in times.items()))


unittest.main(verbosity=2)
