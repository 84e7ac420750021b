# Reads docs/testing.md and the counts of scripts/coverage; prints the table, and fails as described
# there.

BEGIN {
    FS = "\t"
    row = "%-34s %7s %7s  %7s %7s  %8s %7s\n"
    printf row, "", "lines", "", "parts", "", "branches", ""
}

# A row of the document's table: | `file` | `source line` | `part` or `condition` is ... | reason |
FNR == NR {
    if (!/^\| `[^`]*` \| `/) next
    line = $0
    gsub(/\\\|/, "\001", line)
    if (split(line, cell, / \| /) != 4) next
    for (i = 1; i <= 4; ++i) gsub(/\001/, "|", cell[i])
    sub(/^\| /, "", cell[1])
    what = cell[1] ": " cell[2] ": " cell[3]
    gsub(/`/, "", what)
    listed[what] = 1
    next
}

$1 == "file" {
    file = $2
    files[++fileCount] = file
    delete source
    for (n = 1; (getline source[n] < file) > 0; ++n) {}
    close(file)
}

# What holds nothing but blanks, comments and the ends of blocks is not counted.
$1 == "part" {
    first = ""
    for (n = $2; n <= $4; ++n) {
        text = source[n]
        if (n == $4) text = substr(text, 1, $5 - 1)
        if (n == $2) text = substr(text, $3)
        if (text ~ /^[[:space:]}]*(\/\/.*)?$/) continue
        if (first == "") first = text
        if (!((file, n) in isLine)) ++lines[file]
        isLine[file, n] = 1
        if ($6 == 0) continue
        if (!((file, n) in isReached)) ++linesReached[file]
        isReached[file, n] = 1
    }
    if (first == "") next
    ++parts[file]
    if ($6 > 0) ++partsReached[file]
    else note(trimmed(source[$2]) ": " trimmed(first))
}

$1 == "condition" {
    branches[file] += 2
    branchesReached[file] += ($6 > 0) + ($7 > 0)
    if (($6 > 0) == ($7 > 0)) next # what is never evaluated is a part that is not reached
    text = source[$2]
    if ($2 == $4) text = substr(text, 1, $5 - 1)
    note(trimmed(source[$2]) ": " trimmed(substr(text, $3)) " is " ($6 > 0 ? "false" : "true"))
}

END {
    for (i = 1; i <= fileCount; ++i) {
        printRow(files[i])
        add(files[i] ~ /^tools\// ? "zorctl" : "the library", files[i])
    }
    print ""
    printRow("the library")
    printRow("zorctl")
    for (what in listed) {
        if (what in met) continue
        print "listed, but reached or gone: " what > "/dev/stderr"
        failed = 1
    }
    exit failed
}

function trimmed(text) {
    sub(/^[[:space:]]+/, "", text)
    sub(/[[:space:]]+$/, "", text)
    return text
}

# Something in the file that no test reaches.
function note(what) {
    what = file ": " what
    met[what] = 1
    if (what in listed || file ~ /^tools\//) return
    print "not reached: " what > "/dev/stderr"
    failed = 1
}

function add(sum, file) {
    lines[sum] += lines[file]; linesReached[sum] += linesReached[file]
    parts[sum] += parts[file]; partsReached[sum] += partsReached[file]
    branches[sum] += branches[file]; branchesReached[sum] += branchesReached[file]
}

# Cut, not rounded: 100% is all of them.
function share(reached, all) {
    return all ? sprintf("%.2f%%", int(10000 * reached / all) / 100) : "-"
}

function printRow(name) {
    printf row, name, lines[name] + 0, share(linesReached[name], lines[name]), parts[name] + 0,
        share(partsReached[name], parts[name]), branches[name] + 0,
        share(branchesReached[name], branches[name])
}
