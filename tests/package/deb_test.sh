#!/bin/sh
# Builds the Debian package from a finished build, unpacks it into a temporary root
# with dpkg -x, and runs the unpacked programs: brenlow --version and the demonstration.
# Usage: deb_test.sh BUILD_DIR
set -eu
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cpack -G DEB -B "$work/out" --config "$build/CPackConfig.cmake" >"$work/cpack.log" 2>&1 || {
    cat "$work/cpack.log"
    exit 1
}
deb=$(ls "$work"/out/brenlow_*_amd64.deb)
echo "package: $(basename "$deb"), $(du -k "$deb" | cut -f1) KB"
dpkg-deb --info "$deb" | grep -E 'Package|Version|Depends|Installed-Size'
dpkg -x "$deb" "$work/root"
for f in usr/bin/brenlow usr/bin/tarrow usr/share/applications/tarrow.desktop \
    usr/share/icons/hicolor/scalable/apps/tarrow.svg usr/share/brenlow/data/income-tax-depreciation-rates.csv \
    usr/share/brenlow/data/companies-act-schedule-ii.csv; do
    [ -e "$work/root/$f" ] || { echo "missing from the package: $f"; exit 1; }
done
version=$("$work/root/usr/bin/brenlow" --version)
echo "unpacked brenlow --version: $version"
[ -n "$version" ]
mkdir "$work/demo"
env -u BRENLOW_DATA_DIR "$work/root/usr/bin/brenlow" --db "sqlite:$work/demo/demo.db" demo --out "$work/demo" >/dev/null
[ -s "$work/demo/demo-income-tax-chart.pdf" ] && [ -s "$work/demo/demo-books-chart.pdf" ]
echo "unpacked demo wrote both charts"
