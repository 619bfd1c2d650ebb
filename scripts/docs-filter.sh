#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# docs-filter.sh HEADER: prints a header as Doxygen is to read it, with unchanged line numbers.
#
# The directory of a header becomes its group. Members that need no explanation get a standard sentence if they have no
# comment of their own: destructors, copying, moving, deleted functions, operators, iterators, locking, and the static
# twins of the string classes. An overload without a comment of its own gets that of the overload above it.
set -eu
group=library
case $1 in
*/ZSpace/*/* | ZSpace/*/*)
    group=${1#*ZSpace/}
    group=${group%%/*}
    ;;
esac

awk -v group="$group" '
    BEGIN { namespaceStart = "^namespace ZSpace(::NS)? \\{$" }
    # The standard sentence for a declaration; empty if there is none.
    function sentence(line) {
        if (line ~ /= delete;/)
            return "Deleted."
        if (line ~ /^ +(virtual )?~/)
            return "Destroys the object."
        if (match(line, /^ +(constexpr |explicit |inline )*[A-Za-z_0-9]+\(/)) {
            name = substr(line, RSTART, RLENGTH - 1)
            sub(/.* /, "", name)
            rest = substr(line, RSTART + RLENGTH)
            if (rest ~ "^\\)")
                return "Constructs an empty object."
            if (rest ~ "^const " name "(<[^()]*>)?&[ )]")
                return "Copies."
            if (rest ~ "^" name "(<[^()]*>)?&&[ )]")
                return "Moves; the other object is left empty."
        }
        if (line ~ /operator=\(const [A-Z][A-Za-z_0-9]*(<[^()]*>)?& (other|o)?\)/)
            return "Copies."
        if (line ~ /operator=\([A-Z][A-Za-z_0-9]*(<[^()]*>)?&& ?(other)?\)/)
            return "Moves; the other object is left empty."
        if (line ~ / operator(==|!=|<|>|<=|>=|<=>)\(/)
            return "Compares."
        if (line ~ / operator=\(/)
            return "Assigns; see the constructor that takes the same."
        if (line ~ / operator->\(\)/)
            return "Accesses the object."
        if (line ~ / operator\*\(\)/)
            return "The object, or the first character."
        if (line ~ / operator!\(\)/)
            return "Whether it is empty."
        if (line ~ /explicit operator bool\(\)/)
            return "Whether it is not empty."
        if (line ~ / operator\[\]\(/)
            return "The element at an index."
        if (line ~ / operator\+=\(/)
            return "Appends, or adds."
        if (line ~ / operator-=\(/)
            return "Removes, or subtracts."
        if (line ~ / operator\+\(/)
            return "A copy to which the argument is appended or added."
        if (line ~ / operator-\(/)
            return "A copy from which the argument is subtracted."
        if (line ~ / operator<<\(/)
            return "Appends the value as text."
        if (line ~ /^ +operator Z[GM]Str</)
            return "Converts to text."
        if (line ~ / (begin|end)\(\) /)
            return "For iteration."
        if (line ~ / swap\([A-Za-z<>]*& other\)/)
            return "Exchanges the contents."
        if (line ~ /^ +const T& at\(long index\) const/)
            return "As the other overload."
        if (line ~ / operator\(\)\(std::basic_string_view/)
            return "Hashes the characters."
        if (line ~ /^Z[GM]Str<T>& Z[GM]Str<T>::extend/)
            return "Makes room at the end."
        if (line ~ / lock\(\)/)
            return "Locks."
        if (line ~ / unlock\(\)/)
            return "Unlocks."
        if (line ~ / beginTransaction\(\)/)
            return "Begins a span of operations that belong together."
        if (line ~ / endTransaction\(\)/)
            return "Ends the span."
        if (line ~ /^ +using (value_type|difference_type|pointer|reference|iterator|const_iterator|iterator_category) =/)
            return "As the standard library expects it."
        if (group == "string" && line ~ /^ +(\[\[nodiscard\]\] )?static .*\((const )?T\* (text|a),?/)
            return "As the member of the same name, for these characters."
        return ""
    }
    # The name that a line declares; empty if it declares no function.
    function nameOf(line) {
        sub(/^ *(\[\[[a-z]*\]\] *)?/, "", line)
        if (line !~ /\(/ || line ~ /^(template|requires|return|if|for|while|:|,|\{|\})/)
            return ""
        if (match(line, /operator[^A-Za-z_0-9 (][^A-Za-z_0-9 (]*\(/) || match(line, /operator\(\)\(/))
            return substr(line, RSTART, RLENGTH)
        match(line, /[A-Za-z_0-9]*\(/)
        return substr(line, RSTART, RLENGTH)
    }

    # Opens groups inside the namespace, because a group around it would contain the namespace alone.
    NR == FNR { inNamespace = inNamespace || $0 ~ namespaceStart; next }
    FNR == 1 { print inNamespace ? "/** @file */" : "/** @file */ /** @addtogroup " group; next }
    FNR == 2 { print inNamespace ? "" : "@{ */"; next }
    $0 ~ namespaceStart { print $0 " /** @addtogroup " group; opens = 1; next }
    opens { printf "@{ */ "; opens = 0 }
    /^namespace detail \{$/ { print "/** @cond */ " $0; next }
    /^} \/\/ namespace detail$/ { print "} /** @endcond */"; next }
    /^} \/\/ namespace ZSpace(::NS)?$/ { print "/** @} */ " $0; next }
    {
        if ($0 ~ /^ +[A-Za-z].* m_[A-Za-z]*.*; \/\/ /)
            sub(/; \/\/ /, "; ///< ")
        match($0, /^ */)
        indent = RLENGTH
        name = nameOf($0)
        text = documented ? "" : sentence($0)
        if (text == "" && !documented && name != "" && name == lastName && indent == lastIndent)
            text = lastText
        if ($0 ~ /^ *\/\/\//) {
            line = $0
            sub(/^ *\/\/\/ ?/, "", line)
            comment = documented ? comment " " line : line
        } else if (name != "" && (documented || text != "")) {
            lastName = name
            lastText = documented ? comment : text
            lastIndent = indent
        } else if (name != "" || $0 ~ /^(class|struct) /) {
            lastName = ""
        }
        # A comment goes before a template as a whole.
        if (!documented && $0 ~ /^ *(template <.*>|requires .*[^;{])$/ && $0 !~ /=/) {
            held[++heldCount] = $0
            next
        }
        comments = text == "" ? "" : "/** " text " */ "
        for (i = 1; i <= heldCount; ++i) {
            print comments held[i]
            comments = ""
        }
        heldCount = 0
        print comments $0
        if ($0 ~ /^ *\/\/[\/!]/)
            documented = 1
        else if ($0 !~ /^ *(template <.*>|requires .*|\[\[.*\]\])$/)
            documented = 0
    }
    END { if (!inNamespace) print "/** @} */" }' "$1" "$1"
