#!/usr/bin/env bash
# Times whole films: the program beside the `ffmpeg` and `melt` commands on the same tracks, its memory, its start-up and
# the cost of large projects. Prints one row a bar: name, measured ratio (or figure), bar.
# Usage: bench/films.sh [runs]   (best of `runs`, default 3; wants build/bench or build/release)
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-3}
cinora=build/release/bin/cinora
[ -x "$cinora" ] || cinora=build/bench/bin/cinora
work=out/bench
mkdir -p "$work"

# The media: 300 frames each, made once.
encode=(-c:v libx264 -preset medium -crf 20 -pix_fmt yuv420p)
[ -f "$work/hd.mp4" ] || ffmpeg -v error -f lavfi -i testsrc2=s=1920x1080:r=30 -frames:v 300 "${encode[@]}" "$work/hd.mp4"
[ -f "$work/sd.mp4" ] ||
  ffmpeg -v error -f lavfi -i mandelbrot=s=1280x720:r=30 -frames:v 300 "${encode[@]}" "$work/sd.mp4"
[ -f "$work/picture.png" ] ||
  ffmpeg -v error -f lavfi -i testsrc=s=640x360 -frames:v 1 -pix_fmt rgba "$work/picture.png"

object() { # number layer first-effect-lines drawing-lines
  printf '[%d]\nstart=1\nend=300\nlayer=%d\noverlay=1\ncamera=0\n[%d.0]\n%s\n[%d.1]\n_name=Standard drawing\n%s\n' \
    "$1" "$2" "$1" "$3" "$1" "$4"
}
film() {
  printf '[zenlay]\nwidth=1920\nheight=1080\nrate=30\nscale=1\nlength=300\naudio_rate=44100\naudio_ch=2\n'
  object 0 1 $'_name=Video file\nfile=hd.mp4' 'X=0.0'
  object 1 2 $'_name=Video file\nfile=sd.mp4' 'Clearness=30.0'
  object 2 3 $'_name=Image file\nfile=picture.png' $'X=-600.0,600.0,1\nClearness=50.0'
}
film >"$work/film.zlo"

many() { # objects, all of them or only those alive on frames 1 to 30
  printf '[zenlay]\nwidth=640\nheight=360\nrate=30\nscale=1\nlength=15000\n'
  local n=0 k layer start
  for ((layer = 1; layer <= 100; layer++)); do
    for ((k = 0; k < ($1 == 1 ? 1 : 150); k++)); do
      start=$((k * 100 + 1))
      printf '[%d]\nstart=%d\nend=%d\nlayer=%d\noverlay=1\ncamera=0\n' "$n" "$start" "$((start + 99))" "$layer"
      printf '[%d.0]\n_name=Graphic\nSize=40\ntype=2\n' "$n"
      printf '[%d.1]\n_name=Standard drawing\nX=%d.0\nY=0.0\n' "$n" "$((layer * 5 - 250))"
      n=$((n + 1))
    done
  done
}
many 0 >"$work/many.zlo"
many 1 >"$work/few.zlo"

best() { # seconds of the fastest run
  local i t best=
  for ((i = 0; i < runs; i++)); do
    t=$({ TIMEFORMAT=%R; time "$@" >/dev/null 2>"$work/log"; } 2>&1) || { cat "$work/log" >&2; return 1; }
    if [ -z "$best" ] || awk "BEGIN{exit !($t < $best)}"; then best=$t; fi
  done
  echo "$best"
}
row() { # name value bar comparison
  local verdict=missed
  awk "BEGIN{exit !($2 $4 $3)}" && verdict=met
  printf '%-44s %8s   bar %s %s   %s\n' "$1" "$2" "$4" "$3" "$verdict"
}
ratio() { awk "BEGIN{printf \"%.2f\", $1 / $2}"; }

out=(-c:v libx264 -preset veryfast -crf 23 -pix_fmt yuv420p)
with_ffmpeg() {
  ffmpeg -v error -y -i "$work/hd.mp4" -i "$work/sd.mp4" -loop 1 -i "$work/picture.png" -filter_complex "
    [1:v]format=yuva444p,colorchannelmixer=aa=0.7[b]; [0:v][b]overlay=320:180:format=yuv444[c];
    [2:v]format=yuva444p,colorchannelmixer=aa=0.5[p];
    [c][p]overlay=x='40+1200*n/300':y=360:format=yuv444" -frames:v 300 "${out[@]}" "$work/ffmpeg.mp4"
}
with_melt() {
  melt -silent -profile atsc_1080p_30 -track "$work/hd.mp4" out=299 -track "$work/sd.mp4" out=299 \
    -track "$work/picture.png" out=299 \
    -transition composite geometry="320 180 1280 720 0.7" a_track=0 b_track=1 in=0 out=299 \
    -transition composite geometry="0=40 360 640 360 0.5;299=1240 360 640 360 0.5" a_track=0 b_track=2 in=0 out=299 \
    -consumer avformat:"$work/melt.mp4" vcodec=libx264 preset=veryfast crf=23 real_time=-2 an=1
}
with_cinora() {
  "$cinora" render "$work/film.zlo" -o "$work/cinora.mp4" --preset veryfast --quality 23 --audio-codec none \
    --threads 2 --quiet
}

# The share that nobody saves: both videos decoded, and the finished film (decoded once more) encoded.
coding_alone() {
  ffmpeg -v error -y -i "$work/cinora.mp4" -i "$work/hd.mp4" -i "$work/sd.mp4" \
    -map 0:v "${out[@]}" "$work/coding.mp4" -map 1:v -f null - -map 2:v -f null -
}

ours=$(best with_cinora)
theirs=$(best with_ffmpeg)
row "film of three tracks / ffmpeg ($ours s, $theirs s)" "$(ratio "$ours" "$theirs")" 1.0 "<="
if command -v melt >/dev/null; then
  melted=$(QT_QPA_PLATFORM=offscreen best with_melt)
  row "melt / film of three tracks ($melted s)" "$(ratio "$melted" "$ours")" 3.0 ">="
  coding=$(best coding_alone)
  printf '%-44s %8s\n' "melt / decoding and encoding alone ($coding s)" "$(ratio "$melted" "$coding")"
fi
peak=$(/usr/bin/time -f %M "$cinora" render "$work/film.zlo" -o "$work/cinora.mp4" --preset veryfast --quality 23 \
  --audio-codec none --threads 2 --quiet 2>&1 | tail -1)
row "peak memory of that film, MiB" $((peak / 1024)) 400 "<="
row "start-up of info on a small film, s" "$(best "$cinora" info "$work/film.zlo")" 0.15 "<="
row "loading 15,000 objects and saving a project, s" "$(best "$cinora" convert "$work/many.zlo" "$work/many.cnp")" 1.0 "<="
frames() { # seconds a frame, without loading: 91 frames less 1
  local long short
  long=$(best "$cinora" render "$1" -o "$work/frames.raw" --frames 1-91 --threads 2 --quiet)
  short=$(best "$cinora" render "$1" -o "$work/frames.raw" --frames 1-1 --threads 2 --quiet)
  awk "BEGIN{print ($long - $short) / 90}"
}
row "frame among 15,000 objects / only visible" "$(ratio "$(frames "$work/many.zlo")" "$(frames "$work/few.zlo")")" 1.2 "<="
rm -f "$work/frames.raw"
