#!/usr/bin/env python3
"""Shows Doxygen a header of this tree as it wants one.

usage: doxygen_filter.py HEADER

In the headers a plain comment documents what stands below it up to the next empty line, and the first
comment is about the header. What the language says by itself is left out: destructors, members that
are deleted or defaulted, operations of a base that are given again, macros of message maps; and so
are constructors without arguments and copies that have no comment of their own, of which the comment
of the class tells. Lines stay where they are.
"""

import re
import sys

COMMENT = re.compile(r"\s*//")
# A comment behind code, not one in a text.
BEHIND = re.compile(r"^(?P<code>[^\"]*?[^\s/\"][^\"]*?)\s+// (?P<text>.*)$")
LEFT_OUT = re.compile(
    r"\s*((virtual )?~\w+\(.*|.*\) (const |noexcept )*override;|.*= (delete|default);"
    r"|DECLARE_MESSAGE_MAP\(\)|friend .*;|class \w+;)\s*(//.*)?$"
)
# Of the class in which it stands, as its own comments show by their absence.
SILENT = re.compile(
    r"\s*((RVUTILS_API )?(?P<name>\w+)\((const (?P=name)& \w+)?\)( noexcept)?;"
    r"|(RVUTILS_API )?(?P<type>\w+)& operator=\(const (?P=type)& \w+\)( noexcept)?;)$"
)
CLOSING = re.compile(r"\s*(}|public:|protected:|private:|#)")


def documented(line):
    behind = BEHIND.match(line)
    if behind:
        return f"{behind['code']}  ///< {behind['text']}"
    return line


def is_code(line):
    return bool(line.strip()) and not COMMENT.match(line) and not CLOSING.match(line)


def declarations(lines, start):
    """The end of the run of declarations that begins at `start`, and how many there are."""
    end, count, depth = start, 0, 0
    while end < len(lines) and (depth > 0 or is_code(lines[end])):
        depth += lines[end].count("{") - lines[end].count("}")
        count += depth == 0 and lines[end].split("//")[0].rstrip().endswith((";", "}"))
        end += 1
    return end, count


def shown(lines):
    """The header's lines, with the comments that are documentation marked."""
    lines = ["" if LEFT_OUT.match(line) else line for line in lines]
    for at in range(1, len(lines)):
        if SILENT.match(lines[at]) and not COMMENT.match(lines[at - 1]):
            lines[at] = ""
    result = []
    at = 0
    while at < len(lines):
        if not COMMENT.match(lines[at]):
            result.append(documented(lines[at]))
            at += 1
            continue
        comment = at
        while at < len(lines) and COMMENT.match(lines[at]):
            at += 1
        marked = [re.sub(r"^(\s*)//", r"\1///", line) for line in lines[comment:at]]
        marked = [line.replace("\\", "\\\\") for line in marked]
        if comment == 0:
            marked[0] = "/// @file\n" + marked[0]
        elif at < len(lines) and not is_code(lines[at]):
            marked = [""] * len(marked)
        end, count = declarations(lines, at)
        if comment != 0 and count > 1:
            marked[-1] += "\n/// @{"
            run = [documented(line) for line in lines[at:end]]
            run[-1] += "\n/// @}"
            marked += run
            at = end
        result += marked
    return result


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        sys.stdout.write("\n".join(shown(header.read().split("\n"))))
