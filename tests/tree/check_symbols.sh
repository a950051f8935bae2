#!/bin/sh
# The plug-in shows what its host may use, and nothing else.
#
#   check_symbols.sh NM LIBRARY
#
# Weak symbols may also belong to the templates of the standard library and of ours that the plug-in
# instantiates: the loader merges them.
set -eu
nm=$1
library=$2

ours='OstrelTransforms|StoreValueOperators|TransformNames|MapUtil|MercatorProjections|runtime'
ours="($ours)::|(MapProjectorHelper|MercatorMapProjectorHelper|IdentitySpatialProjectorHelper|MapScaleLevel)(::|\$)"
templates='(std|__gnu_cxx|boost|tbb|ort::core)::|operator (new|delete)'
before='(typeinfo for |typeinfo name for |vtable for |VTT for |guard variable for |(non-)?virtual thunk to )?'

symbols=$("$nm" -D -C --defined-only "$library" | sed -E 's/^[0-9a-f]* //')
[ -n "$symbols" ] || { echo "check_symbols: $library shows no symbols at all"; exit 1; }

# The name of a function template's instance is preceded by its return type, hence the blank in the second test.
strangers=$(printf '%s\n' "$symbols" |
  grep -vE "^[A-Za-z] $before($ours)" |
  grep -vE "^[WVu] $before(.* )?($templates|$ours)" || true)
if [ -n "$strangers" ]; then
  echo "check_symbols: $library shows names that are not part of its interface:"
  printf '%s\n' "$strangers" | head -50
  exit 1
fi

# count NAMESPACE EXPECTED: the name tables are part of the interface to the last entry.
count() {
  found=$(printf '%s\n' "$symbols" | grep -cE "^[A-Z] $1::[A-Za-z0-9_]+\$" || true)
  [ "$found" -eq "$2" ] || { echo "check_symbols: $found names in $1 where there should be $2"; exit 1; }
}
count TransformNames 121
count runtime::VisualKey 249
