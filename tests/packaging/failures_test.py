"""failures_test.py

Tests tools/failures.awk, which leaves out of what ctest prints the tests that have passed.
"""

import pathlib
import subprocess
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "tools" / "failures.awk"

PASSED = "[ RUN      ] A.Good\nnoise\n[       OK ] A.Good (3 ms)\n"
SKIPPED = "[ RUN      ] A.Skipped\nwhy\n[  SKIPPED ] A.Skipped (0 ms)\n"
FAILED = "[ RUN      ] A.Bad\nx.cpp:3: Failure\n  is 1\n[  FAILED  ] A.Bad (3 ms)\n"
BROKEN_OFF = "[ RUN      ] A.Ends\nassertion\n"


def left_of(text):
    return subprocess.run(["awk", "-f", SCRIPT], input=text, capture_output=True, text=True, check=True).stdout


class Failures(unittest.TestCase):
    def test_what_ctest_says_itself_stays(self):
        text = " 1/2 Test #1: a ....   Passed    0.1 sec\n      Start 2: b\n\n100% tests passed, 0 tests failed out of 2\n"
        self.assertEqual(left_of(text), text)

    def test_a_failure_stays_and_what_passed_around_it_goes(self):
        self.assertEqual(left_of(PASSED + FAILED + SKIPPED + PASSED), FAILED)

    def test_a_summary_stays(self):
        summary = "[  FAILED  ] 1 test, listed below:\n[  FAILED  ] A.Bad\n"
        self.assertEqual(left_of("[----------] 2 tests from A\n" + PASSED + FAILED + summary), FAILED + summary)

    def test_what_a_test_printed_in_whose_midst_the_program_ended_stays(self):
        for after in ("      Start 3: c\n", " 3/3 Test #3: c ....***Failed    0.1 sec\n", "50% tests passed\n", PASSED):
            with self.subTest(after=after):
                self.assertEqual(left_of(PASSED + BROKEN_OFF + after), BROKEN_OFF + ("" if after == PASSED else after))

    def test_at_the_end_of_the_text_too(self):
        self.assertEqual(left_of(BROKEN_OFF), BROKEN_OFF)


if __name__ == "__main__":
    unittest.main()
