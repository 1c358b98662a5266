"""Streams of answers that are alike, and one difference at a time."""
import io
import pathlib
import struct
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / "Packaging" / "arm64"))
import same_answers


def stream(*pairs):
    return io.BytesIO(b"".join(struct.pack("<Q", len(part)) + part for pair in pairs for part in pair))


ONE = (b"tone, level 3", b"\x01\x02\x03")
TWO = (b"frame", b"\x04")


class SameAnswers(unittest.TestCase):
    def compared(self, first, second):
        return same_answers.compare(stream(*first), stream(*second))

    def test_the_level_of_a_question_is_each_programs_own(self):
        self.assertEqual(self.compared([ONE, TWO], [(b"tone, level 0", ONE[1]), TWO]), (2, 4, []))

    def test_each_difference_is_named(self):
        cases = [
            ([ONE, TWO], [(ONE[0], b"\x01\x02\x00"), TWO], ["tone: from byte 2 of 3 on"]),
            ([ONE, TWO], [(ONE[0], b"\x01\x02"), TWO], ["tone: from byte 2 of 3 on"]),
            ([ONE, TWO], [(b"hum", ONE[1]), TWO], ["tone stands against hum"]),
            ([ONE, TWO], [ONE], ["frame stands against (nothing)"]),
            ([ONE], [ONE, TWO], ["the second answers more questions"]),
        ]
        for first, second, expected in cases:
            with self.subTest(expected=expected):
                self.assertEqual(self.compared(first, second)[2], expected)

    def test_a_stream_that_is_cut_off_is_an_error(self):
        with self.assertRaises(ValueError):
            same_answers.compare(io.BytesIO(stream(ONE).getvalue()[:-1]), stream(ONE))


if __name__ == "__main__":
    unittest.main()
