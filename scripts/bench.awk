# Makes one table of the results that benchmark programs gave as CSV, one file a program.

BEGIN {
  # What a benchmark is compared with: a name like its own with one part replaced.
  pairs = "^Invlerp/=InvlerpByHand/ ^ClampMin/=ClampMinByHand/ ^LnSpecial/0=StdLogLoop/0 " \
    "^LnSpecial/[12]=StdLogLoop/0 ^ExpSpecial/[012]=StdExpLoop/0 <false>=<true> ^Stack/=PlainStack/ " \
    "^ScanStack/=PlainStack/ ^IncOnNew/=StandardNumbering/ ^KeepOnlyUnique/=StandardSet/ " \
    "^MercatorForward/=PlainMercatorForward/ ^Compose/latin=Pango/latin ^Compose/cyrillic=Pango/cyrillic _warm=_cold"
  pairCount = split(pairs, pair, " ")
}

FNR == 1 { isTable = 0 }

/^name,/ {
  isTable = 1
  split("", column)
  for (i = 1; i <= NF; i++) column[$i] = i
  program = FILENAME
  sub(/.*\//, "", program)
}

BEGIN { FS = "," }

isTable && /^"/ {
  name = $1
  gsub(/"/, "", name)
  if (name ~ /_(mean|median|stddev|cv)$/) next
  if ($column["time_unit"] == "") {
    failed[program "/" name] = 1
    next
  }
  unit = $column["time_unit"] == "ms" ? 1e6 : $column["time_unit"] == "us" ? 1e3 : $column["time_unit"] == "s" ? 1e9 : 1
  items = $column["items_per_second"]
  bytes = $column["bytes_per_second"]
  isKnown = program SUBSEP name in time
  figure = items > 0 ? 1e9 / items : $column["cpu_time"] * unit
  if (isKnown && time[program, name] <= figure) next
  if (!isKnown) {
    order[++count] = name
    programs[count] = program
  }
  time[program, name] = figure
  isPerItem[program, name] = items > 0
  moved[program, name] = items > 0 && bytes > 0 ? bytes / items : 0
  if (name ~ /^CopyOfTheSameBytes\/.*0000000$/ && bytes > bandwidth) bandwidth = bytes
}

function show(nanoseconds) {
  if (nanoseconds >= 1e6) return sprintf("%.3g ms", nanoseconds / 1e6)
  if (nanoseconds >= 1e4) return sprintf("%.3g us", nanoseconds / 1e3)
  return sprintf("%.3g ns", nanoseconds)
}

END {
  printf "memory is copied at %.1f GB/s\n\n", bandwidth / 1e9
  printf "%-52s %12s %-5s %12s %9s\n", "benchmark", "time", "per", "memory bound", "baseline"
  for (i = 1; i <= count; i++) {
    name = order[i]
    program = programs[i]
    if (program != last) printf "%s\n", program
    last = program
    figure = time[program, name]
    bound = bandwidth > 0 && moved[program, name] > 0 ? show(moved[program, name] / bandwidth * 1e9) : ""
    ratio = ""
    for (p = 1; p <= pairCount; p++) {
      split(pair[p], sides, "=")
      other = name
      if (sub(sides[1], sides[2], other) && program SUBSEP other in time) {
        ratio = sprintf("%.2f x", time[program, other] / figure)
        break
      }
    }
    printf "  %-50s %12s %-5s %12s %9s\n", name, show(figure), isPerItem[program, name] ? "item" : "call", bound, ratio
  }
  for (name in failed) printf "%s gave no result\n", name
  for (name in failed) exit 1
}
