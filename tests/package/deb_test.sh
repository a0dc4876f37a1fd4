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
for f in usr/bin/brenlow usr/bin/tarrow usr/lib/brenlow/brenlow usr/lib/brenlow/tarrow \
    usr/lib/brenlow/Databases/AssetWiseDepChartCompv2.19.9.xls usr/lib/brenlow/Databases/AssetWiseDepChartOth.xls \
    usr/share/applications/tarrow.desktop \
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
# The register to a workbook from the installed template.
env -u BRENLOW_DATA_DIR "$work/root/usr/bin/brenlow" --db "sqlite:$work/demo/demo.db" register export \
    "$work/demo/demo.xls" --client DEMO01 --year 2025 >/dev/null 2>&1
[ -s "$work/demo/demo.xls" ]
echo "unpacked register export wrote a workbook from the installed template"
