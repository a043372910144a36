# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""The small changes that mutants.py makes to a C++ source, one at a time: their positions and their replacements.

Works on tokens, not on a syntax tree. It depends on the layout of clang-format: an operator between two operands has
white space on both sides, a '<' or '&' of a type does not. Comments, strings, preprocessor lines, static assertions and
template headers are not changed. A change that is invalid does no harm: mutants that do not compile are not counted.
"""

import collections
import re

Token = collections.namedtuple("Token", "kind text start end")
Mutation = collections.namedtuple("Mutation", "operator start end replacement")

TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/|\#(?:\\\n|[^\n])*)
    |(?P<string>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
    |(?P<char>'(?:\\.[0-9a-fA-F]*|[^'\\\n])')
    |(?P<number>\.?\d(?:[eEpP][+-]|[\w.'])*)
    |(?P<name>[A-Za-z_]\w*)
    |(?P<sign>->\*|<<=|>>=|\.\.\.|->|::|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)""",
    re.VERBOSE | re.DOTALL,
)

# The replacements of operators between two operands, by the name of the change.
SWAPS = {
    "comparison": {"==": ["!="], "!=": ["=="], "<": ["<=", ">="], ">": [">=", "<="], "<=": ["<"], ">=": [">"]},
    "logic": {"&&": ["||"], "||": ["&&"]},
    "arithmetic": {"+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"]},
    "bits": {"&": ["|"], "|": ["&"], "<<": [">>"], ">>": ["<<"]},
    "assignment": {"+=": ["-="], "-=": ["+="], "&=": ["|="], "|=": ["&="]},
}
STEPS = {"++": "--", "--": "++"}
TRUTHS = {"true": "false", "false": "true"}
CLOSING = {"(": ")", "{": "}", "[": "]"}
NO_CALLS = {"if", "for", "while", "switch", "return", "sizeof", "catch", "do", "case", "default", "else"}
LEFT_SIDE = re.compile(r"\*{0,2}[A-Za-z_]\w*(?:(?:->\*?|\.|::)\w+|\[[^;{}=]*?\]|\+\+|--)*\s*=(?!=)")


def tokens_of(text):
    found = []
    for match in TOKEN.finditer(text):
        if match.lastgroup != "skip":
            found.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return found


def pairs_of(tokens):
    """The index of the closing bracket by that of the opening one."""
    pairs, opened = {}, []
    for index, token in enumerate(tokens):
        if token.text in CLOSING:
            opened.append(index)
        elif token.text in CLOSING.values() and opened:
            pairs[opened.pop()] = index
    return pairs


def left_alone(tokens, pairs):
    """The indices of tokens in static assertions, `using` lines, template headers and template arguments."""
    alone = set()
    for index, token in enumerate(tokens):
        if token.text in ("static_assert", "using"):
            end = next(k for k in range(index, len(tokens)) if tokens[k].text == ";")
            alone.update(range(index, end + 1))
        before = tokens[index - 1] if index else token
        if token.text == "<" and before.text != "operator" and (before.end == token.start or before.text == "template"):
            depth, end = 1, index
            while depth and end + 1 < len(tokens):
                end += 1
                depth += {"<": 1, ">": -1, ">>": -2}.get(tokens[end].text, 0)
            alone.update(range(index, end + 1))
        if token.text == "asm" or token.text == "__attribute__":
            alone.update(range(index, pairs.get(index + 1, index) + 1))
    return alone


def between_operands(text, token):
    return text[token.start - 1].isspace() and text[token.end : token.end + 1].isspace()


def constants(token):
    if token.kind == "char":
        return ["static_cast<char>(%s + 1)" % token.text]
    if token.kind == "number":
        return ["(%s + 1)" % token.text] + (["0"] if re.fullmatch(r"1[uUlL]*", token.text) else [])
    return [TRUTHS[token.text]] if token.text in TRUTHS else []


def token_mutations(text, tokens, alone):
    for index, token in enumerate(tokens):
        if index in alone:
            continue
        if token.kind == "sign" and between_operands(text, token):
            for operator, swaps in SWAPS.items():
                for other in swaps.get(token.text, []):
                    yield Mutation(operator, token.start, token.end, other)
        if token.text in STEPS:
            yield Mutation("step", token.start, token.end, STEPS[token.text])
        if token.text == "!":
            yield Mutation("not", token.start, token.end, "")
        for other in constants(token):
            yield Mutation("constant", token.start, token.end, other)


def conditions(text, tokens, pairs):
    """Negated `if` and `while` conditions, except those for which another change does the same."""
    for index, token in enumerate(tokens):
        if token.text not in ("if", "while") or tokens[index + 1].text != "(":
            continue
        first, last = index + 2, pairs[index + 1]
        for k in range(first, last):
            if tokens[k].text == ";":
                first = k + 1
        inside = tokens[first:last]
        compared = [t.text for t in inside if t.text in ("==", "!=")]
        joined = any(t.text in ("&&", "||") for t in inside)
        if not joined and (len(compared) == 1 or inside[0].text == "!"):
            continue
        begin, end = inside[0].start, inside[-1].end
        yield Mutation("condition", begin, end, "!(%s)" % text[begin:end])


def statement_starts(tokens, pairs):
    closings = {close: opening for opening, close in pairs.items()}
    opened = []
    for index in range(1, len(tokens)):
        before = tokens[index - 1].text
        if before in CLOSING:
            opened.append(before)
        elif before in CLOSING.values() and opened:
            opened.pop()
        if opened and opened[-1] == "(":  # the head of a `for`
            continue
        if before in (";", "{", "}", "else", "do"):
            yield index
        elif before == ":" and any(t.text in ("case", "default") for t in tokens[max(0, index - 5) : index]):
            yield index
        elif before == ")" and closings.get(index - 1):
            if tokens[closings[index - 1] - 1].text in ("if", "for", "while", "switch"):
                yield index


def call_end(tokens, pairs, index):
    """The index of the ';' of a statement that is one call, or None."""
    if tokens[index].kind != "name" or tokens[index].text in NO_CALLS:
        return None
    index += 1
    while tokens[index].text in ("::", ".", "->") and tokens[index + 1].kind == "name":
        index += 2
    if tokens[index].text != "(":
        return None
    end = pairs[index] + 1
    return end if end < len(tokens) and tokens[end].text == ";" else None


def assignment_end(text, tokens, pairs, index):
    """The index of the ';' of a statement that is a plain assignment, or None. A declaration's left side has a space."""
    if LEFT_SIDE.match(text, tokens[index].start) is None:
        return None
    while index < len(tokens) and tokens[index].text != ";":
        index = pairs.get(index, index) + 1
    return index


def statement_mutations(text, tokens, pairs):
    for index in statement_starts(tokens, pairs):
        for operator, end in (
            ("call", call_end(tokens, pairs, index)),
            ("store", assignment_end(text, tokens, pairs, index)),
            ("jump", index + 1 if tokens[index].text in ("break", "continue") else None),
        ):
            if end is not None:
                yield Mutation(operator, tokens[index].start, tokens[end].end, ";")


def mutations_of(text):
    """All mutations of a source, in the order of their positions."""
    tokens = tokens_of(text)
    pairs = pairs_of(tokens)
    found = list(token_mutations(text, tokens, left_alone(tokens, pairs)))
    found += conditions(text, tokens, pairs)
    found += statement_mutations(text, tokens, pairs)
    return sorted(set(found), key=lambda m: (m.start, m.end, m.operator, m.replacement))
