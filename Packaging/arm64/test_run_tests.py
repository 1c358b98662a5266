"""Which tests run emulated, and what is said of the others."""
import unittest

import run_tests
from left_out import Row


class RunTests(unittest.TestCase):
    NAMES = ["Tone.Sounds", "Trace.IsSeen", "Format/Opens.InFfmpeg/0", "Format/Opens.InFfmpeg/1", "Format/Opens.InFfmpeg/2"]
    ROWS = (Row(r"Trace\..*", "nobody watches"), Row(r"Format/.*", "takes long", one_of=2))

    def test_the_rest_and_every_nth_of_a_sample_run(self):
        self.assertEqual(run_tests.choose(self.NAMES, self.ROWS), ([1, 3, 5], [(1, 0), (3, 2)]))

    def test_a_row_stands_for_whole_names(self):
        self.assertEqual(run_tests.choose(["Trace.IsSeen", "Retrace.IsSeen"], (Row(r"Trace", ""),)), ([1, 2], [(0, 0)]))

    def test_the_first_row_that_fits_decides(self):
        rows = (Row(r"Tone\.Sounds", "broken"), Row(r"Tone\..*", "long", one_of=1))
        self.assertEqual(run_tests.choose(["Tone.Sounds", "Tone.Ends"], rows), ([2], [(1, 0), (1, 1)]))

    def test_each_row_is_told_with_its_reason(self):
        _, counts = run_tests.choose(self.NAMES, self.ROWS)
        self.assertEqual(list(run_tests.told(self.ROWS, counts)), [
            r"skipped: 1 of 1 of Trace\..*: nobody watches", "skipped: 1 of 3 of Format/.*: takes long"])


if __name__ == "__main__":
    unittest.main()
