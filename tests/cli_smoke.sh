#!/usr/bin/env bash
# The headless tool end to end: decode a packet, run short sessions, render and time packets, and refuse
# bad input with exit 2.
set -u
cli="$1"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
pass=0 fail=0
check() {  # name, condition
  if eval "$2"; then pass=$((pass + 1)); else fail=$((fail + 1)); echo "FAIL: $1"; fi
}

printf '\x10\x00\x00\x00abcdefghijklmnopqrst' > "$tmp/p.bin"
out=$("$cli" decode "$tmp/p.bin"); rc=$?
check "decode exit" "[ $rc -eq 0 ]"
check "decode count" "echo '$out' | grep -q '\"sample_count\":20'"
check "decode triggered" "echo '$out' | grep -q '\"triggered\":true'"

out=$("$cli" measure "$tmp/p.bin" --volts-per-div 0.256); rc=$?
check "measure exit" "[ $rc -eq 0 ]"
check "measure dc" "echo '$out' | grep -q '\"dc_valid\":true'"
check "measure peak to peak" "echo '$out' | grep -q '\"peak_to_peak_volts\":0.152'"
check "measure meters" "echo '$out' | grep -q '\"FRH\":\"No signal\"'"
out=$("$cli" spectrum "$tmp/p.bin" --lines 2); rc=$?
check "spectrum exit" "[ $rc -eq 0 ]"
check "spectrum bins" "echo '$out' | grep -q '\"spec_bins\":8'"
check "spectrum rectangular" "echo '$out' | grep -q '\"window\":\"Rectangular\"'"
out=$("$cli" spectrum "$tmp/p.bin" --thd 30 --band 0:100 --sinxx); rc=$?
check "spectrum thd exit" "[ $rc -eq 0 ]"
check "spectrum thd" "echo '$out' | grep -q '\"thd\":{'"
check "spectrum main meter" "echo '$out' | grep -q '\"main_meter\":{'"
# The THD meter and Sin(x)/x want a window whose peak can be rebuilt, as in the window.
check "spectrum thd hamming" "echo '$out' | grep -q '\"window\":\"Hamming\"'"
check "spectrum thd refined" "echo '$out' | grep -q '\"refined\":true'"
"$cli" spectrum "$tmp/p.bin" --band 12 2>/dev/null; rc=$?
check "spectrum bad band exit 2" "[ $rc -eq 2 ]"
"$cli" spectrum "$tmp/p.bin" --window 9 2>/dev/null; rc=$?
check "spectrum bad window exit 2" "[ $rc -eq 2 ]"
"$cli" measure "$tmp/p.bin" --volts-per-div none 2>"$tmp/err"; rc=$?
check "measure bad number exit 2" "[ $rc -eq 2 ]"

printf 'Target: ZV-1 Version: 1.20 Date: 20261123 FW:' > "$tmp/f.zfw"
head -c 1024 /dev/zero >> "$tmp/f.zfw"
out=$("$cli" zfw "$tmp/f.zfw"); rc=$?
check "zfw exit" "[ $rc -eq 0 ]"
check "zfw sectors" "echo '$out' | grep -q '\"sector_count\":2'"
head -c 100 /dev/zero > "$tmp/bad.zfw"
"$cli" zfw "$tmp/bad.zfw" 2>/dev/null; rc=$?
check "zfw bad image exit 2" "[ $rc -eq 2 ]"

printf 'zorvik\x01\x20\x00\x00\x04\x00abcdefghij' > "$tmp/p.zrv"
out=$("$cli" decode "$tmp/p.zrv")
check "decode zrv" "echo '$out' | grep -q '\"samples_per_div\":32'"

"$cli" decode "$tmp/missing.zrv" 2>"$tmp/err"; rc=$?
check "missing file exit 2" "[ $rc -eq 2 ]"
check "missing file one line" "[ \$(wc -l < $tmp/err) -eq 1 ]"

# What is no regular file, or far larger than any packet, is refused at once in one line (a time-out
# stands for the hang or the gigabytes of reading it once was).
start=$(date +%s)
timeout 10 "$cli" decode /dev/zero 2>"$tmp/err"; rc=$?
check "decode /dev/zero exit 2" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ]"
check "decode /dev/zero names the reason" "grep -q '\"/dev/zero\" is not a regular file' $tmp/err"
mkfifo "$tmp/fifo"
timeout 10 "$cli" measure "$tmp/fifo" 2>"$tmp/err"; rc=$?
check "measure fifo refused" "[ $rc -eq 2 ] && grep -q 'is not a regular file' $tmp/err"
truncate -s 2G "$tmp/big.bin"
timeout 10 "$cli" spectrum "$tmp/big.bin" 2>"$tmp/err"; rc=$?
check "spectrum 2 GiB refused" "[ $rc -eq 2 ] && grep -q 'is larger than 131336 bytes' $tmp/err"
timeout 10 "$cli" zfw /dev/zero 2>/dev/null; rc=$?
check "zfw device refused" "[ $rc -eq 2 ]"
check "refusals at once" "[ \$(( \$(date +%s) - $start )) -lt 5 ]"
rm -f "$tmp/big.bin" "$tmp/fifo"

# A packet too short to be one: render and csv refuse it as measure does, in the same words.
printf '\x00\x00\x00\x00abc' > "$tmp/short.bin"
: > "$tmp/empty.bin"
for f in short empty; do
  "$cli" measure "$tmp/$f.bin" 2>"$tmp/m.err"; m=$?
  "$cli" render "$tmp/$f.bin" --png "$tmp/$f.png" 2>"$tmp/r.err"; r=$?
  "$cli" csv "$tmp/$f.bin" --out "$tmp/$f.csv" 2>"$tmp/c.err"; c=$?
  check "$f packet refused alike" "[ $m$r$c = 222 ] && cmp -s $tmp/m.err $tmp/r.err && cmp -s $tmp/m.err $tmp/c.err"
  check "$f packet writes nothing" "[ ! -e $tmp/$f.png ] && [ ! -e $tmp/$f.csv ]"
done

"$cli" session --packets 2.5 >/dev/null 2>"$tmp/err"; rc=$?
check "fractional packet count exit 2" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ]"

"$cli" session --sim bogus=1 >/dev/null 2>"$tmp/err"; rc=$?
check "unknown sim key exit 2" "[ $rc -eq 2 ]"
check "unknown sim key named" "grep -q bogus $tmp/err"

out=$("$cli" session --packets 20 --sim rate=max); rc=$?
check "session exit" "[ $rc -eq 0 ]"
check "session packets" "echo '$out' | grep -q '\"packets\":20'"
check "session ready" "echo '$out' | grep -q '\"ready_reached\":true'"

# The instrument that zorvik-sim (built beside the tool) serves on a Unix socket; gone, it is no device.
sim="$(dirname "$cli")/zorvik-sim"
"$sim" --listen "unix:$tmp/z.sock" --sim rate=max >"$tmp/sim.out" 2>/dev/null &
simpid=$!
for _ in $(seq 100); do grep -q 'listening on' "$tmp/sim.out" 2>/dev/null && break; sleep 0.1; done
out=$("$cli" session --device "unix:$tmp/z.sock" --packets 100); rc=$?
check "device session exit" "[ $rc -eq 0 ]"
check "device session ready" "echo '$out' | grep -q '\"ready_reached\":true'"
# Packets already on their way when the run stops are taken too.
n=$(echo "$out" | sed -n 's/.*"packets":\([0-9]*\).*/\1/p')
check "device session packets" "[ '${n:-0}' -ge 100 ]"
kill "$simpid"; wait "$simpid" 2>/dev/null
"$cli" session --device "unix:$tmp/z.sock" --timeout 2 >/dev/null 2>&1; rc=$?
check "device gone: no session" "[ $rc -eq 1 ]"
for bad in "--device usb:1" "--device unix:$tmp/z.sock --sim rate=max"; do
  "$cli" session $bad >/dev/null 2>"$tmp/err"; rc=$?
  check "session $bad: one line, exit 2" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ]"
done
"$sim" --listen "tcp:nohost:1" >/dev/null 2>&1; rc=$?
check "zorvik-sim bad host exit 2" "[ $rc -eq 2 ]"
"$sim" --sim rate=max >/dev/null 2>&1; rc=$?
check "zorvik-sim without --listen exit 2" "[ $rc -eq 2 ]"
check "zorvik-sim --help" "\"$sim\" --help | grep -q '^usage: zorvik-sim --listen'"
check "zorvik-sim --version" "\"$sim\" --version | grep -Eqx 'zorvik-sim [0-9]+\.[0-9]+\.[0-9]+'"

out=$("$cli" session --packets 3 --single --sim rate=max); rc=$?
check "single exit" "[ $rc -eq 0 ]"

out=$("$cli" session --packets 2 --timeout 2 --sim fault=missing:TPl 2>/dev/null); rc=$?
check "missing limit fails" "[ $rc -eq 1 ]"
check "missing limit stays setting up" "echo '$out' | grep -q '\"ready_reached\":false'"

"$cli" sim --packets 2 --out "$tmp/s" --sim rate=max >/dev/null; rc=$?
check "sim exit" "[ $rc -eq 0 ]"
check "sim files" "[ -f $tmp/s/0001.zrv ] && [ -f $tmp/s/0002.zrv ]"
check "sim magic" "head -c 7 $tmp/s/0001.zrv | od -An -c | grep -q 'z   o   r   v   i   k 001'"
"$cli" csv "$tmp/s/0001.zrv" --out "$tmp/a.csv"; rc=$?
check "csv exit" "[ $rc -eq 0 ]"
check "csv ends CR CR LF" "[ \"\$(tail -c 3 $tmp/a.csv | od -An -tx1 | tr -d ' ')\" = 0d0d0a ]"
"$cli" csv "$tmp/missing" --out "$tmp/x.csv" 2>/dev/null; rc=$?
check "csv missing exit 2" "[ $rc -eq 2 ]"
"$cli" session --packets 1 --sim rate=max --save-last "$tmp/last.zrv" >/dev/null; rc=$?
check "session save-last" "[ $rc -eq 0 ] && [ -s $tmp/last.zrv ]"

# PNG width and height from the IHDR chunk (bytes 16..23, big-endian).
png_size() { od -An -tu1 -j16 -N8 "$1" | awk '{print $1*16777216+$2*65536+$3*256+$4 "x" $5*16777216+$6*65536+$7*256+$8}'; }
data="$(dirname "$0")/../data/default.zrv"
"$cli" render "$data" --png "$tmp/r.png"; rc=$?
check "render exit" "[ $rc -eq 0 ]"
check "render 341x277" "[ \"\$(png_size $tmp/r.png)\" = 341x277 ]"
"$cli" render "$data" --png "$tmp/w.png" --wide --labels --persist color --interp sinx --taps 32 --repeat 3; rc=$?
check "render wide exit" "[ $rc -eq 0 ]"
check "render wide 501x277" "[ \"\$(png_size $tmp/w.png)\" = 501x277 ]"
"$cli" render "$data" --png "$tmp/x.png" --interp bogus 2>"$tmp/err"; rc=$?
check "render bad interp exit 2" "[ $rc -eq 2 ]"
check "render bad interp one line" "[ \$(wc -l < $tmp/err) -eq 1 ]"
check "render bad interp writes nothing" "[ ! -e $tmp/x.png ]"
"$cli" render "$data" --png "$tmp/x.png" --taps 48 2>/dev/null; rc=$?
check "render taps not a power of two" "[ $rc -eq 2 ]"
# The Spectrum and Stat windows' plots, drawn headless as the windows draw them.
"$cli" render "$tmp/s/0001.zrv" --view spectrum --png "$tmp/sp.png" --db --range 70 --hzoom 10 --hpos 0 \
  --markers 1000:3000 --interp lagrange --window 6; rc=$?
check "render spectrum view" "[ $rc -eq 0 ] && [ \"\$(png_size $tmp/sp.png)\" = 420x276 ]"
"$cli" render "$tmp/s/0001.zrv" --view histogram --png "$tmp/hi.png" --percent --style fill --vzoom 2; rc=$?
check "render histogram view" "[ $rc -eq 0 ] && [ \"\$(png_size $tmp/hi.png)\" = 420x276 ]"
for bad in "--view scope" "--view spectrum --hzoom 3" "--view spectrum --hpos 1.5" "--view spectrum --markers 5" \
  "--view histogram --style bars" "--view spectrum --range 15"; do
  # shellcheck disable=SC2086
  "$cli" render "$tmp/s/0001.zrv" $bad --png "$tmp/bad.png" 2>"$tmp/err"; rc=$?
  check "render $bad refused" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ] && [ ! -e $tmp/bad.png ]"
done

out=$("$cli" timebase 0.001); rc=$?
check "timebase exit" "[ $rc -eq 0 ]"
check "timebase ok" "echo '$out' | grep -q '\"result\":\"ok\"'"
"$cli" timebase 0.001x 2>"$tmp/err"; rc=$?
check "timebase bad number exit 2" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ]"

out=$("$cli" bench --packets 20 --wide --persist color); rc=$?
check "bench exit" "[ $rc -eq 0 ]"
check "bench median" "echo '$out' | grep -q '\"median_us\":'"
out=$("$cli" bench --full --mode 1 --packets 5); rc=$?
check "bench --full exit" "[ $rc -eq 0 ]"
check "bench --full reports the format's packets a second" "echo '$out' | grep -q '\"hires\":{[^}]*\"packets_per_s\":'"

# A slow time base streams roll chunks; the summary carries the scale of the record.
out=$("$cli" session --packets 2 --sim rate=max --set Sampling/TimePerDiv=25 --set AutoCalibrating/StartDelay=0); rc=$?
check "roll session exit" "[ $rc -eq 0 ]"
check "roll session scale" "echo '$out' | grep -q '\"SamplePeriod\":0.00625'"
check "roll session time/div" "echo '$out' | grep -q '\"TimeDiv\":25'"
check "roll session chunks" "echo '$out' | grep -Eq '\"rolls\":\\{\"bytes\":[1-9][0-9]*,\"chunks\":[1-9]'"
check "roll session packets parallel" "echo '$out' | grep -q '\"parallel\":true'"

# Keys: serial off, Norm, Start: one single acquisition that ends "Stopped".
out=$("$cli" session --packets 1 --sim rate=max,freq=10000 --keys '\,R,Backspace' --set AutoCalibrating/StartDelay=0); rc=$?
check "keys exit" "[ $rc -eq 0 ]"
check "keys stopped" "echo '$out' | grep -q '\"status_text\":\"Stopped\"'"
check "keys Norm written" "echo '$out' | grep -q '\\[\"RT\",1\\]'"
check "keys packet triggered" "echo '$out' | grep -q '\"status_text\":\"Stopped\",\"triggered\":true}\\]'"

# Norm without a trigger: the single acquisition ends with the empty answer, not at the time-out.
start=$(date +%s)
out=$("$cli" session --single --packets 1 --timeout 20 --sim rate=max,fault=notrigger --set Mode/NoWaiting=0 \
  --set AutoCalibrating/StartDelay=0 2>/dev/null); rc=$?
check "no trigger exit 1" "[ $rc -eq 1 ]"
check "no trigger quick" "[ \$(( \$(date +%s) - $start )) -lt 10 ]"
check "no trigger shown" "echo '$out' | grep -q '\"no_trigger_visible\":true'"
check "no trigger empty answer" "echo '$out' | grep -q '\"packet_log\":\\[{\"length\":0,\"parallel\":false,\"status_text\":\"Stopped\",\"triggered\":false}\\]'"

export ZORVIK_REGISTRY="$tmp/store.sqlite"
"$cli" settings set "View/Color=3" "Ch1/Offset=-12" >/dev/null; rc=$?
check "settings set" "[ $rc -eq 0 ]"
"$cli" settings export "$tmp/out.reg"; rc=$?
check "settings export" "[ $rc -eq 0 ]"
check "reg header" "head -c 8 $tmp/out.reg | grep -q REGEDIT4"
check "reg value" "grep -q '\"Offset\"=\"-12\"' $tmp/out.reg"
printf 'not a reg file\r\n' > "$tmp/bad.reg"
"$cli" settings import "$tmp/bad.reg" 2>/dev/null; rc=$?
check "bad reg exit 2" "[ $rc -eq 2 ]"
out=$("$cli" settings get View/Color)
check "settings survive a bad import" "echo '$out' | grep -q '3'"
"$cli" settings import "$tmp" 2>"$tmp/err"; rc=$?
check "import of a folder says so" "[ $rc -eq 2 ] && grep -q 'is a directory' $tmp/err"
"$cli" settings set "View/Color=5" >/dev/null
tr -d '\r' < "$tmp/out.reg" > "$tmp/lf.reg"
"$cli" settings import "$tmp/lf.reg" >/dev/null; rc=$?
out=$("$cli" settings get View/Color)
check "reg with LF line ends imports" "[ $rc -eq 0 ] && echo '$out' | grep -q '3'"
unset ZORVIK_REGISTRY

# The session runs the window's stages: its last readings equal those of measure and spectrum on the
# packet it saved, read at the session's scale.
out=$("$cli" session --sim signal=square,freq=1000000 --packets 20 --meters all --spectrum --histogram \
      --save-last "$tmp/last.zrv"); rc=$?
check "session stages exit" "[ $rc -eq 0 ]"
check "session histogram" "echo '$out' | grep -Eq '\"histogram\":\{\"built\":true,\"max_count\":[1-9][0-9]*,\"samples\":[1-9]'"
field() { echo "$1" | grep -o "\"$2\":[^,}]*" | head -n 1 | cut -d: -f2; }
fs=$(field "$out" FullScaleVolts); sp=$(field "$out" SamplePeriod); zero=$(field "$out" ZeroVolts)
vdiv=$(awk -v f="$fs" 'BEGIN { printf "%.9g", f / 8 }')
scale=(--volts-per-div "$vdiv" --sample-period "$sp" --zero "$zero")
m=$("$cli" measure "$tmp/last.zrv" "${scale[@]}" --level 2)
a=$(echo "$out" | grep -o '"meters":{[^}]*}'); b=$(echo "$m" | grep -o '"meters":{[^}]*}')
check "session meters equal measure" '[ -n "$a" ] && [ "$a" = "$b" ]'
sp_out=$("$cli" spectrum "$tmp/last.zrv" "${scale[@]}")
session_spectrum=$(echo "$out" | grep -o '"spectrum":{[^}]*}')
for k in peak_bin peak_amp peak_freq; do
  a=$(field "$session_spectrum" $k); b=$(field "$sp_out" $k)
  check "session spectrum $k" '[ -n "$a" ] && [ "$a" = "$b" ]'
done
out=$("$cli" session --meters XYZ 2>&1); rc=$?
check "session bad meter exit 2" "[ $rc -eq 2 ]"

# Start and Serial keys wait for Ready as their controls do; an unknown key name is refused.
out=$("$cli" session --sim fault=missing:TPl --keys 'Backspace,\' --timeout 2 2>/dev/null); rc=$?
check "gated keys exit 1" "[ $rc -eq 1 ]"
check "gated keys take no packet" "echo '$out' | grep -q '\"packet_log\":\[\]'"
"$cli" session --keys Foo >/dev/null 2>&1; rc=$?
check "unknown key exit 2" "[ $rc -eq 2 ]"

# A write cut short by the file size limit is an error naming the file, and the earlier file stays.
cp "$tmp/a.csv" "$tmp/keep.csv"
cp "$tmp/keep.csv" "$tmp/before.csv"
err=$( (trap '' XFSZ; ulimit -f 1; "$cli" render "$data" --png "$tmp/keep.csv" --wide --labels) 2>&1 >/dev/null); rc=$?
check "limited write exit 2" "[ $rc -eq 2 ]"
check "limited write names the file" "echo '$err' | grep -q 'keep.csv'"
check "limited write keeps the old file" "cmp -s '$tmp/keep.csv' '$tmp/before.csv'"
mkfifo "$tmp/fifo"
"$cli" csv "$tmp/s/0001.zrv" --out "$tmp/fifo" 2>/dev/null; rc=$?
check "fifo target refused" "[ $rc -eq 2 ] && [ -p '$tmp/fifo' ]"

# Pictures, animations and histograms as the window saves them.
"$cli" sim --packets 3 --out "$tmp/pics" --sim signal=sine,noise=0.2 >/dev/null
"$cli" picture "$tmp"/pics/*.zrv --out "$tmp/p.gif" --wide --persist color; rc=$?
check "picture gif" "[ $rc -eq 0 ] && [ \"\$(head -c 6 $tmp/p.gif)\" = GIF87a ]"
"$cli" picture "$data" --out "$tmp/t.gif" --transparent --labels; rc=$?
check "picture transparent gif" "[ $rc -eq 0 ] && [ \"\$(head -c 6 $tmp/t.gif)\" = GIF89a ]"
"$cli" picture "$data" --out "$tmp/p.bmp" --zoom 1; rc=$?
check "picture bmp" "[ $rc -eq 0 ] && [ \"\$(head -c 2 $tmp/p.bmp)\" = BM ]"
"$cli" picture "$data" --out "$tmp/p.jpg"; rc=$?
check "picture jpeg comment" "[ $rc -eq 0 ] && grep -qa 'Zorvik oscilloscope screen capture' $tmp/p.jpg"
"$cli" picture "$data" --out "$tmp/p.png" 2>/dev/null; rc=$?
check "picture unknown format exit 2" "[ $rc -eq 2 ] && [ ! -e $tmp/p.png ]"
cp "$tmp/p.bmp" "$tmp/keep.bmp"
(trap '' XFSZ; ulimit -f 1; "$cli" picture "$data" --out "$tmp/p.bmp" --wide 2>/dev/null); rc=$?
check "picture cut short keeps the old file" "[ $rc -eq 2 ] && cmp -s $tmp/p.bmp $tmp/keep.bmp"
"$cli" animate "$tmp"/pics/*.zrv --out "$tmp/a.gif" --delay-ms 250; rc=$?
frames() { LC_ALL=C grep -obUaP '\x21\xF9\x04\x08\x19\x00' "$1" | wc -l; }
check "animate frames" "[ $rc -eq 0 ] && grep -qa NETSCAPE2.0 $tmp/a.gif && [ \$(frames $tmp/a.gif) -eq 2 ]"
"$cli" animate --out "$tmp/none.gif" 2>"$tmp/err"; rc=$?
check "animate of no frames exit 2" "[ $rc -eq 2 ] && [ ! -e $tmp/none.gif ] && grep -q 'no frames' $tmp/err"
out=$("$cli" histogram "$data" --csv "$tmp/h.csv" --percent); rc=$?
check "histogram json" "[ $rc -eq 0 ] && echo '$out' | grep -q '\"max_count\":[1-9]' && echo '$out' | grep -q '\"level_low\":-0.8'"
check "histogram csv leading blanks" "[ \$(tr '\r' '\n' < $tmp/h.csv | grep -c '^ [0-9]') -eq 256 ]"
printf 'Zorvik\001\020\020\000\000\000abcdefghijklmnop' > "$tmp/case.zrv"
"$cli" decode "$tmp/case.zrv" 2>"$tmp/err" >/dev/null; rc=$?
check "zrv without its magic refused" "[ $rc -eq 2 ] && grep -q 'This is not zorvik file' $tmp/err"
cp "$tmp/case.zrv" "$tmp/case.bin"
"$cli" decode "$tmp/case.bin" >/dev/null; rc=$?
check "raw packet under another name read" "[ $rc -eq 0 ]"

# Help and version print on stdout and exit 0, for the tool and for each command, even where the rest of
# the line is wrong; every option a command's source reads is in some command's help.
out=$("$cli" --help); rc=$?
check "help exit 0" "[ $rc -eq 0 ] && echo \"\$out\" | grep -q '^usage: zorvik-cli COMMAND'"
commands=$(echo "$out" | sed -n '/^commands:/,$p' | awk 'NR > 1 { print $1 }')
check "help lists the commands" "[ \$(echo '$commands' | wc -w) -ge 14 ]"
all_help=""
for c in $commands; do
  h=$("$cli" "$c" --help); rc=$?
  check "$c --help" "[ $rc -eq 0 ] && echo \"\$h\" | grep -q '^usage: zorvik-cli $c'"
  all_help+="$h"$'\n'
done
for o in $(grep -oh '"--[a-z0-9][a-z0-9-]*' "$(dirname "$0")"/../src/cli/*_command.cpp | tr -d '"' | sort -u); do
  check "help mentions $o" "grep -qe '$o\b' <<<\"\$all_help\""
done
"$cli" spectrum --window 99 -h >/dev/null; rc=$?
check "help beats a bad option" "[ $rc -eq 0 ]"
for v in "--version" "decode --version"; do
  out=$("$cli" $v); rc=$?
  check "$v" "[ $rc -eq 0 ] && echo '$out' | grep -Eqx 'zorvik-cli [0-9]+\.[0-9]+\.[0-9]+'"
done
for bad in "" "nosuch" "decode --nosuch"; do
  "$cli" $bad >/dev/null 2>"$tmp/err"; rc=$?
  check "mistake '$bad': one line, exit 2" "[ $rc -eq 2 ] && [ \$(wc -l < $tmp/err) -eq 1 ]"
done

# The scaled CSV: a header, a row a sample at the given scale, LF ends; a scale without --scaled is refused.
"$cli" csv "$tmp/s/0001.zrv" --out "$tmp/v.csv" --scaled --volts-per-div 0.5 --sample-period 2e-6; rc=$?
check "csv --scaled" "[ $rc -eq 0 ] && head -1 $tmp/v.csv | grep -Eqx 'time_s,(volts|min_v,max_v)' && sed -n 3p $tmp/v.csv | grep -q '^2e-06,' && ! grep -q \$'\\r' $tmp/v.csv"
"$cli" csv "$tmp/s/0001.zrv" --out "$tmp/w.csv" --zero 1 2>/dev/null; rc=$?
check "csv scale without --scaled exit 2" "[ $rc -eq 2 ] && [ ! -e $tmp/w.csv ]"

echo "$pass passed, $fail failed"
[ "$fail" -eq 0 ]
