"""Checks that mutants are found where they should be, and nowhere else."""

import unittest
from typing import List

from places import changed_character, changed_number, find_mutants
from survivor_list import matching, parse_survivors


def changes(text: str) -> List[str]:
    """The changes of a file's text as "line:column kind old>new"."""
    return [
        "%d:%d %s %s>%s" % (m.line, m.column, m.kind, m.old, m.new)
        for m in find_mutants("src/a/b.cc", text)
    ]


def changes_in_body(statements: str) -> List[str]:
    """The changes of the statements of a function, which stand in line 2."""
    return [c[2:] for c in changes("void f() {\n%s\n}\n" % statements)]


class Places(unittest.TestCase):
    """What is changed, and to what."""

    def test_comparisons_change_to_neighbour_and_negation(self) -> None:
        self.assertEqual(
            changes_in_body("bool b = x < y;"),
            ["12 comparison <><=", "12 comparison <>>="],
        )
        self.assertEqual(changes_in_body("bool b = x == y;"), ["12 comparison ==>!="])

    def test_angle_brackets_are_no_comparisons(self) -> None:
        self.assertEqual(changes_in_body("std::vector<std::array<int, n>> x = f<T>(y);"), [])

    def test_arithmetic(self) -> None:
        self.assertEqual(changes_in_body("int x = a + b * c;"),
                         ["11 arithmetic +>-", "15 arithmetic *>/"])
        self.assertEqual(changes_in_body("int x = -a;"), ["9 arithmetic ->"])
        self.assertEqual(
            changes_in_body("x += a;"), ["1 statement x += a;>;", "3 arithmetic +=>-="]
        )
        self.assertEqual(
            changes_in_body("++x;"), ["1 arithmetic ++>--", "1 statement ++x;>;"]
        )

    def test_pointers_references_and_destructors_are_no_arithmetic(self) -> None:
        self.assertEqual(changes("const char* f(int& a, T&& b);\nT::~T() {}\n"), [])

    def test_string_concatenation_is_not_arithmetic(self) -> None:
        self.assertEqual(changes_in_body('auto x = "a" + b;'), ["11 text a>b"])

    def test_logical(self) -> None:
        self.assertEqual(
            changes_in_body("bool b = !x && y;"), ["10 logical !>", "13 logical &&>||"]
        )

    def test_conditions_without_an_operator_are_turned_round(self) -> None:
        self.assertEqual(
            changes_in_body("if (found(x)) {}"), ["5 logical found(x)>!(found(x))"]
        )
        self.assertEqual(changes_in_body("if (a == b) {}"), ["7 comparison ==>!="])

    def test_constants(self) -> None:
        cases = {
            "0": "1", "1": "0", "7": "8", "9U": "10U", "0x1F": "0x20", "0b11": "0b100",
            "0666": "0667", "0.01F": "0.02F", "1.0e-30F": "1.1e-30F", "5.9": "5.8",
            "1.": "2.", "0XFFULL": "0x100ULL", "1e-9": "2e-9",
        }
        for old, new in cases.items():
            self.assertEqual(changed_number(old), new)
        for old, new in {" ": "!", "n": "o", "\\n": "\\t", "&": "%", "[": "Z"}.items():
            self.assertEqual(changed_character(old), new)
        self.assertEqual(changes_in_body("bool b = true;"), ["10 constant true>false"])

    def test_texts_change_in_one_letter(self) -> None:
        self.assertEqual(changes_in_body('f("Hello");'),
                         ["1 statement f(\"Hello\");>;", "6 text l>m"])
        self.assertEqual(changes_in_body(r'auto x = "\n";'), ["11 text \\n>"])
        self.assertEqual(changes_in_body('auto x = "";'), [])

    def test_raw_texts_change_in_every_line(self) -> None:
        self.assertEqual(changes('const auto x = R"(ab\n\ncd)";\n'),
                         ["1:20 text b>c", "3:2 text d>e"])

    def test_statements(self) -> None:
        self.assertEqual(
            changes_in_body("if (x == y) { break; } else throw E(); a.b->c(d);"),
            ["7 comparison ==>!=", "15 statement break;>;", "29 statement throw E();>;",
             "40 statement a.b->c(d);>;"],
        )

    def test_statements_in_lambdas(self) -> None:
        self.assertEqual(
            changes_in_body("auto f = [&](int x) { g(x); };"), ["23 statement g(x);>;"]
        )

    def test_statements_in_try_and_catch(self) -> None:
        self.assertEqual(
            changes_in_body("try { g(x); } catch (const E& e) { throw F(); } h(y);"),
            ["7 statement g(x);>;", "36 statement throw F();>;", "49 statement h(y);>;"],
        )
        self.assertEqual(
            changes("int f() try {\n  g(x);\n} catch (E) {\n  h(y);\n}\n"),
            ["2:3 statement g(x);>;", "4:3 statement h(y);>;"],
        )

    def test_declarations_are_no_statements(self) -> None:
        for text in ("T x(y);", "const T x = y;", "T* p = y;", "std::array<T, n> a;",
                     "int x;", "auto [a, b] = c;"):
            self.assertEqual(changes_in_body(text), [])

    def test_the_last_return_of_a_function_stays(self) -> None:
        self.assertEqual(
            changes_in_body("if (a < b) return x; return y;"),
            ["7 comparison <><=", "7 comparison <>>=", "12 statement return x;>;"],
        )

    def test_members_and_their_bodies(self) -> None:
        text = "class A {\n  A() : b_{c} { d(); }\n  int b_ = 0;\n};\n"
        self.assertEqual(changes(text), ["2:17 statement d();>;", "3:12 constant 0>1"])

    def test_no_mutants_outside_executable_code(self) -> None:
        for text in ('// x < 1 "a"\n', "/* 1\n 2 */\n", '#include "a/b.h"\n',
                     "#define A 1 + \\\n  2\n", 'static_assert(a == 1, "text");\n',
                     "namespace a = b;\n", "using a = std::array<int, 2>;\n",
                     "template <int N = 1>\nvoid f();\n", '[[deprecated("x")]] void f();\n',
                     "#if A\n#else\nint x = 1;\n#if B\nint y = 1;\n#endif\n#endif\n"):
            self.assertEqual(changes(text), [], text)
        self.assertEqual(changes("#if A\nint x = 7;\n#endif\n"), ["2:9 constant 7>8"])

    def test_a_mutant_is_the_text_with_its_change(self) -> None:
        text = "int f() { return a + 1; }\n"
        made = {m.applied_to(text) for m in find_mutants("src/a/b.cc", text)}
        self.assertEqual(
            made, {"int f() { return a - 1; }\n", "int f() { return a + 0; }\n"}
        )

    def test_names_are_unique(self) -> None:
        names = [m.name for m in find_mutants("a", "bool f() { return a < 1 && b < 1; }")]
        self.assertEqual(len(names), len(set(names)))


class Survivors(unittest.TestCase):
    """The list of survivors."""

    LIST = (
        "# A list.\n\n## Why it\n## cannot be seen.\n\n"
        "src/a.cc:9:9 constant `1` -> `0`\n    | int a = 1;\n"
    )

    def test_a_listed_mutant_is_found_although_lines_moved(self) -> None:
        (survivor,) = parse_survivors(self.LIST)
        self.assertEqual(survivor.reason, "Why it cannot be seen.")
        moved, other_line = find_mutants("src/a.cc", "\nint a = 1;\nint b = 1;\n")
        (other_column,) = find_mutants("src/a.cc", "  int a = 1;\n")
        self.assertEqual(matching([survivor], moved), survivor)
        self.assertIsNone(matching([survivor], other_line))
        self.assertIsNone(matching([survivor], other_column))

    def test_entries_need_a_reason(self) -> None:
        with self.assertRaises(ValueError):
            parse_survivors("src/a.cc:9:9 constant `1` -> `0`\n    | int a = 1;\n")

    def test_other_lines_are_refused(self) -> None:
        with self.assertRaises(ValueError):
            parse_survivors("what is this\n")


def run() -> int:
    """Runs the checks; gives the exit status."""
    suite = unittest.TestLoader().loadTestsFromModule(__import__(__name__))
    return 0 if unittest.TextTestRunner().run(suite).wasSuccessful() else 1
