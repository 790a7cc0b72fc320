#!/bin/bash
# The add-on that describes songs. Runs in the box. song_addon_test.sh ADD-ON
set -u
failures=0
addon=(${QUILP_EMULATOR-} "$1")

# row PATH STATUS WANTED: the document without its frame, in one line.
row() {
  local status=0 output
  rm -f /tmp/answer
  "${addon[@]}" getKTVInfo -f "$1" -o /tmp/answer 2>/dev/null || status=$?
  output=$(sed 1d /tmp/answer 2>/dev/null | tr -d '\n\t' | sed 's:</*KtvInfo>::g')
  [ "$status $output" = "$2 $3" ] || {
    printf '%s: %s %s\n' "$1" "$status" "$output" >&2
    failures=$((failures + 1))
  }
}

row '/songs/林小雨[F]＋陳大海 [M]_夜航船[國][L].mkv' 0 '<Title>夜航船</Title><TitleWordCount>3</TitleWordCount><Language>1</Language><AudioTrack>1</AudioTrack><Artist><Name Gender="2">林小雨</Name><Name Gender="1">陳大海</Name></Artist>'
row 'Anna Lane & Tom Reed - Salt & <Rope> (Cantonese) (Ballad).mp4' 0 '<Title>Salt &amp; &lt;Rope&gt;</Title><TitleWordCount>2</TitleWordCount><Language>2</Language><Artist><Name Gender="0">Anna Lane</Name><Name Gender="0">Tom Reed</Name></Artist><Genre><Name>Ballad</Name></Genre>'
row '北極星[G]_一直走[M][0].dat' 0 '<Title>一直走</Title><TitleWordCount>3</TitleWordCount><Language>1</Language><AudioTrack>4</AudioTrack><Artist><Name Gender="3">北極星</Name></Artist>'
row 'Mây - Biển đêm (Tiếng Việt).mp4' 0 '<Title>Biển đêm</Title><TitleWordCount>6</TitleWordCount><Artist><Name Gender="0">Mây</Name></Artist>'
row '' 1 ''

if [ -z "${QUILP_EMULATOR-}" ]; then
  "$QUILP_PROGRAM" addon check "$1" --type KTV --file '/songs/Anna Lane - Harbour Lights.mkv' >/tmp/out ||
    { cat /tmp/out >&2; failures=$((failures + 1)); }
fi
[ "$failures" -eq 0 ]
