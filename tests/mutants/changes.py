"""Finds the small changes that can be made to a C++ source, each in one place."""

import re

# A comparison, a sum or a conjunction as the formatter writes it, so that template brackets and references are none.
OPERATORS = {
    " < ": [" <= ", " > "],
    " <= ": [" < "],
    " > ": [" >= ", " < "],
    " >= ": [" > "],
    " == ": [" != "],
    " != ": [" == "],
    " && ": [" || "],
    " || ": [" && "],
    " + ": [" - "],
    " - ": [" + "],
    " += ": [" -= "],
    " -= ": [" += "],
    " << ": [" >> "],
    " >> ": [" << "],
    " & ": [" | "],
    " | ": [" & "],
    " ^= ": [" |= "],
    " % ": [" / "],
}
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+)([uU]?)(?![\w.'])")
CONDITION = re.compile(r"\b(if|while) \((.*)\) \{$")
CALL_OR_ASSIGNMENT = re.compile(
    r"^\s+(?:\+\+|--)?[*&]?[A-Za-z_][\w.]*(?:->[\w.]+|\[[^\]]*\]|::\w+|\(\))*(?:\(.*\)| [-+*/|&^]?= .*|\+\+|--);$")
KEYWORDS = re.compile(r"^\s+(return|break|continue|using|throw|static_assert|case|default|template|friend|delete)\b")
DECLARED_FUNCTION = re.compile(r"\) (const |noexcept|override|final)|= default|= delete")
TRUTH = re.compile(r"\b(true|false)\b")
TABLE = re.compile(r'mark\("((?:\\.|[^"\\])+)"')


def code_of(line):
    """The line without its comment; an empty line for what is no code."""
    if line.lstrip().startswith(("#", "//", "static_assert", "BK_ASSERT")) or "static_assert" in line:
        return ""
    return line.split(" // ")[0].rstrip()


def is_quoted(line, at):
    return line[:at].replace('\\"', "").replace("'\"'", "").count('"') % 2 == 1


def changes_of_line(line):
    """(kind, new line) for each change of one line."""
    code = code_of(line)
    rest = line[len(code):]
    if not code.strip():
        return
    for old, news in OPERATORS.items():
        start = code.find(old)
        while start >= 0:
            if not is_quoted(code, start) and "template" not in code and "operator" not in code:
                for new in news:
                    yield f"{old.strip()} to {new.strip()}", code[:start] + new + code[start + len(old):] + rest
            start = code.find(old, start + 1)
    for match in NUMBER.finditer(code):
        if not is_quoted(code, match.start()):
            number = int(match[1], 0)
            for new in {number + 1, max(number - 1, 0)} - {number}:
                text = (hex(new) if match[1].startswith("0x") else str(new)) + match[2]
                yield f"{match[0]} to {text}", code[:match.start()] + text + code[match.end():] + rest
    match = CONDITION.search(code)
    if match and ";" not in match[2]:
        start, end = match.span(2)
        if code[:start].endswith("for ("):
            return
        yield "condition negated", f"{code[:start]}!({match[2]}){code[end:]}{rest}"
    if CALL_OR_ASSIGNMENT.match(code) and not KEYWORDS.match(code) and not DECLARED_FUNCTION.search(code):
        yield f"removed {code.strip()}", re.match(r"\s*", code)[0] + "{}" + rest
    for match in TRUTH.finditer(code):
        new = "false" if match[0] == "true" else "true"
        yield f"{match[0]} to {new}", code[:match.start()] + new + code[match.end():] + rest
    match = TABLE.search(code)
    if match:
        characters = re.findall(r"\\.|[^\\]", match[1])
        for i, character in enumerate(characters):
            left = "".join(characters[:i] + characters[i + 1:])
            yield f"without {character}", code[:match.start(1)] + left + code[match.end(1):] + rest


def changes_of(text):
    """(line number from 1, kind, new text of the line) for each change of a source."""
    in_comment = False
    for number, line in enumerate(text.split("\n"), 1):
        if "/*" in line:
            in_comment = True
        if not in_comment:
            for kind, new in changes_of_line(line):
                if new != line:
                    yield number, kind, new
        if "*/" in line:
            in_comment = False
