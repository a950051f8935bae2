#!/bin/sh
# One step of the test of the install.
#
#   run.sh STEP FOLDER CMAKE BUILD_DIR COMPILER LIBDIR
set -eu
step=$1 folder=$2 cmake=$3 build=$4 compiler=$5 libdir=$6
source=$(cd "$(dirname "$0")" && pwd)
prefix="$folder/moved to/another place"

case $step in
  install)
    rm -rf "$folder"
    "$cmake" --install "$build" --prefix "$folder/first" >/dev/null
    mkdir -p "${prefix%/*}"
    mv "$folder/first" "$prefix"
    ;;
  package)
    "$cmake" -G Ninja -S "$source" -B "$folder/package" -DCMAKE_BUILD_TYPE=Release \
      "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_PREFIX_PATH=$prefix"
    "$cmake" --build "$folder/package"
    "$folder/package/consumer"
    ;;
  pkgconfig)
    # pkg-config's answer is made for a shell to read: a blank in a path is escaped.
    flags=$(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags --libs ostreltransforms)
    eval "'$compiler' -std=c++20 -O1 '$source/main.cpp' -o '$folder/consumer' $flags"
    LD_LIBRARY_PATH="$prefix/$libdir" "$folder/consumer"
    ;;
  readme)
    # The embedding example of the README, compiled and run as it stands.
    sed -n '/^```cpp$/,/^```$/{/^```/d;p;}' "$source/../../README.md" >"$folder/readme.cpp"
    flags=$(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags --libs ostreltransforms)
    eval "'$compiler' -std=c++20 -O1 -Wall -Wextra '$folder/readme.cpp' -o '$folder/readme' $flags"
    printed=$(LD_LIBRARY_PATH="$prefix/$libdir" "$folder/readme")
    echo "$printed"
    [ "$printed" = '0 0.5 1' ]
    ;;
  program)
    "$prefix/bin/ostrel" functions clampMin >"$folder/functions.txt"
    grep clampMin "$folder/functions.txt"
    ;;
  *)
    echo "run.sh: no step '$step'" >&2
    exit 2
    ;;
esac
