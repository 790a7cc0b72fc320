// Node's contenders of bench/compare: nanoseconds of CPU time as JSON, for the inputs in a folder.

import fs from "node:fs";
import path from "node:path";
import { createRequire } from "node:module";

import { readers } from "./readers.mjs";

const work = path.resolve(process.argv[2]);
const require = createRequire(work + "/");
const lines = (name) => fs.readFileSync(`${work}/${name}`, "utf8").trimEnd().split("\n");

// The least of several loops, so that compiling does not count.
function nanoseconds(action, seconds) {
  let least = Infinity;
  const end = performance.now() + 1000 * seconds;
  for (let times = 1; performance.now() < end; times *= times < 1000 ? 2 : 1) {
    const start = process.cpuUsage();
    for (let i = 0; i < times; ++i) action();
    const used = process.cpuUsage(start);
    if (used.user + used.system > 5000 || least === Infinity) {
      least = Math.min(least, (1000 * (used.user + used.system)) / times);
    }
  }
  return least;
}

const names = lines("names");
const results = {};
for (const [name, { parse }] of Object.entries(readers(work))) {
  results[`names/${name}`] = nanoseconds(() => names.forEach((n) => parse(n)), 2) / names.length;
}

const text = fs.readFileSync(`${work}/text`, "utf8");
const { decode } = require("html-entities");
results["text/html-entities"] = nanoseconds(() => decode(text), 2);

const cheerio = require("cheerio");
for (const page of ["find", "title", "combined", "show", "episodes", "episode"]) {
  const html = fs.readFileSync(`${work}/${page}.html`, "utf8");
  const selectors = lines(`${page}.selectors`);
  results[`page/${page}`] = nanoseconds(() => {
    const $ = cheerio.load(html);
    for (const selector of selectors) $(selector).each((_, node) => $(node).text());
  }, 2);
}
console.log(JSON.stringify(results));
