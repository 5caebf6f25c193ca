# SPDX-License-Identifier: MIT
"""The changes of one line that a test should notice."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutation:
    file: str
    line: int  # counted from 1
    operator: str
    before: str
    after: str

    def __str__(self):
        return f"{self.file}:{self.line}: {self.operator}"

    def change(self):
        return f"  - {self.before.strip()}\n  + {self.after.strip()}"


# What stands for something else wherever it stands. A blank on both sides tells an operator from
# the brackets of a template, a pointer or a reference: all sources are formatted.
_SWAPS = {
    "comparison turned": [(" == ", " != "), (" != ", " == "), (" < ", " <= "), (" <= ", " < "),
                          (" > ", " >= "), (" >= ", " > ")],
    "and, or": [(" && ", " || "), (" || ", " && ")],
    "arithmetic": [(" + ", " - "), (" - ", " + "), (" * ", " / "), (" / ", " * "), (" % ", " * "),
                   (" += ", " -= "), (" -= ", " += ")],
    "truth": [("true", "false"), ("false", "true")],
    "the other end": [("std::min(", "std::max("), ("std::max(", "std::min("),
                      (".front()", ".back()"), (".back()", ".front()"),
                      ("std::any_of(", "std::all_of("), ("std::all_of(", "std::any_of("),
                      ("break;", "continue;"), ("continue;", "break;")],
}
_WORD = re.compile(r"\w")
_STEP = re.compile(r"(\+\+|--)(?=\w)")
_NEGATION = re.compile(r"(?<![\w=!])!(?=[\w(])")
_NUMBER = re.compile(r"(?<![\w.'])(\d[\d']*(?:\.\d+)?)(?![\w.'])")
_IF = re.compile(r"\bif (?:constexpr )?\(")
_RETURN = re.compile(r"\breturn (?!true;|false;|!)([^;{]+);")
_STATEMENT = re.compile(r"\s+(?:\(void\)|\+\+|--|\*)?[A-Za-z_](?:[\w.\[\]*]|::|->|\([^()]*\))*"
                        r"(?:\(.*\)|\+\+|--| [-+*/|&]?= .*)?;\s*$")
_NO_STATEMENT = re.compile(r"\s+(?:return|using|throw|break|continue|case|default|typedef|friend|"
                           r"static_assert|co_\w+)\b")
_SKIPPED = re.compile(r"\s*(?:#|using |namespace |template|static_assert|friend |class |struct |"
                      r"enum )")
_LITERAL = re.compile(r'//[^\n]*|/\*.*?\*/|R"([^(\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'
                      r"(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'", re.DOTALL)


def mutations(file, text):
    """Every mutation of a source file, in the order of its lines."""
    lines = text.split("\n")
    plain = _without_literals(text).split("\n")
    found = []
    for number, (line, code) in enumerate(zip(lines, plain)):
        if not code.strip() or _SKIPPED.match(code):
            continue
        seen = {line}
        for operator, start, end, new in _changes(plain, number):
            after = line[:start] + new + line[end:]
            if after not in seen:
                seen.add(after)
                found.append(Mutation(file, number + 1, operator, line, after))
    return found


def _without_literals(text):
    """The same text with what stands in comments, strings and characters blotted out."""
    def blot(match):
        filler = " " if match.group().startswith("/") else "_"
        return "".join("\n" if c == "\n" else filler for c in match.group())
    return _LITERAL.sub(blot, text)


def _changes(lines, number):
    code = lines[number]
    for operator, swaps in _SWAPS.items():
        for old, new in swaps:
            for match in re.finditer(re.escape(old), code):
                if old in ("true", "false") and _is_part_of_a_word(code, match):
                    continue
                yield operator, match.start(), match.end(), new
    yield from _dropped_conditions(code)
    for match in _STEP.finditer(code):
        yield "step turned", *match.span(), "--" if match.group() == "++" else "++"
    for match in _NEGATION.finditer(code):
        yield "negation dropped", *match.span(), ""
    for match in _NUMBER.finditer(code):
        whole, point, rest = match.group().replace("'", "").partition(".")
        if whole.isdigit() and (whole == "0" or not whole.startswith("0")):
            yield "number plus one", *match.span(), str(int(whole) + 1) + point + rest
    if _returns_truth(lines, number):
        for match in _RETURN.finditer(code):
            yield "return turned", *match.span(1), f"!({match.group(1)})"
    if _is_statement(lines, number):
        start = len(code) - len(code.lstrip())
        yield "statement removed", start, len(code.rstrip()), ";"


def _is_part_of_a_word(code, match):
    before, after = code[:match.start()][-1:], code[match.end():][:1]
    return bool(_WORD.match(before) or _WORD.match(after))


def _dropped_conditions(code):
    """A side of a conjunction or disjunction left out; an `if` whose answer is given."""
    for match in re.finditer(r" (?:&&|\|\|) ", code):
        end = _end(code, match.end())
        if end is not None:
            yield "condition dropped", match.start(), end, ""
        start = _start(code, match.start())
        if start is not None:
            yield "condition dropped", start, match.end(), ""
    for match in _IF.finditer(code):
        end = _end(code, match.end(), to=")")
        if end is not None and ";" not in code[match.end():end]:
            yield "condition given", match.end(), end, "true"
            yield "condition given", match.end(), end, "false"


_JOINTS = (" && ", " || ", " ? ", " : ")


def _end(code, start, to=None):
    """Where an operand that begins at `start` ends; None when it goes on in the next line."""
    depth = 0
    for i in range(start, len(code)):
        if code[i] in "([{":
            depth += 1
        elif code[i] in ")]}":
            if depth == 0:
                return i if to in (None, code[i]) else None
            depth -= 1
        elif depth == 0 and to is None and (code[i] in ";," or code.startswith(_JOINTS, i)):
            return i
    return None


def _start(code, end):
    """Where an operand that ends at `end` begins; None when it begins in a line before."""
    depth = 0
    for i in range(end - 1, -1, -1):
        if code[i] in ")]}":
            depth += 1
        elif code[i] in "([{":
            if depth == 0:
                return i + 1
            depth -= 1
        elif depth == 0:
            before = code[:i + 1]
            for word in _JOINTS + ("return ", " = ", ", "):
                if before.endswith(word):
                    return i + 1
    return None


def _returns_truth(lines, number):
    """Whether the function around the line is one that answers yes or no."""
    for line in reversed(lines[:number + 1]):
        if re.match(r"[A-Za-z].*\(", line):
            return re.match(r"(?:static |inline |constexpr )*bool ", line) is not None
    return False


def _is_statement(lines, number):
    code = lines[number]
    if not _STATEMENT.match(code) or _NO_STATEMENT.match(code):
        return False
    if any(code.count(a) != code.count(b) for a, b in ("()", "{}", "[]")):
        return False
    before = next((line.rstrip() for line in reversed(lines[:number]) if line.strip()), "")
    return before.endswith((";", "{", "}", ":", ")"))
