"""Each kind of mistake, found in the text that it is for and not beside it."""

import unittest

from mistakes import mistakes_in
from names import Names

HEADER = """enum class Kind { One, Two };
constexpr int kFirst = 1;
constexpr int kSecond = 2;
"""


def changed(text, kind):
    """The texts that mistakes of one kind make of `text`, within a function."""
    begin, end = "void F() {\n", "\n}\n"
    names = Names([("a.h", HEADER)])
    found = mistakes_in("a.cpp", begin + text + end, names)
    return {one.apply(begin + text + end)[len(begin): -len(end)] for one in found if one.kind == kind}


class Mistakes(unittest.TestCase):
    def test_of_one_token(self):
        self.assertEqual(changed("    if (a < b) {\n        f();\n    }", "operator"),
                         {"    if (a <= b) {\n        f();\n    }", "    if (a >= b) {\n        f();\n    }"})
        self.assertEqual(changed("    f(7);", "number"), {"    f(8);", "    f(6);"})
        self.assertEqual(changed("    // 7 < 8\n    f(\"7\");", "number"), set())

    def test_a_guard_is_left_out(self):
        guard = "    if (a) {\n        return;\n    }\n"
        self.assertEqual(changed(guard + "    f();", "guard left out"), {"    f();"})
        self.assertEqual(changed("    if (a) {\n        f();\n    }\n    g();", "guard left out"), set())
        self.assertEqual(changed("    if (a) {\n        return;\n    } else {\n        f();\n    }", "guard left out"), set())

    def test_a_condition_is_inverted(self):
        self.assertEqual(changed("    if (a < b) {\n        f();\n    }", "condition inverted"),
                         {"    if (!(a < b)) {\n        f();\n    }"})
        self.assertEqual(changed("    g(a ? b : c);", "condition inverted"), {"    g(a ? c : b);"})

    def test_one_of_several_conditions_or_flags_is_left_out(self):
        self.assertEqual(changed("    return (a && b);", "condition left out"), {"    return (a);", "    return (b);"})
        self.assertEqual(changed("    return a != 0 || b;", "condition left out"), {"    return a != 0;", "    return b;"})
        self.assertEqual(changed("    return c ? a && b : d;", "condition left out"),
                         {"    return c ? a : d;", "    return c ? b : d;"})
        self.assertEqual(changed("    f(A | B);", "flag left out"), {"    f(A);", "    f(B);"})

    def test_arguments_change_places(self):
        self.assertEqual(changed("    f(a, g(b, c));", "arguments swapped"),
                         {"    f(g(b, c), a);", "    f(a, g(c, b));"})
        self.assertEqual(changed("    f(std::max(a, b));", "arguments swapped"), set())
        self.assertEqual(changed("    std::function<void(int a, int b)> f;", "arguments swapped"), set())

    def test_statements_with_something_in_common_change_places(self):
        self.assertEqual(changed("    f(a);\n    g(a);", "statements swapped"), {"    g(a);\n    f(a);"})
        self.assertEqual(changed("    f(a);\n    g(b);", "statements swapped"), set())

    def test_a_neighbour_is_taken(self):
        self.assertEqual(changed("    f(Kind::One);", "neighbour taken"), {"    f(Kind::Two);"})
        self.assertEqual(changed("    f(kFirst);", "neighbour taken"), {"    f(kSecond);"})
        self.assertEqual(changed("    f(rate.num);", "another member"), {"    f(rate.den);"})
        self.assertEqual(changed("    f(std::min(a, b));", "another function"), {"    f(std::max(a, b));"})

    def test_a_row_is_left_out(self):
        table = "    g({\n        {1, a},\n        {2, b},\n    });"
        self.assertEqual(changed(table, "row left out"),
                         {"    g({\n        {2, b},\n    });", "    g({\n        {1, a},\n    });"})

    def test_a_loop_ends_early(self):
        loop = "    for (int i = 0; i < count; ++i) {\n        f(i);\n    }"
        self.assertEqual(changed(loop, "loop ends early"), {loop.replace("count", "count - 1")})

    def test_nothing_is_returned(self):
        self.assertEqual(changed("    return f();", "nothing returned"), {"    return {};"})
        self.assertEqual(changed("    return {};", "nothing returned"), set())

    def test_a_catch_is_lost(self):
        self.assertEqual(changed("    try {\n        f();\n    } catch (...) {\n        g();\n    }", "catch lost"),
                         {"    try {\n        f();\n    } catch (...) {\nthrow;\n}"})


if __name__ == "__main__":
    unittest.main()
