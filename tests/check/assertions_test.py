# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""assertions.py on small trees: tests that it must report, and tests that it must accept."""

import contextlib
import io
import pathlib
import tempfile
import unittest

import assertions

HELPERS_H = "#pragma once\ninline void expectOne(int value) { EXPECT_EQ(value, 1); }\ninline int two() { return 2; }\n"

REPORTED_CPP = {
    "an empty body": "TEST(A, B) {}",
    "only calls": "TEST_F(A, B) {\n  clear();\n  close(first(second()));\n}",
    "an assertion in a comment": "TEST(A, B) {\n  run(); // EXPECT_EQ(run(), 1);\n  /* ASSERT_TRUE(false); */\n}",
    "an assertion in a string": 'TEST(A, B) { run("EXPECT_EQ(1, 2)"); }',
    "an assertion in a raw string": 'TEST(A, B) { run(R"x(EXPECT_EQ(1, 2) ")" )x"); }',
    "what always succeeds": "TEST(A, B) { SUCCEED(); }",
    "what is skipped": 'TEST(A, B) { GTEST_SKIP() << "no display"; }',
    "a function that does not assert": "void run() { go(); }\nTEST(A, B) { run(); }",
    "functions that call each other": "void b();\nvoid a() { b(); }\nvoid b() { a(); }\nTEST(A, B) { a(); }",
    "a helper that is named and not called": "void check() { FAIL(); }\nTEST(A, B) { later(check); }",
    "a helper of a file that is not included": "TEST(A, B) { expectOne(1); }",
    "a constructor": "struct Sure {\n  explicit Sure(int a) { EXPECT_EQ(a, 1); }\n};\nTEST(A, B) { Sure(1); }",
    "a destructor": "struct Sure {\n  ~Sure() { EXPECT_EQ(1, 1); }\n};\nTEST(A, B) { Sure sure; }",
    "another test of the same name": "TEST(A, B) { EXPECT_TRUE(true); }\nTEST(B, B) { go(); }",
    "tests of parameters": "TEST_P(A, B) { go(GetParam()); }",
    "tests of types": "TYPED_TEST(A, B) { go<TypeParam>(); }",
    "names over two lines": "TEST(A,\n     B) {\n  go();\n}",
    "digit separators": "TEST(A, B) { go(10'000, 'E', 1'000'000); }",
    "a helper that does not assert in a header": '#include "tests/helpers.h"\nTEST(A, B) { two(); }',
    "a macro that does not assert": "#define GO(a) \\\n  go(a)\nTEST(A, B) { GO(1); }",
}

ACCEPTED_CPP = {
    "expectations": "TEST(A, B) { EXPECT_EQ(go(), 1); }",
    "assertions": "TEST(A, B) { ASSERT_NO_FATAL_FAILURE(go()); }",
    "a failure": "TEST(A, B) {\n  if (go()) ADD_FAILURE() << 1;\n}",
    "a comment before": "TEST(A, B) {\n  // what's there\n  EXPECT_TRUE(go());\n}",
    "after a quotation mark": "TEST(A, B) {\n  go('\"');\n  EXPECT_TRUE(go('\\''));\n}",
    "after a digit separator": "TEST(A, B) {\n  go(1'0);\n  EXPECT_TRUE(go(1'0));\n}",
    "a function": "void check(int a) { EXPECT_EQ(a, 1); }\nTEST(A, B) { check(1); }",
    "a function through another": "void c() { FAIL(); }\nvoid b() { c(); }\nvoid a() { b(); }\nTEST(A, B) { a(); }",
    "a function after the test": "void a();\nTEST(A, B) { a(); }\nvoid a() { EXPECT_TRUE(go()); }",
    "a function template": "template <typename T> void a() { EXPECT_TRUE(T()); }\nTEST(A, B) { a<std::string>(); }",
    "a function that takes functions": "void a(void (*f)(int (*)(int)), int b = go({})) { FAIL(); }\nTEST(A, B) { a(0); }",
    "a method of the fixture": "struct A : Test {\n  void a() const noexcept {\n    FAIL();\n  }\n};\nTEST_F(A, B) { a(); }",
    "a method after a constructor": "struct A {\n  A() : b{1}, c(2) { go(); }\n  void a() { FAIL(); }\n};\nTEST_F(A, B) { a(); }",
    "a trailing result": "auto a() -> std::vector<int> { EXPECT_TRUE(1); return {}; }\nTEST(A, B) { a(); }",
    "a lambda": "TEST(A, B) {\n  go([](int a) { EXPECT_EQ(a, 1); });\n}",
    "a lambda with a name": "const auto a = [](int b) { FAIL(); };\nTEST(A, B) { a(1); }",
    "a macro": "#define SURE(a) \\\n  do { \\\n    EXPECT_EQ(a, 1); \\\n  } while (0)\nTEST(A, B) { SURE(1); }",
    "a function in a header": '#include "tests/helpers.h"\nTEST(A, B) { expectOne(1); }',
    "a function through a header": '#include "through.h"\nTEST(A, B) { expectOne(1); }',
    "a function in a header's source": '#include "declared.h"\nTEST(A, B) { expectDeclared(); }',
}

REPORTED_PYTHON = {
    "an empty body": "def test_a(self):\n        pass",
    "only calls": "def test_a(self):\n        self.run()",
    "a comment": "def test_a(self):\n        self.run()  # self.assertEqual(1, 2)",
    "a helper that does not assert": "def check(self):\n        pass\n    def test_a(self):\n        self.check()",
    "a helper that is not called": "def check(self):\n        self.fail()\n    def test_a(self):\n        go(self.check)",
    "a constructor": "class Sure:\n        def __init__(self):\n            assert self\n    def test_a(self):\n        Sure()",
    "a function of a method's name": "def open(self):\n        self.fail()\n    def test_a(self):\n        open('a')",
    "another error": "def test_a(self):\n        raise ValueError",
}

ACCEPTED_PYTHON = {
    "a method": "def test_a(self):\n        self.assertEqual(1, go())",
    "a context": "def test_a(self):\n        with self.assertRaises(OSError):\n            go()",
    "a statement": "def test_a(self):\n        assert go()",
    "a raise": "def test_a(self):\n        if go():\n            raise AssertionError('it goes')",
    "a helper": "def check(self):\n        self.fail()\n    def test_a(self):\n        self.check()",
    "a helper through another": "def b(self):\n        self.a()\n    def a(self):\n        assert 0\n    def test_a(self):\n        self.b()",
    "a function that is imported": "def test_a(self):\n        sure(1)",
    "a method that is imported": "def test_a(self):\n        self.display.shows(1)",
}

MODULE = "def sure(a):\n    assert a\nclass Display:\n    def shows(self, a):\n        sure(a)\n"


class Assertions(unittest.TestCase):
    def check(self, files):
        """The result for a tree of these files, and what is printed."""
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder).resolve()
            for name, text in files.items():
                file = root / name
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text + "\n")
            printed = io.StringIO()
            with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(printed):
                result = assertions.main(root)
        return result, printed.getvalue()

    def cpp(self, text):
        return self.check(
            {
                "tests/part/a_test.cpp": text,
                "tests/helpers.h": HELPERS_H,
                "tests/part/through.h": '#include "tests/helpers.h"',
                "tests/part/declared.h": "void expectDeclared();",
                "tests/part/declared.cpp": "void expectDeclared() { FAIL(); }",
            }
        )

    def python(self, text):
        test = "from module import Display, sure\nclass A(unittest.TestCase):\n    %s\n" % text
        return self.check({"tests/part/test_a.py": test, "tests/part/module.py": MODULE})

    def test_cpp_bodies_that_are_reported(self):
        for what, text in REPORTED_CPP.items():
            with self.subTest(what):
                result, printed = self.cpp(text)
                self.assertEqual(result, 1)
                self.assertRegex(printed, r"^tests/part/a_test\.cpp:[0-9]+: [AB]\.B asserts nothing\n1 of [12] tests")

    def test_cpp_bodies_that_are_accepted(self):
        for what, text in ACCEPTED_CPP.items():
            with self.subTest(what):
                self.assertEqual(self.cpp(text), (0, "0 of 1 tests assert nothing\n"))

    def test_python_bodies_that_are_reported(self):
        for what, text in REPORTED_PYTHON.items():
            with self.subTest(what):
                result, printed = self.python(text)
                self.assertEqual(result, 1)
                self.assertRegex(printed, r"^tests/part/test_a\.py:[0-9]+: A\.test_a asserts nothing\n1 of 1 tests")

    def test_python_bodies_that_are_accepted(self):
        for what, text in ACCEPTED_PYTHON.items():
            with self.subTest(what):
                self.assertEqual(self.python(text), (0, "0 of 1 tests assert nothing\n"))

    def test_the_line_is_that_of_the_test(self):
        self.assertIn(":5: A.B ", self.cpp('// a\n#define A(b) \\\n  b\nconst char *c = "\\"";\nTEST(A, B) {}')[1])

    def test_a_tree_without_tests_is_an_error(self):
        self.assertEqual(self.check({"tests/a.cpp": "int a() { return 1; }"})[0], 2)


if __name__ == "__main__":
    unittest.main()
