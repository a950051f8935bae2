#!/bin/sh
# Draws the documents of a folder by this program and by the grammar's own implementation, and compares axes,
# legends, titles and marks. Needs Node and its package registry; no part of the build or of the tests.
#
#   tests/compare/run.sh PROGRAM CHARTS [DATA_ROOT]
#
# PROGRAM is the ostrel program, CHARTS a folder of *.vl.json documents or one document, DATA_ROOT the folder
# below which their data lie; left out, that of the package vega-datasets. Exit 0 when all differences stand in
# differences.json, which says why each is meant. Where CHARTS is "expressions", those of expressions.txt are
# computed by both instead.
set -eu

if [ $# -lt 2 ] || [ $# -gt 3 ]; then
  echo "usage: tests/compare/run.sh PROGRAM CHARTS [DATA_ROOT]" >&2
  exit 2
fi
source=$(cd "$(dirname "$0")" && pwd)
build=$source/../../build/compare
mkdir -p "$build"
cp "$source/package.json" "$source"/*.mjs "$source"/*.txt "$source/differences.json" "$build/"
npm install --prefix "$build" --no-audit --no-fund --no-package-lock --silent --ignore-scripts
if [ "$2" = expressions ]; then
  TZ=UTC exec node "$build/expressions.mjs" "$1"
fi
data=${3:-$build/node_modules/vega-datasets}
TZ=UTC exec node "$build/compare.mjs" "$1" "$2" "$data"
