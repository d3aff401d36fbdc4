#!/usr/bin/env bash
# Installs what is missing, builds the tool, decodes every bundled clip to build/demo/ and encodes
# one of them to MP3 again.
set -eu
cd "$(dirname "$0")/.."
. scripts/lib.sh

install_missing g++ cmake ninja-build pkg-config libsndfile1-dev libsoxr-dev libcli11-dev nlohmann-json3-dev
cmake --preset tool >/dev/null
cmake --build --preset tool -j "$jobs"
zetac=$(find build/tool -type f -name zetac -perm -u+x)

mkdir -p build/demo
decoded=0
while IFS= read -r -d '' clip; do
    name=$(basename "$clip")
    wav=build/demo/${name%.*}.wav
    "$zetac" info "$clip"
    "$zetac" decode --force "$clip" -o "$wav"
    echo "  decoded to    $wav, $(stat -c %s "$wav") bytes"
    echo
    decoded=$((decoded + 1))
done < <(find tests/data \( -name '*.aac' -o -name '*.mp3' \) -print0 | sort -z)
echo "$decoded clips decoded to build/demo/"
[ $decoded -gt 0 ]

mp3=build/demo/encoded.mp3
"$zetac" encode --force -V 4 build/demo/stereo_crc_48k.wav -o $mp3
echo
"$zetac" info $mp3
echo "  encoded from  build/demo/stereo_crc_48k.wav, $(stat -c %s $mp3) bytes"
