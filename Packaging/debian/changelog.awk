# The newest section of CHANGELOG.md as a Debian changelog: awk -v version=1.2.3 -v date=... -v contact=... -f this FILE

# "[text](address)" as "text", "`word`" as "word".
function plain(text,    link) {
    while (match(text, /\[[^]]*\]\([^)]*\)/)) {
        link = substr(text, RSTART + 1, index(substr(text, RSTART), "](") - 2)
        text = substr(text, 1, RSTART - 1) link substr(text, RSTART + RLENGTH)
    }
    gsub(/`/, "", text)
    return text
}

# Prints what has been gathered of an entry, wrapped.
function flush_entry(    words, count, i, line) {
    if (entry == "")
        return
    entry = plain(entry)
    count = split(entry, words, " ")
    line = "  *"
    for (i = 1; i <= count; i++) {
        if (length(line) + 1 + length(words[i]) > 78) {
            print line
            line = "   "
        }
        line = line " " words[i]
    }
    print line
    entry = ""
}

BEGIN { print "lineup (" version ") unstable; urgency=medium\n" }
/^## / { if (++sections > 1) exit }
sections == 0 { next }
/^### / { flush_entry(); print "  [ " $2 " ]" }
/^- / { flush_entry(); entry = substr($0, 3) }
/^  [^ ]/ { entry = entry " " substr($0, 3) }
END {
    flush_entry()
    print "\n -- " contact "  " date
}
