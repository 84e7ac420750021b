# Reads bench/workloads.tsv and the medians of scripts/bench; prints the tables in Markdown.
# With scripts/bench-names.awk.

BEGIN {
    initNames()
    worstGrowth = 1.5
}

/^#/ { next }

FNR == NR {
    workloads[++workloadCount] = $1
    item[$1] = $2
    target[$1] = $3
    about[$1] = $4
    next
}

# What nobody has named would be missing in silence.
!($1 in item) || !($2 in title) {
    print "bench-report: " $1 "/" $2 " is named nowhere" > "/dev/stderr"
    failed = 1
    exit 1
}

# A row of a workload is a size, or a number of threads.
{
    row = $1 SUBSEP $3 SUBSEP $4
    if (!(row in isRow)) rows[$1, ++rowCount[$1]] = $3 SUBSEP $4
    isRow[row] = 1
    cost[$1, $2, $3, $4] = $5
    present[$1, $2] = 1
    if ($4 > 1) hasThreads[$1] = 1
    if ($6 > widest) { widest = $6; widestName = $1 "/" $2 "/" $3 }
    spread += $6
    ++measured
}

END {
    if (failed) exit 1
    printf "The repetitions of a benchmark differ by %.1f %% on average (standard deviation), and by " \
        "%.0f %% at most (%s).\n\n", 100 * spread / measured, 100 * widest, widestName
    for (i = 1; i <= workloadCount; ++i) sortRows(workloads[i])
    printTargets()
    for (i = 1; i <= workloadCount; ++i) printWorkload(workloads[i])
}

function sizeAt(workload, r) {
    split(rows[workload, r], field, SUBSEP)
    return field[1] + 0
}

function threadsAt(workload, r) {
    split(rows[workload, r], field, SUBSEP)
    return field[2] + 0
}

# By size, then by the number of threads. There are few.
function sortRows(workload, r, k, kept) {
    for (r = 2; r <= rowCount[workload]; ++r) {
        kept = rows[workload, r]
        for (k = r; k > 1 && isBefore(kept, rows[workload, k - 1]); --k) {
            rows[workload, k] = rows[workload, k - 1]
        }
        rows[workload, k] = kept
    }
}

function isBefore(a, b, x, y) {
    split(a, x, SUBSEP)
    split(b, y, SUBSEP)
    return x[1] + 0 < y[1] + 0 || (x[1] + 0 == y[1] + 0 && x[2] + 0 < y[2] + 0)
}

function costAt(workload, who, r) { return cost[workload, who, rows[workload, r]] }

function hasCost(workload, who, r) { return (workload SUBSEP who SUBSEP rows[workload, r]) in cost }

# The highest multiple of the floor from 1,000 items on; 0 without a floor.
function worstRatio(workload, r, ratio, worst) {
    worst = 0
    for (r = 1; r <= rowCount[workload]; ++r) {
        if (sizeAt(workload, r) < 1000 || !hasCost(workload, "floor", r)) continue
        ratio = costAt(workload, "zor", r) / costAt(workload, "floor", r)
        if (ratio > worst) worst = ratio
    }
    return worst
}

# What an item costs at the largest size, as a multiple of that at 1,000; 0 when there is one size.
function growth(workload, who, r, first, last) {
    first = 0
    last = 0
    for (r = 1; r <= rowCount[workload]; ++r) {
        if (!hasCost(workload, who, r)) continue
        if (sizeAt(workload, r) == 1000) first = r
        last = r
    }
    if (!first || first == last || hasThreads[workload]) return 0
    return costAt(workload, who, last) / costAt(workload, who, first)
}

# The highest cost that counts for a target in bytes.
function worstBytes(workload, r, worst) {
    for (r = 1; r <= rowCount[workload]; ++r) {
        if (sizeAt(workload, r) >= 1000 && costAt(workload, "zor", r) > worst) {
            worst = costAt(workload, "zor", r)
        }
    }
    return worst
}

function verdict(reached) { return reached ? "reached" : "**missed**" }

# Three digits that count.
function digits(number) {
    if (number >= 100) return number >= 10000 ? separated(number) : sprintf("%.0f", number)
    if (number >= 1) return sprintf(number >= 10 ? "%.1f" : "%.2f", number)
    return sprintf(number >= 0.1 ? "%.2f" : "%.2g", number)
}

function separated(number, text, i, out) {
    text = sprintf("%.0f", number)
    out = ""
    for (i = length(text); i > 0; --i) {
        out = substr(text, i, 1) out
        if ((length(text) - i) % 3 == 2 && i > 1) out = "," out
    }
    return out
}

function targetCells(workload, bytes, ratio) {
    ratio = worstRatio(workload)
    if (target[workload] == "-") return "| - | " (ratio ? digits(ratio) : "-") " | |"
    if (target[workload] ~ /^bytes/) {
        bytes = substr(target[workload], 7) + 0
        return "| " bytes " bytes | " digits(worstBytes(workload)) " | " \
            verdict(worstBytes(workload) <= bytes) " |"
    }
    return "| " target[workload] " | " digits(ratio) " | " \
        verdict(ratio && ratio <= target[workload] + 0) " |"
}

function growthCells(workload, own, floor) {
    own = growth(workload, "zor")
    if (!own) return " - | - | |"
    floor = growth(workload, "floor")
    return " " digits(own) " | " (floor ? digits(floor) : "-") " | " verdict(own <= worstGrowth) " |"
}

function printTargets(i) {
    print "## Targets"
    print ""
    print "At most so many times the floor, the worst of all sizes from 1,000 on counting; and an item"
    print "at the largest size costs at most " worstGrowth " times what it costs at 1,000. Beside that, what"
    print "the floor itself grows by: what does not fit into the caches costs everybody more."
    print ""
    print "| Workload | target | worst | | growth | the floor's | |"
    print "| --- | ---: | ---: | --- | ---: | ---: | --- |"
    for (i = 1; i <= workloadCount; ++i) {
        if (rowCount[workloads[i]]) {
            print "| " workloads[i] " " targetCells(workloads[i]) growthCells(workloads[i])
        }
    }
}

function printHeader(workload, w, line, rule) {
    line = hasThreads[workload] ? "| Size | threads | zor |" : "| Size | zor |"
    rule = hasThreads[workload] ? "| ---: | ---: | ---: |" : "| ---: | ---: |"
    for (w = 2; w <= whoCount; ++w) {
        if (!((workload, whos[w]) in present)) continue
        line = line " " title[whos[w]] " |"
        rule = rule " ---: |"
    }
    print line
    print rule
}

function printRow(workload, r, w, line, own, other) {
    line = "| " separated(sizeAt(workload, r)) " |"
    if (hasThreads[workload]) line = line " " threadsAt(workload, r) " |"
    own = costAt(workload, "zor", r)
    line = line " " digits(own) " |"
    for (w = 2; w <= whoCount; ++w) {
        if (!((workload, whos[w]) in present)) continue
        if (hasCost(workload, whos[w], r)) {
            other = costAt(workload, whos[w], r)
            line = line " " digits(other) " (" digits(own / other) ") |"
        } else {
            line = line " - |"
        }
    }
    print line
}

function printWorkload(workload, r, unit) {
    if (!rowCount[workload]) return
    unit = (target[workload] ~ /^bytes/ ? "bytes" : "ns") " per " item[workload]
    print ""
    print "## " workload
    print ""
    print about[workload]
    print ""
    print "In " unit "; in brackets, how many times as much zor takes."
    print ""
    printHeader(workload)
    for (r = 1; r <= rowCount[workload]; ++r) printRow(workload, r)
    if (rowCount[workload] < 2 || hasThreads[workload]) return
    print ""
    print "![Cost of an item against the size](plots/" workload ".svg)"
}
