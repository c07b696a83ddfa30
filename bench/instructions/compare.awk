# Compares the new measurements (the second file) with the stored figures (the first file).

function fail(text) {
    print "FAILS  " text
    failed = 1
}

/^compiler / && FNR == NR {
    known_compiler = substr($0, 10)
    next
}
/^#/ || NF == 0 {
    next
}
FNR == NR {
    key = $1 " " $2
    figure[key] = $3
    if ($3 > $4 && NF < 5) {
        fail(key ": " $3 " is above " $4 ", which was reached before, and no reason is given")
    }
    next
}
{
    key = $1 " " $2
    if (!(key in figure)) {
        fail(key ": no figure is kept")
        next
    }
    seen[key] = 1
    change = 100 * ($3 / figure[key] - 1)
    line = sprintf("%-14s %-7s %8.1f  kept %8.1f  %+6.1f%%", $1, $2, $3, figure[key], change)
    if (known_compiler != compiler) {
        print line
    } else if (change > band) {
        fail(line)
    } else if (change < -band) {
        fail(line "  (better: keep it, with bench/instructions/run --write)")
    } else {
        print "       " line
    }
}
END {
    if (known_compiler != compiler) {
        print "not compared: the figures are of " known_compiler ", this is " compiler
        exit failed
    }
    for (key in figure) {
        if (!(key in seen)) {
            fail(key ": was not measured")
        }
    }
    exit failed
}
