"""tools/mutate: which faults it plants, and what it makes of them in a small library."""

import hashlib
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
TOOL = SOURCE / "tools/mutate"
sys.path.insert(0, str(TOOL))

from mutants import enumerators_of, mutants_of  # noqa: E402
from source import Source  # noqa: E402


def changes(text, *kinds):
    found = mutants_of("a.cc", text, enumerators_of([text]))
    return [mutant.change for mutant in found if mutant.kind in kinds]


class Places(unittest.TestCase):
    """What is a function, a table, or neither."""

    def functions(self, text):
        return [(f.name, f.first_line, f.last_line) for f in Source("a.cc", text).functions]

    def test_functions(self):
        text = """namespace kio {
extern "C" {
int First(int a) { return a; }
}
struct Point {
  Point(int x) : x_(x), y_{1} {}
  bool operator==(const Point&) const = default;
  int x_;
};
[[gnu::noinline]] MACRO(2, 0) void
Second(int level) {
  for (;;) {
  }
}
constexpr int kTable[] = {1, 2};
}
"""
        self.assertEqual(
            [("First", 3, 3), ("Point", 6, 6), ("Second", 10, 14)],
            [f for f in self.functions(text)],
        )

    def test_comments_and_directives_hold_no_fault(self):
        self.assertEqual([], mutants_of("a.cc", "// a < 1\n#define A (1 < 2)\n/* if (a) */\n", []))

    def test_what_the_compiler_alone_reads_holds_no_fault(self):
        self.assertEqual([], mutants_of("a.cc", "static_assert(1 < 2);\nusing A = B<3>;\n", []))


class Faults(unittest.TestCase):
    """What is made of each operator."""

    def test_comparison(self):
        self.assertEqual(["< -> <=", "< -> >="], changes("int f() { return a < b; }", "comparison"))
        self.assertEqual([], changes("int f() { return g<int>(a); }", "comparison"))

    def test_arithmetic_and_bits(self):
        text = "void f() { a = b + c; ++a; d |= e & *g; h = ~i; }"
        self.assertEqual(["+ -> -", "++ -> --"], changes(text, "arithmetic"))
        self.assertEqual(["|= -> &=", "& -> |", "~ -> nothing"], changes(text, "bits"))

    def test_logic(self):
        text = "bool f() { return !a && b; }"
        self.assertEqual(["&& -> ||"], changes(text, "logic"))
        self.assertEqual(["! -> nothing"], changes(text, "negation"))

    def test_constants(self):
        text = "int f() { g(true, 0x1FU); return 7; }"
        self.assertEqual(
            ["true -> false", "0x1FU -> 0x1eU", "0x1FU -> 0x20U", "7 -> 6", "7 -> 8"],
            changes(text, "constant"),
        )
        self.assertEqual(["'a' -> 'b'", "'\\0' -> '0'"], changes("int f() { g('a', '\\0'); }", "constant"))

    def test_conditions(self):
        self.assertEqual(
            ["a -> !(a)", "a -> false", "a -> true"],
            changes("void f() { if (a) { b(); } }", "condition"),
        )
        # One that is always true would not end.
        self.assertEqual(
            ["a < b -> false"], changes("void f() { while (a < b) { ++a; } }", "condition")
        )
        self.assertEqual(
            ["b : c -> c : b"], changes("int f() { return a ? b : c; }", "condition")
        )

    def test_statements(self):
        text = "int f() {\n  int a = 1;\n  a = 2;\n  g(a);\n  while (a) break;\n  return a;\n}"
        self.assertEqual(
            ["a = 2; -> ;", "g(a); -> ;", "break; -> ;"], changes(text, "statement")
        )
        self.assertEqual(["a -> {}"], changes(text, "result"))

    def test_texts(self):
        self.assertEqual(
            ['"a" -> "b"', '"%d" -> ""', '"" -> "x"'], changes('void f() { g("a", "%d", ""); }', "text")
        )

    def test_rows_and_columns(self):
        text = "constexpr Row kRows[] = {\n    Text(1).In(Group::kA),\n    {.low = 2, .high = 3},\n};\n"
        self.assertEqual(
            ["Text(1).In(Group::kA), -> nothing", "{.low = 2, .high = 3}, -> nothing"],
            changes(text, "row"),
        )
        self.assertEqual([".In(Group::kA) -> nothing"], changes(text, "call"))
        self.assertEqual([".low = 2, -> nothing", ", .high = 3 -> nothing"], changes(text, "column"))

    def test_enumerators_and_levels(self):
        text = "enum class Group { kA, kB };\nenum { kLogA, kLogB, kLogC };\n"
        text += "void f() { log(kLogB, Group::kB); }"
        self.assertEqual(["kB -> kA"], changes(text, "enumerator"))
        self.assertEqual(["kLogB -> kLogA", "kLogB -> kLogC"], changes(text, "level"))

    def test_keys_stay_when_other_lines_come(self):
        text = "int f() { return a < b; }\nint g() { return a < b; }\n"
        keys = {mutant.key for mutant in mutants_of("a.cc", text, [])}
        moved = {mutant.key for mutant in mutants_of("a.cc", "int h();\n" + text, [])}
        self.assertEqual(keys, moved)
        self.assertEqual(len(keys), len(mutants_of("a.cc", text, [])))


class Equivalent(unittest.TestCase):
    """The list of the faults that change nothing."""

    def test_each_row_is_of_a_fault_that_can_be_planted(self):
        files = sorted([*SOURCE.glob("src/**/*.cc"), *SOURCE.glob("src/**/*.h")])
        texts = {str(file.relative_to(SOURCE)): file.read_text() for file in files}
        headers = [file.read_text() for file in sorted(SOURCE.glob("include/**/*.h"))]
        enumerations = enumerators_of([*texts.values(), *headers])
        keys = {
            mutant.key
            for name, text in texts.items()
            for mutant in mutants_of(name, text, enumerations)
        }
        rows = (TOOL / "equivalent.tsv").read_text().splitlines()
        for row in filter(lambda row: not row.startswith("#"), rows):
            *key, reason = row.split("\t")
            self.assertIn(tuple(key), keys)
            self.assertTrue(reason)


CMAKE = """cmake_minimum_required(VERSION 3.25)
project(small LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
find_package(GTest REQUIRED)
add_library(kioapp_objects OBJECT src/numbers/limit.cc src/numbers/sum.cc)
target_include_directories(kioapp_objects PRIVATE src)
set_target_properties(kioapp_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
add_library(kioapp SHARED $<TARGET_OBJECTS:kioapp_objects>)
add_executable(numbers_test numbers_test.cc $<TARGET_OBJECTS:kioapp_objects>)
target_link_libraries(numbers_test GTest::gtest GTest::gtest_main)
add_executable(host host.cc)
target_link_libraries(host kioapp)
"""
LIMIT = """#include "numbers/half.h"
int Limit(int value) {
  if (value > 9) {
    return 9;
  }
  return value;
}
bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }
int SeenByTheHost() { return 3; }
int Quarter(int value) { return Half(Half(value)); }
"""
HALF = """#pragma once
inline int Half(int value) { return value / 2; }
"""
SUM = """#include "numbers/half.h"
int Sum(int value) {
  int sum = 0;
  while (value > 0) {
    sum += Half(2 * value);
    --value;
  }
  return sum;
}
"""
TESTS = """#include <gtest/gtest.h>
int Limit(int value);
bool IsDigit(char letter);
int Quarter(int value);
int Sum(int value);
TEST(Limit, IsNine) {
  EXPECT_EQ(Limit(5), 5);
  EXPECT_EQ(Limit(10), 9);
}
TEST(Digit, IsNoLetter) {
  EXPECT_TRUE(IsDigit('5'));
  EXPECT_FALSE(IsDigit('a'));
  EXPECT_FALSE(IsDigit(' '));
  // MORE
}
TEST(Sum, IsThatOfAllNumbers) { EXPECT_EQ(Sum(4), 10); EXPECT_EQ(Sum(-1), 0); EXPECT_EQ(Quarter(9), 2); }
"""
HOST = "int SeenByTheHost();\nint main() { return SeenByTheHost() - 3; }\n"
BOUNDS = (
    "EXPECT_TRUE(IsDigit('0')); EXPECT_TRUE(IsDigit('9'));"
    "EXPECT_FALSE(IsDigit('/')); EXPECT_FALSE(IsDigit(':'));"
)
# Half of nothing is added.
EQUIVALENT = "src/numbers/sum.cc\tSum\twhile (value > 0) {\t> -> >=\tnothing is added\n"


class Trials(unittest.TestCase):
    """Faults in a small library."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="k.")
        cls.tree = pathlib.Path(cls.folder.name)
        cls.write("CMakeLists.txt", CMAKE)
        cls.write("src/numbers/limit.cc", LIMIT)
        cls.write("src/numbers/half.h", HALF)
        cls.write("src/numbers/sum.cc", SUM)
        cls.write("include/none.h", "")
        cls.write("host.cc", HOST)
        cls.write("tools/mutate/programs", "numbers_test numbers\nhost abi\n")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def write(cls, name, text):
        path = cls.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def build(self):
        build = self.tree / "build/dev"
        for command in (["cmake", "-G", "Ninja", "-S", self.tree, "-B", build], ["ninja", "-C", build]):
            done = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(0, done.returncode, done.stdout + done.stderr)

    def mutate(self, *arguments):
        return subprocess.run(
            [TOOL / "run", f"--tree={self.tree}", "--every", "--verbose", *arguments],
            capture_output=True, text=True, check=False)  # fmt: skip

    def sum_of_tree(self):
        return {
            path: hashlib.sha256(path.read_bytes()).hexdigest()
            for path in sorted(self.tree.rglob("*"))
            if path.is_file() and "build/mutate" not in str(path)
        }

    def test_faults(self):
        self.write("numbers_test.cc", TESTS)
        self.build()
        before = self.sum_of_tree()

        done = self.mutate()
        self.assertEqual(before, self.sum_of_tree())
        self.assertEqual(1, done.returncode, done.stdout + done.stderr)
        for gap in (">= -> >", "<= -> <", "'0' -> '1'", "'9' -> ':'"):
            self.assertIn(f"survived\t\tsrc/numbers/limit.cc:8\t{gap}\n", done.stdout)
        self.assertIn("survived\t\tsrc/numbers/sum.cc:4\t> -> >=\n", done.stdout)
        self.assertIn("figure: Found by nothing\t5\n", done.stdout)
        # At nine both give nine, and the compiler sees it.
        self.assertIn("same\t\tsrc/numbers/limit.cc:3\t> -> >=\n", done.stdout)
        self.assertIn("killed\tnumbers_test: Limit.IsNine\tsrc/numbers/limit.cc:3\t> -> <=\n", done.stdout)
        # It does not end by itself.
        self.assertIn("killed\tnumbers_test: exit -", done.stdout)
        self.assertIn("\tsrc/numbers/sum.cc:6\t--value; -> ;\n", done.stdout)
        # Both files that include the header are compiled with the fault.
        self.assertIn("killed\tnumbers_test: Sum.IsThatOfAllNumbers\tsrc/numbers/half.h:2\t2 -> 3\n",
                      done.stdout)  # fmt: skip
        # No unit test asks for it.
        self.assertIn("killed\thost: exit 1\tsrc/numbers/limit.cc:9\t3 -> 4\n", done.stdout)

        drawn = self.mutate("--draw=5", "--seed=a").stdout
        self.assertIn("figure: Faults planted\t5\n", drawn)
        self.assertEqual(self.drawn(drawn), self.drawn(self.mutate("--draw=5", "--seed=a").stdout))
        self.assertNotEqual(self.drawn(drawn), self.drawn(self.mutate("--draw=5", "--seed=b").stdout))

        self.write("numbers_test.cc", TESTS.replace("// MORE", BOUNDS))
        self.build()
        self.write("tools/mutate/equivalent.tsv", EQUIVALENT)
        done = self.mutate()
        self.assertEqual(0, done.returncode, done.stdout + done.stderr)
        self.assertIn("figure: Recorded as changing nothing\t1\nfigure: Found by nothing\t0\n", done.stdout)

    def drawn(self, said):
        return sorted(line for line in said.splitlines() if line.count("\t") == 3)


if __name__ == "__main__":
    unittest.main()
