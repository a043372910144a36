# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Finds tests that assert nothing: they pass whatever the code does.

    python3 tests/check/assertions.py                the sources below tests/
    python3 tests/check/assertions.py FOLDER         those below another folder; FOLDER is also where includes begin

A body asserts if it contains an assertion of GoogleTest (EXPECT_..., ASSERT_..., FAIL, ADD_FAILURE), or in Python
`assert`, a method self.assert... or self.fail, or `raise AssertionError`; or if it calls a function that asserts,
directly or through other functions. These functions are searched in the test's file and in the files that it includes
or imports. They are identified by their names alone: of several functions with one name, one that asserts is enough.
Constructors and destructors do not count, nor do SUCCEED and GTEST_SKIP.

Prints a line for each test found. Ends with 1 when there is one, else with 0; with 2 when there are no tests at all.
"""

import ast
import dataclasses
import functools
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


@dataclasses.dataclass
class Function:
    """A function or a test, with what this check needs of it."""

    name: str
    line: int
    asserts: bool
    calls: set
    is_test: bool = False


# --------------------------------------------------------------------------------------------------------------- C++

TEST_MACROS = ("TEST", "TEST_F", "TEST_P", "TYPED_TEST", "TYPED_TEST_P")
ASSERTION = re.compile(r"\b(?:EXPECT|ASSERT)_[A-Z]\w*\s*\(|\b(?:FAIL|ADD_FAILURE|ADD_FAILURE_AT)\s*\(")
NO_FUNCTIONS = {"if", "for", "while", "switch", "catch", "return", "sizeof", "alignof", "decltype", "noexcept", "operator"}
CALL = re.compile(r"\b(\w+)\s*(?:<[\w\s,:*&]*>)?\s*\(")
# A name with its arguments, the specifiers after them, and the body's brace. Arguments nest two deep: function types.
DEFINITION = re.compile(
    r"(?P<name>~?\b\w+)\s*\((?P<arguments>(?:[^(){};]|\{\}|\((?:[^(){};]|\{\}|\([^(){};]*\))*\))*)\)"
    r"(?:\s|const\b|noexcept\b|override\b|final\b|mutable\b|&|->\s*[\w:<>,\s*&]+)*\{"
)
# A lambda that has a name.
LAMBDA = re.compile(r"\b(?P<name>\w+)\s*(?:=|\{)\s*\+?\s*\[[^\[\]]*\]\s*(?:\([^;{}]*\))?[^;{}()]*\{")
MACRO = re.compile(r"^[ \t]*#[ \t]*define[ \t]+(?P<name>\w+)\([^)]*\)(?P<body>(?:[^\n]*\\\n)*[^\n]*)", re.M)
# Comments, raw strings, strings, characters. A digit separator is not a quote.
NO_CODE = re.compile(
    r"//(?:[^\n]*\\\n)*[^\n]*|/\*.*?\*/"
    r"|\bR\"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)\"|\"(?:\\.|[^\"\\\n])*\"|(?<![0-9A-Za-z])'(?:\\.|[^'\\\n])+'",
    re.S,
)


def code_of(text):
    """The text with comments and the contents of strings replaced by spaces. Line numbers do not change."""

    def spaces(match):
        found = match.group()
        spaced = re.sub(r"[^\n]", " ", found)
        return spaced if found.startswith("/") or len(found) < 2 else '"' + spaced[1:-1] + '"'

    return NO_CODE.sub(spaces, text)


def body_end(code, start):
    """The index after the brace that closes the one at `start`."""
    depth = 0
    for index in range(start, len(code)):
        if code[index] == "{":
            depth += 1
        elif code[index] == "}":
            depth -= 1
            if depth == 0:
                return index + 1
    return len(code)


def cpp_function(name, code, start, body, is_test=False):
    return Function(
        name=name,
        line=code.count("\n", 0, start) + 1,
        asserts=ASSERTION.search(body) is not None,
        calls=set(CALL.findall(body)),
        is_test=is_test,
    )


def test_name(macro, arguments):
    return "%s.%s" % tuple(" ".join(part.split()) for part in arguments.split(",")) if macro in TEST_MACROS else None


def functions_of_cpp(text):
    """All functions, lambdas with a name, function-like macros and tests of a C++ source."""
    code = code_of(text)
    found = [cpp_function(m["name"], code, m.start(), m["body"]) for m in MACRO.finditer(code)]
    code = MACRO.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), code)
    classes = set(re.findall(r"\b(?:class|struct)\s+(\w+)", code))
    # Matches may overlap: a fixture's methods are inside what looks like another definition.
    position = 0
    while match := DEFINITION.search(code, position):
        position = match.start() + len(match["name"])
        name, start = match["name"], match.end() - 1
        if name in NO_FUNCTIONS or name in classes or name.startswith("~"):
            continue
        body = code[start : body_end(code, start)]
        is_test = name in TEST_MACROS
        if is_test:
            name = test_name(name, match["arguments"])
        found.append(cpp_function(name, code, match.start(), body, is_test))
    for match in LAMBDA.finditer(code):
        start = match.end() - 1
        found.append(cpp_function(match["name"], code, match.start(), code[start : body_end(code, start)]))
    return found


def included_by(file, root):
    """The files of the tree that a C++ source includes, and the sources beside included headers."""
    for name in re.findall(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', file.read_text(), re.M):
        for folder in (file.parent, root, root / "tests", root / "tests/host"):
            header = folder / name
            if header.is_file():
                yield header.resolve()
                source = header.with_suffix(".cpp")
                if source.is_file():
                    yield source.resolve()
                break


# ------------------------------------------------------------------------------------------------------------ Python


def called_name(call):
    """The name that is called: `name` for a function, `.name` for a method; None for anything else."""
    if isinstance(call.func, ast.Attribute):
        return "." + call.func.attr
    return call.func.id if isinstance(call.func, ast.Name) else None


def python_asserts(node):
    if isinstance(node, ast.Assert):
        return True
    if isinstance(node, ast.Raise):
        raised = node.exc.func if isinstance(node.exc, ast.Call) else node.exc
        return isinstance(raised, ast.Name) and raised.id == "AssertionError"
    name = called_name(node) if isinstance(node, ast.Call) else None
    return name is not None and (re.match(r"\.assert[A-Z]", name) is not None or name == ".fail")


def functions_of_python(text):
    """All functions, methods and tests of a Python source. A function inside another one belongs to it."""
    found = []

    def visit(node, class_name):
        for child in ast.iter_child_nodes(node):
            if isinstance(child, ast.ClassDef):
                visit(child, child.name)
            elif isinstance(child, (ast.FunctionDef, ast.AsyncFunctionDef)):
                if child.name == "__init__":
                    continue
                inside = list(ast.walk(child))
                is_test = class_name is not None and child.name.startswith("test")
                method = "." if class_name is not None else ""
                found.append(
                    Function(
                        name="%s.%s" % (class_name, child.name) if is_test else method + child.name,
                        line=child.lineno,
                        asserts=any(python_asserts(one) for one in inside),
                        calls={called_name(one) for one in inside if isinstance(one, ast.Call)} - {None},
                        is_test=is_test,
                    )
                )

    visit(ast.parse(text), None)
    return found


def imported_by(file, _root):
    """The modules beside a Python source that it imports."""
    for node in ast.walk(ast.parse(file.read_text())):
        names = [node.module] if isinstance(node, ast.ImportFrom) else []
        names += [alias.name for alias in node.names] if isinstance(node, ast.Import) else []
        for name in names:
            module = file.parent / ("%s.py" % name)
            if module.is_file():
                yield module.resolve()


# --------------------------------------------------------------------------------------------------------- the check


@functools.cache
def functions_of(file):
    return (functions_of_python if file.suffix == ".py" else functions_of_cpp)(file.read_text())


def reach_of(file, root):
    """The file and all files that it includes or imports, directly or indirectly."""
    reached, waiting = set(), [file.resolve()]
    while waiting:
        one = waiting.pop()
        if one not in reached:
            reached.add(one)
            waiting.extend((imported_by if one.suffix == ".py" else included_by)(one, root))
    return reached


def asserting_names(functions):
    """The names of the functions that assert, directly or through others."""
    helpers = [function for function in functions if not function.is_test]
    names = {function.name for function in helpers if function.asserts}
    while more := {function.name for function in helpers if function.calls & names} - names:
        names |= more
    return names


def tests_without_assertion(file, root):
    """The tests of a file that assert nothing."""
    tests = [function for function in functions_of(file.resolve()) if function.is_test]
    if all(test.asserts for test in tests):
        return tests, []
    names = asserting_names([one for reached in reach_of(file, root) for one in functions_of(reached)])
    return tests, [test for test in tests if not test.asserts and not test.calls & names]


def main(root):
    files = sorted(path for path in (root / "tests").glob("**/*.cpp"))
    files += sorted((root / "tests").glob("**/test_*.py")) + sorted((root / "tests").glob("**/*_test.py"))
    count, empty = 0, 0
    for file in files:
        tests, without = tests_without_assertion(file, root)
        count += len(tests)
        empty += len(without)
        for test in without:
            print("%s:%d: %s asserts nothing" % (file.relative_to(root), test.line, test.name))
    if count == 0:
        print("no tests below %s" % (root / "tests"), file=sys.stderr)
        return 2
    print("%d of %d tests assert nothing" % (empty, count))
    return 1 if empty else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else ROOT))
