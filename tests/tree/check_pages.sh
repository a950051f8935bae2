#!/bin/sh
# Checks that the pages of the public interface are made without a warning.
#
#   check_pages.sh SOURCE_DIR OUTPUT_DIR
set -eu
cd "$1"
mkdir -p "$2"
{ cat docs/Doxyfile; echo "OUTPUT_DIRECTORY = \"$2\""; } | doxygen -
