#!/bin/sh
# up_to_date.sh <generate-schema> <source tree> <build tree>: generates into the build tree, and fails when a
# committed file differs, is missing, or isn't generated any more.
set -u
generator=$1 source=$2 build=$3
made=$build/generated

rm -rf "$made"
"$generator" "$made" || exit 1
differs=0
for path in $(cd "$made" && echo schema/* docs/*); do
    diff -ruN "$source/$path" "$made/$path" || differs=1
done
if [ "$differs" -ne 0 ]; then
    echo "The tables of the classes say something else than the generated files (- committed, + generated)." >&2
    echo "Make them anew: cmake --build $build --target schema-update" >&2
    exit 1
fi
