// Node's readers of release names. Run as a program, it reads the names of a file and writes what
// each reader tells, as lines of JSON, to OUTPUT/READER.jsonl:
//
//   node readers.mjs PACKAGES NAMES OUTPUT

import fs from "node:fs";
import path from "node:path";
import { createRequire } from "node:module";
import { pathToFileURL } from "node:url";

/// By its name, each reader's function, and its result under the keys of quilp's.
export function readers(packages) {
  const require = createRequire(path.resolve(packages) + "/");
  const filename = require("@ctrl/video-filename-parser").filenameParse;
  const several = (list) => (list && list.length === 1 ? list[0] : list);
  return {
    "@ctrl/video-filename-parser": {
      parse: filename,
      // It wants to be told which it is: whatever it finds a season for is an episode.
      fields(name) {
        const show = filename(name, true);
        const isShow = show && ((show.seasons ?? []).length + (show.episodeNumbers ?? []).length > 0);
        const found = isShow ? show : filename(name);
        return {
          title: found.title, year: found.year, season: several(found.seasons),
          episode: several(found.episodeNumbers), resolution: found.resolution,
          source_medium: several(found.sources), video_codec: found.videoCodec,
          group: found.group,
        };
      },
    },
    "parse-torrent-name": {
      parse: require("parse-torrent-name"),
      fields(name) {
        const found = require("parse-torrent-name")(name);
        return {
          title: found.title, year: found.year, season: found.season, episode: found.episode,
          resolution: found.resolution, source_medium: found.quality, video_codec: found.codec,
          group: found.group,
        };
      },
    },
    "parse-torrent-title": {
      parse: require("parse-torrent-title").parse,
      fields(name) {
        const found = require("parse-torrent-title").parse(name);
        return {
          title: found.title, year: found.year, season: found.season, episode: found.episode,
          resolution: found.resolution, source_medium: found.source, video_codec: found.codec,
          group: found.group,
        };
      },
    },
    "video-name-parser": {
      parse: require("video-name-parser"),
      fields(name) {
        const found = require("video-name-parser")(name);
        return {
          title: found.name, year: found.year, season: found.season,
          episode: several(found.episode), air_date: found.aired,
        };
      },
    },
  };
}

if (import.meta.url === pathToFileURL(process.argv[1]).href) {
  const [packages, names, output] = process.argv.slice(2);
  const lines = fs.readFileSync(names, "utf8").trimEnd().split("\n");
  for (const [reader, { fields }] of Object.entries(readers(packages))) {
    const told = lines.map((name) => JSON.stringify({ name, ...fields(name) }));
    fs.writeFileSync(`${output}/${reader.replace("/", "-")}.jsonl`, told.join("\n") + "\n");
  }
}
