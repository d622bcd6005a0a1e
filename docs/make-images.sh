#!/usr/bin/env bash
# Makes the pictures of the manual: plays docs/demo/windows-tour.vps in virtual time and puts the
# pictures that the manual shows into docs/images. With names of languages (English, Deutsch,
# Francais, Español) it plays the tour in these instead and leaves all pictures of every window in
# out/tour/LANGUAGE, to look at. With pngquant the pictures get smaller.
set -euo pipefail
cd "$(dirname "$0")/.."
source cmake/ensure.sh
ensure_packages cmake/packages.txt
ensure_build dev vantor-player
root=$PWD

# The program's folder as it is after Save Config; the configuration is a Windows-1252 file.
play_tour() {
    local out="$root/out/tour/$1"
    rm -rf "$out"
    mkdir -p "$out/folder"
    cp -r data/. "$out/folder"
    printf '" 1","%s"," 0"," 0",""\r\n' "$1" | iconv -f UTF-8 -t WINDOWS-1252 \
        >"$out/folder/config0000.txt"
    (cd "$out" && QT_QPA_PLATFORM=offscreen "$root/build/dev/src/vantor-player" --simulate ME111 \
        --virtual-time --folder folder "$root/docs/demo/windows-tour.vps" >session.txt) || {
        tail -n 5 "$out/session.txt"
        return 1
    }
    echo "$1: $(find "$out" -name '*.png' | wc -l) pictures in out/tour/$1"
}

if [ $# -gt 0 ]; then
    for language in "$@"; do play_tour "$language"; done
    exit
fi

# Picture of the tour, name in docs/images.
pictures="
02-main-mars main
05-main-config configuration
12-start-coin question
13-measuring-coin measurement
16-measuring-slug slug
20-limits limits
23-progress progress
28-prom-limits prom-utilities
29-validator-test validator-test
30-wizards wizards
37-prom-values prom-values
42-limits-435 limits-435
45-eeprom-words eeprom-utilities
47-eeprom-settings eeprom-settings
50-validator-test-binary validator-test-binary
61-wizards-G13 wizards-G13
62-limits-G13 limits-G13
65-nri-limits nri-limits
66-nri-map nri-map
74-nri-other-G40 nri-other
"
play_tour English
while read -r picture name; do
    [ -n "$picture" ] || continue
    cp "out/tour/English/tour-$picture.png" "docs/images/$name.png"
    if command -v pngquant >/dev/null; then
        pngquant --force --strip --nofs --ext .png 32 "docs/images/$name.png"
    fi
done <<<"$pictures"
du -sh docs/images
