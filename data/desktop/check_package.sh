#!/usr/bin/env bash
# Checks the Debian package in a build folder (made by `cpack -G DEB`): every file a desktop needs is in
# it, and unpacked, the desktop entry, the AppStream data, the icons and the packet file type pass the
# desktop's own checkers. Usage: check_package.sh BUILD_DIR
set -euo pipefail
build=$1
id=org.zorvik.Zorvik
here=$(cd "$(dirname "$0")" && pwd)
debs=("$build"/zorvik_*.deb)
[ "${#debs[@]}" -eq 1 ] && [ -f "${debs[0]}" ] || { echo "want one zorvik .deb in $build" >&2; exit 1; }
deb=${debs[0]}
fail() { echo "package: $*" >&2; exit 1; }

listing=$(dpkg-deb -c "$deb")
for f in bin/zorvik bin/zorvik-cli bin/zorvik-sim share/applications/$id.desktop share/metainfo/$id.metainfo.xml \
         share/mime/packages/$id.xml share/icons/hicolor/scalable/apps/$id.svg \
         share/icons/hicolor/{48x48,128x128,256x256}/apps/$id.png \
         share/man/man1/zorvik.1 share/man/man1/zorvik-cli.1 share/man/man1/zorvik-sim.1; do
  grep -q " \./usr/$f\$" <<<"$listing" || fail "$f is missing"
done
dpkg-deb -f "$deb" Depends | grep -q libqt6widgets6 || fail "no dependencies from the linked libraries"

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
share=$root/usr/share
desktop-file-validate "$share/applications/$id.desktop"
appstreamcli validate --no-net "$share/metainfo/$id.metainfo.xml" >/dev/null ||
  appstreamcli validate --no-net "$share/metainfo/$id.metainfo.xml"
version=$(dpkg-deb -f "$deb" Version)
grep -q "<release version=\"$version\"" "$share/metainfo/$id.metainfo.xml" || fail "no release $version"
[ "$("$root/usr/bin/zorvik-cli" --version)" = "zorvik-cli $version" ] || fail "zorvik-cli --version"
[ "$("$root/usr/bin/zorvik-sim" --version)" = "zorvik-sim $version" ] || fail "zorvik-sim --version"
for size in 48 128 256; do
  file "$share/icons/hicolor/${size}x$size/apps/$id.png" | grep -q "PNG image data, $size x $size" ||
    fail "the ${size}x$size icon is not $size pixels square"
done
# A packet file is known by its name and, under any other name, by its first bytes.
XDG_DATA_DIRS=$share update-mime-database "$share/mime"
cp "$here/../default.zrv" "$root/packet"
for f in "$here/../default.zrv" "$root/packet"; do
  type=$(XDG_DATA_DIRS=$share gio info -a standard::content-type "$f" | sed -n 's/.*content-type: //p')
  [ "$type" = application/x-zorvik-packet ] || fail "$(basename "$f") is $type"
done
echo "package $(basename "$deb") checked"
