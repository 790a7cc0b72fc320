#!/bin/bash
# The page of quilp scan --report, in a browser. Runs in the box. report_test.sh ADD-ON
set -eu
if ! command -v chromium >/dev/null || ! command -v python3 >/dev/null; then
  echo "report_test: skipped: there is no chromium, or no python3"
  exit 77
fi
top=$(cd "$(dirname "$0")/.." && pwd)
export QUILP_CONFIG=/tmp/quilp.conf PYTHONPATH=$top/tools PYTHONDONTWRITEBYTECODE=1
printf '[catalogue]\npath=/tmp/catalogue.db\n' >"$QUILP_CONFIG"
printf '[%s]\nClass=Kestrawind\nType=%s\nEnable=TRUE\nShell=/etc/config/addon\n' \
  m Movie t TV >/etc/config/zorp.conf
ln -s "$1" /etc/config/addon
cp -r "$top/tools/sample" /tmp/sets
evil='</script><script>window.ran = 1</script>'
printf 'tt9000099\tmovie\t%s\t%s\t0\t1987\t\\N\t90\tDrama\n' "$evil" "$evil" \
  >>/tmp/sets/title.basics.tsv
"$QUILP_PROGRAM" catalogue import /tmp/sets >/tmp/output 2>&1 || { cat /tmp/output; exit 1; }

mkdir -p '/tmp/films/a#b?c %41' '/tmp/films/<' /tmp/films/z
cd /tmp/films
touch 'z/Salt.and.Ember.2012.720p.mkv' The.Paper.Lighthouse.2011.mkv Lighthouse.1999.avi \
  'Lighthuose Keepr.mkv' Signal.Row.S02E03.mkv 'Zoë and the Tide (2009).mkv' \
  'a#b?c %41/The Grey Ferry (2010).mkv' '1950 Letters 2014.mkv' 'Unheard Of 1920.mkv' \
  '{imdb-tt9000099}.mkv' '<img src=x onerror="window.ran = 2"> '"'"'&quot; (1985).mkv' \
  '</script><script>window.ran = 3;.mkv' "$(printf 'Endless%.0s' {1..30}).mkv"
# A picture of one dot, where a media centre looks for it.
base64 -d >'a#b?c %41/The Grey Ferry (2010)-poster.jpg' <<'DOT'
iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==
DOT
"$QUILP_PROGRAM" scan /tmp/films --report /tmp/report.html >/tmp/rows
python3 -W error "$top/tests/report_test.py" /tmp/report.html
