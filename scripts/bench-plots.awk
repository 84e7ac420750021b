# Reads bench/workloads.tsv and the medians of scripts/bench; prints what gnuplot needs to draw the
# cost of an item against the size, a file for each workload of several sizes. With
# scripts/bench-names.awk.

BEGIN {
    initNames()
    print "set terminal svg size 560,340 font 'sans,11' background 'white'"
    print "set logscale xy"
    print "set xlabel 'size'"
    print "set key outside right top"
    print "set grid ytics"
    print "unset mxtics"
    print "unset mytics"
    print "set format x '%.0f'"
    print "set yrange [*:*]"
}

/^#/ { next }

FNR == NR {
    workloads[++workloadCount] = $1
    unit[$1] = ($3 ~ /^bytes/ ? "bytes" : "ns") " per " $2
    next
}

{
    points[$1, $2] = points[$1, $2] $3 " " $5 "\n"
    if (!(($1, $3) in isSize)) ++sizes[$1]
    isSize[$1, $3] = 1
    if ($4 > 1) hasThreads[$1] = 1
}

END {
    for (i = 1; i <= workloadCount; ++i) {
        if (sizes[workloads[i]] > 1 && !hasThreads[workloads[i]]) plot(workloads[i])
    }
}

function plot(workload, w, line) {
    line = ""
    for (w = 1; w <= whoCount; ++w) {
        if (!((workload, whos[w]) in points)) continue
        print "$" whos[w] " << end"
        printf "%s", points[workload, whos[w]]
        print "end"
        line = line (line ? ", " : "") "$" whos[w] " smooth unique with linespoints linewidth " \
            (whos[w] == "zor" ? 3 : 1) " linetype " w " title '" title[whos[w]] "'"
    }
    print "set output 'bench/plots/" workload ".svg'"
    print "set ylabel '" unit[workload] "'"
    print "plot " line
}
