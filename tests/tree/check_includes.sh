#!/bin/sh
# Who may include whom. Arrows between the folders point one way only.
#
#   check_includes.sh SOURCE_DIR
set -eu
cd "$1"

failed=0

# forbid FOLDER ROOTS WHY: no file below FOLDER may include a header whose path begins with one of ROOTS.
forbid() {
  [ -d "$1" ] || { echo "check_includes: no folder $1"; exit 1; }
  if grep -rnE --include='*.h' --include='*.cpp' "^[[:space:]]*#[[:space:]]*include[[:space:]]*[\"<]($2)/" "$1"; then
    echo "  ^ $1: $3"
    failed=1
  fi
}

plugin='ostreltransforms|render|string|maps'
host='services|charts|ostrel'
forbid host/ostrelsys    "ostrelrtcore|$plugin|$host" 'the system library stands on nothing of ours'
forbid host/ostrelrtcore "$plugin|$host"              'the runtime core knows neither the plug-in nor the host'
forbid main              "$host"                      'the plug-in takes ostrelsys and ostrelrtcore from its host, and no more'
forbid host/services     'render|string|maps|charts|ostrel'  'services know the plug-in by its entry points alone'
forbid host/charts       'ostrel'                     'charts do not know the program'

# A path with a dot segment would slip through the rules above.
if grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]*"\.' host main; then
  echo '  ^ an #include starts at an include root, host/ or main/'
  failed=1
fi
exit $failed
