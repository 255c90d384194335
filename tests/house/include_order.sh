#!/usr/bin/env bash
# The layers of src/: a file may include only from a layer below its own. The order, bottom first (one
# line a layer; directories on one line are peers and do not include each other):
LAYERS=(
  "core"
  "config"
  "signal"
  "link"
  "sim"
  "spectrum"
  "measure display stat"
  "analysis"
  "control"
  "export"
  "firmware"
  "session"
  "ui"
  "@windows"
  "app cli sim_server"
)
# A widget file (*_window, *_page, *_panel, *_box) lives beside its feature but stands on "@windows":
# it may include the whole core, ui/ and other windows, and no core file may include it. cli/ holds no widgets and
# includes neither ui/ nor a widget file.
set -u
root="${1:-$(dirname "$0")/../..}"
cd "$root/src" || exit 2
declare -A rank
for i in "${!LAYERS[@]}"; do
  for d in ${LAYERS[$i]}; do rank[$d]=$i; done
done
ui_rank=${rank[ui]}
widget_rank=${rank[@windows]}
is_widget() { [[ "$1" =~ _(window|page|panel|box)\.(h|cpp)$ ]]; }
level() {  # path relative to src/
  local dir=${1%%/*}
  if [ -z "${rank[$dir]+x}" ]; then echo -1; return; fi
  if is_widget "$1" && [ "${rank[$dir]}" -lt "$ui_rank" ]; then echo "$widget_rank"; else echo "${rank[$dir]}"; fi
}
bad=0
while IFS= read -r file; do
  from=$(level "$file")
  if [ "$from" -lt 0 ]; then echo "unknown directory: src/$file (add it to the layers)"; bad=1; continue; fi
  fromdir=${file%%/*}
  while IFS= read -r inc; do
    todir=${inc%%/*}
    [ "$todir" = "$fromdir" ] && { is_widget "$inc" && ! is_widget "$file" && [ "$fromdir" != ui ] && [ "$fromdir" != app ] &&
      { echo "src/$file includes the widget file $inc"; bad=1; }; continue; }
    to=$(level "$inc")
    if [ "$to" -lt 0 ]; then echo "src/$file includes $inc from an unknown directory"; bad=1; continue; fi
    if [ "$fromdir" = cli ] && { [ "$todir" = ui ] || is_widget "$inc"; }; then
      echo "src/$file: the command-line tool includes the widget file $inc"; bad=1; continue
    fi
    [ "$to" -eq "$widget_rank" ] && [ "$from" -eq "$widget_rank" ] && continue  # windows open each other
    if [ "$to" -ge "$from" ]; then echo "src/$file includes $inc from a layer that is not below it"; bad=1; fi
  done < <(sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([a-z_]*\/[^"]*\)".*/\1/p' "$file")
done < <(find . -name '*.h' -o -name '*.cpp' | sed 's#^\./##' | sort)
if [ "$bad" -ne 0 ]; then echo "include order: FAILED"; exit 1; fi
echo "include order: ok"
