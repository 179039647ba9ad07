# Shows Doxygen the comments of a header as documentation: a block of "//" lines right above a declaration, and one
# behind it. A block with an empty line below it is a heading or a note to the reader of the file.

function flush(marker, i) {
    for (i = 1; i <= count; ++i)
        print (marker ? gensub(/\/\//, "///", 1, block[i]) : block[i])
    count = 0
}

/^ *\/\// {
    block[++count] = $0
    next
}

{
    flush($0 !~ /^ *$/ && $0 !~ /^ *#/)
    print gensub(/([;,{)]|[a-zA-Z0-9_]) \/\/ /, "\\1 ///< ", 1)
}

END { flush(0) }
