"""Draws posters for invented films, scans them and pictures the page: screenshot.py PNG. Runs in the box."""

import base64
import pathlib
import random
import subprocess
import sys

from browser import Page

FILMS = pathlib.Path("/tmp/films")
FILES = {  # and the words on the poster; none for no poster
    "1950 Letters (2014)/1950.Letters.2014.BluRay.mkv": "1950|Letters",
    "Letters from Marrow (2015)/Letters.from.Marrow.2015.720p.mkv": "Letters|from|Marrow",
    "Lighthouse (1999)/Lighthouse.1999.DVDRip.avi": "Lighthouse",
    "Night Bus to Marrow (2013)/Night.Bus.to.Marrow.2013.mkv": "Night Bus|to Marrow",
    "Salt & Ember (2012)/salt and ember 2012 1080p.mkv": "Salt|& Ember",
    "Signal Row/Season 2/Signal.Row.S02E10.mkv": "Signal|Row",
    "The Grey Ferry (2010)/The Grey Ferry.mkv": "The Grey|Ferry",
    "The Paper Lighthouse (2011)/The.Paper.Lighthouse.2011.1080p.mkv": "The Paper|Lighthouse",
    "The Slow Comet/the_slow_comet_s01e01.mp4": "The Slow|Comet",
    "Zoë and the Tide (2009)/Zoe_and_the_Tide_2009.avi": "Zoë and|the Tide",
    "New/Nobody.Has.Filmed.This.2016.mkv": "",
    "New/Paper Lighthouse 2012.mkv": "",
}


def poster(words):
    """A sun above hills, in colours of the title's own."""
    rng = random.Random(words)
    hue = rng.randrange(360)
    shapes = [f'<rect width="200" height="300" fill="hsl({hue} 45% 30%)"/>',
              f'<circle cx="{rng.randrange(50, 150)}" cy="{rng.randrange(125, 145)}" '
              f'r="{rng.randrange(22, 44)}" fill="hsl({hue + 150} 60% 75%)"/>']
    for i in range(3):
        heights = [rng.randrange(150, 200) + i * 35 for _ in range(4)]
        shapes.append(f'<path d="M0 300V{heights[0]}C70 {heights[1]} 130 {heights[2]} 200 {heights[3]}'
                      f'V300Z" fill="hsl({hue + 20 * i} 40% {24 - i * 6}%)"/>')
    for i, line in enumerate(words.split("|")):
        shapes.append(f'<text x="14" y="{38 + 27 * i}" fill="#fff" font-weight="700" font-size="24" '
                      f'font-family="sans-serif">{line.replace("&", "&amp;")}</text>')
    return ("<body style='margin:0'><svg width='200' height='300' "
            "xmlns='http://www.w3.org/2000/svg'>" + "".join(shapes) + "</svg>")


def picture(page, width, height):
    return base64.b64decode(page.call("Page.captureScreenshot", format="png", clip={
        "x": 0, "y": 0, "width": width, "height": height, "scale": 1})["data"])


def main():
    with Page() as page:
        for name, words in FILES.items():
            file = FILMS / name
            file.parent.mkdir(parents=True, exist_ok=True)
            file.touch()
            if words:
                page.size(200, 300)
                page.call("Page.setDocumentContent", html=poster(words),
                          frameId=page.call("Page.getFrameTree")["frameTree"]["frame"]["id"])
                file.with_name("poster.jpg").write_bytes(picture(page, 200, 300))
        subprocess.run(["quilp", "scan", FILMS, "--report", "/tmp/scan.html"], check=True,
                       stdout=sys.stderr)
        page.size(1120, 800)
        page.colours("light")
        page.open("file:///tmp/scan.html")
        page.value("Promise.all([...document.images].map(image => image.decode()))")
        pathlib.Path(sys.argv[1]).write_bytes(picture(page, 1120, 800))


main()
