# Shows Doxygen the comments of a header as documentation: a block of "//" lines right above a declaration, and one
# behind it. What follows the declaration without an empty line shares the block, unless it has a comment of its own. A
# block with an empty line below it is a heading or a note to the reader of the file. What C++ and Qt say already needs no
# comment in a header. Each line keeps its number, for Doxygen's warnings.

{ line[NR] = $0 }
/^class .* : public Q/ { has_qt_base = 1 }

function is_comment(text) { return text ~ /^ *\/\// }

# A destructor shares no comment, least of all that of a constructor.
function ends_paragraph(text) {
    return is_comment(text) || text ~ /^ *$/ || text ~ /^ *[{}#]/ || text ~ /[^:]:$/ || text ~ /^ *(virtual )?~/
}

function with_documentation(text, is_shared) {
    if (text ~ / \/\/ / || is_shared)
        return gensub(/([;,{})]|[a-zA-Z0-9_]) +\/\/ /, "\\1 ///< ", 1, text)
    if (text ~ /^ +explicit [A-Za-z]+\(QObject \*parent( = nullptr)?\);$/)
        return text " ///< The parent, if there is one, owns the object."
    if (text ~ /^ +[A-Za-z]+( &operator=)?\(const A[A-Za-z]+ &other\);$/)
        return text " ///< A copy of all that the other one holds."
    if (has_qt_base && text ~ / override;$/ && text !~ /~/)
        return text " ///< As the base class has it."
    return text
}

# Whether the lines `first` to `last` declare a type, whose body is no part of the paragraph.
function declares_type(first, last, i) {
    for (i = first; i <= last; ++i) {
        if (line[i] ~ /^ *(enum|struct|class) /)
            return 1
    }
    return 0
}

# Prints the declarations from line `first` on and gives the line behind them. `block` is the comment above them.
function paragraph(first, block, behind, declarations, i) {
    for (behind = first; behind <= NR; ++behind) {
        if (line[behind] ~ /^ *\{$/ && !declares_type(first, behind)) {
            while (behind < NR && line[behind] !~ /^ *\}$/)
                ++behind
        } else if (ends_paragraph(line[behind])) {
            break
        }
        if (line[behind] ~ /[;}]( +\/\/.*)?$/)
            ++declarations
    }
    if (block && declarations > 1)
        printf "/** @{ */"
    printf "%s", block
    for (i = first; i < behind; ++i)
        print with_documentation(line[i], block)
    if (block && declarations > 1)
        printf "/** @} */"
    return behind
}

END {
    for (i = 1; i <= NR;) {
        block = ""
        for (; is_comment(line[i]); ++i)
            block = block gensub(/\/\//, "///", 1, line[i]) "\n"
        if (line[i] ~ /^ *$/ || line[i] ~ /^ *#/) {
            gsub(/\/\/\//, "//", block)
            printf "%s", block
            print line[i++]
        } else if (ends_paragraph(line[i])) {
            printf "%s", block
            print with_documentation(line[i++])
        } else {
            i = paragraph(i, block)
        }
    }
    print "/** @file */"
}
