#pragma once

namespace quilp {

// The page around the rows. Whatever a name or a title holds is only ever set as text.

inline constexpr char kPageStart[] = R"html(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy"
 content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; img-src 'self' file: data:">
<title>quilp scan</title>
<style>
:root { color-scheme: light dark; --back: #f6f6f4; --card: #fff; --text: #1c1c1a; --dim: #595954;
  --line: #ddd; --sure: #2c7a4b; --unsure: #8f5600; --unknown: #a3332c; }
@media (prefers-color-scheme: dark) { :root { --back: #161615; --card: #222220; --text: #eee;
  --dim: #b0b0aa; --line: #3a3a37; --sure: #6cc08b; --unsure: #e0a040; --unknown: #e57368; } }
* { box-sizing: border-box; }
body { margin: 0; font: 15px/1.4 system-ui, sans-serif; background: var(--back); color: var(--text); }
header { position: sticky; top: 0; z-index: 1; display: flex; flex-wrap: wrap; gap: .5rem;
  padding: .6rem 1rem; background: var(--card); border-bottom: 1px solid var(--line); }
header h1 { font-size: 1.1rem; margin: 0 .5rem 0 0; align-self: center; }
input, select, button { font: inherit; color: inherit; background: var(--back);
  border: 1px solid var(--line); border-radius: .4rem; padding: .3rem .6rem; }
input { flex: 1 1 10rem; min-width: 8rem; }
button[aria-pressed=true] { border-color: var(--text); font-weight: 600; }
#count { align-self: center; color: var(--dim); }
main { display: grid; grid-template-columns: repeat(auto-fill, minmax(10rem, 1fr)); gap: .8rem;
  padding: 1rem; }
article { content-visibility: auto; contain-intrinsic-size: 10rem 20rem; background: var(--card);
  border: 1px solid var(--line); border-radius: .5rem; overflow: hidden; cursor: pointer; }
article:focus-visible, article:hover { outline: 2px solid var(--dim); }
.poster { aspect-ratio: 2/3; display: grid; place-items: center; background: var(--line);
  font-size: 2.5rem; color: var(--dim); overflow: hidden; }
.poster img { width: 100%; height: 100%; object-fit: cover; }
article div.text { padding: .5rem .6rem; overflow-wrap: anywhere; }
article h2 { font-size: .95rem; margin: 0; }
.dim { color: var(--dim); font-size: .85rem; }
.sure { color: var(--sure); } .unsure { color: var(--unsure); } .unknown { color: var(--unknown); }
dialog { max-width: 40rem; width: calc(100% - 2rem); color: var(--text); background: var(--card);
  border: 1px solid var(--line); border-radius: .6rem; overflow-wrap: anywhere; }
dialog table { border-collapse: collapse; width: 100%; }
dialog td { border-top: 1px solid var(--line); padding: .2rem .4rem; vertical-align: top; }
</style>
</head>
<body>
<header>
<h1>quilp scan</h1>
<input id="search" type="search" placeholder="Search ( / )" aria-label="Search">
<span role="group" aria-label="Show">
<button data-show="all" aria-pressed="true">All</button>
<button data-show="sure">Sure</button>
<button data-show="unsure">Unsure</button>
<button data-show="unknown">Unknown</button>
</span>
<select id="sort" aria-label="Sort">
<option value="folder">By folder</option><option value="title">By title</option>
<option value="year">By year</option>
</select>
<span id="count" aria-live="polite"></span>
</header>
<main id="wall"></main>
<dialog id="details"></dialog>
<script type="application/json" id="rows">[
)html";

inline constexpr char kPageEnd[] = R"html(]</script>
<script>
"use strict";
const rows = JSON.parse(document.getElementById("rows").textContent);
const wall = document.getElementById("wall");
const search = document.getElementById("search");
const sort = document.getElementById("sort");
const details = document.getElementById("details");
let show = "all";

function make(name, text, kind) {
  const element = document.createElement(name);
  if (text !== undefined && text !== null) element.textContent = text;
  if (kind) element.className = kind;
  return element;
}

rows.forEach(row => {
  row.state = !row.match ? "unknown" : row.sure ? "sure" : "unsure";
  row.label = row.match || row.title || row.file.split("/").pop();
  row.words = [row.file, row.title, row.match, row.match_episode_title, row.id].join(" ").toLowerCase();
  const card = make("article");
  card.tabIndex = 0;
  const poster = make("div", undefined, "poster");
  if (row.picture) {
    const image = make("img");
    image.loading = "lazy";
    image.alt = "";
    image.src = row.picture;
    image.addEventListener("error", () => { poster.textContent = row.label.slice(0, 1); });
    poster.append(image);
  } else {
    poster.textContent = row.label.slice(0, 1);
  }
  const text = make("div", undefined, "text");
  text.append(make("h2", row.label));
  const numbers = row.kind === "episode" && row.episode !== null
    ? " S" + [row.season ?? 1].flat().join("-") + "E" + [row.episode].flat().join("-") : "";
  text.append(make("div", [row.match_year || row.year || "", numbers, row.match_episode_title || ""]
    .join(" ").trim(), "dim"));
  text.append(make("div", row.state + (row.match ? " " + row.confidence : ""), row.state));
  card.append(poster, text);
  card.addEventListener("click", () => explain(row));
  row.card = card;
});

function explain(row) {
  details.replaceChildren(make("h2", row.label), make("p", row.file, "dim"),
    make("p", row.state + ": " + (row.reason || row.failure || ""), row.state));
  const table = make("table");
  (row.candidates || []).forEach(one => {
    const line = make("tr");
    [one.confidence, one.title, one.year, one.id, one.reason].forEach(v => line.append(make("td", v)));
    table.append(line);
  });
  const close = make("button", "Close");
  close.addEventListener("click", () => details.close());
  details.append(table, close);
  details.showModal();
}

const orders = {
  folder: (a, b) => a.file < b.file ? -1 : a.file > b.file ? 1 : 0,
  title: (a, b) => a.label.localeCompare(b.label),
  year: (a, b) => (a.match_year || a.year || 9999) - (b.match_year || b.year || 9999),
};

function draw() {
  const words = search.value.toLowerCase().split(" ").filter(word => word);
  const wanted = rows.filter(row => (show === "all" || row.state === show) &&
    words.every(word => row.words.includes(word)));
  wanted.sort(orders[sort.value]);
  wall.replaceChildren(...wanted.map(row => row.card));
  document.getElementById("count").textContent = wanted.length + " of " + rows.length;
}

document.querySelectorAll("button[data-show]").forEach(button => {
  button.addEventListener("click", () => {
    show = button.dataset.show;
    document.querySelectorAll("button[data-show]").forEach(
      one => one.setAttribute("aria-pressed", one === button));
    draw();
  });
});
search.addEventListener("input", draw);
sort.addEventListener("change", draw);
document.addEventListener("keydown", event => {
  if (details.open || event.ctrlKey || event.altKey || event.metaKey) return;
  const cards = [...wall.children];
  const at = cards.indexOf(document.activeElement);
  const columns = getComputedStyle(wall).gridTemplateColumns.split(" ").length;
  const steps = { ArrowRight: 1, ArrowLeft: -1, ArrowDown: columns, ArrowUp: -columns };
  if (event.key === "/" && document.activeElement !== search) {
    event.preventDefault();
    search.focus();
  } else if (event.key === "Escape" && document.activeElement === search) {
    search.value = "";
    draw();
  } else if (at >= 0 && (event.key === "Enter" || event.key === " ")) {
    event.preventDefault();
    cards[at].click();
  } else if (at >= 0 && event.key in steps && cards[at + steps[event.key]]) {
    event.preventDefault();
    cards[at + steps[event.key]].focus();
  } else if (event.key === "ArrowDown" && document.activeElement === search && cards[0]) {
    event.preventDefault();
    cards[0].focus();
  }
});
draw();
</script>
</body>
</html>
)html";

}  // namespace quilp
