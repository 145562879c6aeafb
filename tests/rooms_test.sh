#!/usr/bin/env bash
# A breach of the walls is found: an include, a link line, a target that is in no table.
set -eu
check=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir "$root"/{low,high}
printf '| `low` | | no | |\n| `high` | | no | `low` |\n' > "$root/ARCHITECTURE.md"
echo 'kelvo_library(kelvo_low SOURCES a.cpp)' > "$root/low/CMakeLists.txt"
echo 'kelvo_library(kelvo_high SOURCES b.cpp LINK kelvo_low)' > "$root/high/CMakeLists.txt"
touch "$root"/low/a.{h,cpp}
echo '#include "low/a.h"' > "$root/high/b.cpp"
touch "$root/high/b.h"
"$check" "$root"

# expect_breach FILE LINE: with the line in the file the check fails and names the file.
expect_breach() {
  cp "$root/$1" "$root/before"
  echo "$2" >> "$root/$1"
  if "$check" "$root" > "$root/found"; then echo "not found: $2"; exit 1; fi
  grep -qF "$1" "$root/found"
  mv "$root/before" "$root/$1"
}
expect_breach low/a.h '#include "high/b.h"'
expect_breach low/a.cpp '#include "nowhere/c.h"'
expect_breach low/CMakeLists.txt 'kelvo_library(kelvo_low_page SOURCES c.cpp)'
sed -i 's/a.cpp/a.cpp LINK kelvo_high/' "$root/low/CMakeLists.txt"
if "$check" "$root"; then echo "not found: the link line"; exit 1; fi
