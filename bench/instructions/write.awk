# Writes the new figures. The fourth column gets the lowest figure so far. A figure stays when the new one is not lower and
# inside the band.

function lower(a, b) {
    return a < b ? a : b
}

FNR == NR && /^#/ {
    print
}
FNR == NR && /^compiler / {
    known_compiler = substr($0, 10)
}
/^#/ || /^compiler / || NF == 0 {
    next
}
FNR == NR {
    key = $1 " " $2
    figure[key] = $3 + 0
    lowest[key] = $4 + 0
    why[key] = ""
    for (i = 5; i <= NF; ++i) {
        why[key] = why[key] " " $i
    }
    next
}
{
    if (!is_begun) {
        is_begun = 1
        print "compiler " compiler
    }
    key = $1 " " $2
    if (!(key in figure) || known_compiler != compiler) {
        printf "%-14s %-7s %8.1f %8.1f\n", $1, $2, $3, $3
        next
    }
    if ($3 > figure[key] && $3 <= figure[key] * (1 + band / 100)) {
        $3 = figure[key]
    }
    if ($3 > figure[key]) {
        if (reason == "") {
            print key " goes up, from " figure[key] " to " $3 ": give a reason" >"/dev/stderr"
            failed = 1
        }
        why[key] = " " reason
    }
    if ($3 <= lowest[key]) {
        why[key] = ""
    }
    printf "%-14s %-7s %8.1f %8.1f%s\n", $1, $2, $3, lower($3 + 0, lowest[key]), why[key]
}
END {
    exit failed
}
