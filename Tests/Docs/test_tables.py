"""The tests of what makes the pages' tables: it must measure right, and refuse what it cannot measure."""

import array
import math
import os
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "Docs", "tables"))

import cadence  # noqa: E402
import card  # noqa: E402
import headers  # noqa: E402
import markdown  # noqa: E402
import purity  # noqa: E402

RATE = 48000


def sine(hz, seconds, gain=0.125):
    return array.array("f", [gain * math.sin(2 * math.pi * hz * i / RATE) for i in range(round(seconds * RATE))])


def silence(seconds):
    return array.array("f", bytes(4 * round(seconds * RATE)))


class Places(unittest.TestCase):
    def test_a_table_takes_the_place_of_what_stood_there(self):
        page = "a\n<!-- table: x -->\nold\n<!-- end of table -->\nb\n"
        filled = markdown.fill(page, lambda name: [name.upper()])
        self.assertEqual(filled, "a\n<!-- table: x -->\n\nX\n\n<!-- end of table -->\nb\n")
        self.assertEqual(markdown.fill(filled, lambda name: [name.upper()]), filled)

    def test_a_place_without_an_end_is_refused(self):
        with self.assertRaisesRegex(ValueError, "has no end"):
            markdown.fill("<!-- table: x -->\n", lambda name: [])

    def test_numbers_have_a_minus_sign_and_no_minus_zero(self):
        self.assertEqual([markdown.number(value, 1) for value in (-1.25, -0.04, 2)], ["−1.2", "0.0", "2.0"])


class Tones(unittest.TestCase):
    def test_a_burst_is_found_with_its_edges_pitch_and_gain(self):
        [(begin, end, hz, gain)] = cadence.tones(silence(0.1) + sine(88.5, 0.6) + silence(0.2), RATE)
        self.assertEqual((begin, end, hz), (10, 70, 88.5))
        self.assertAlmostEqual(gain, 0.125, 5)

    def test_a_hertz_more_is_noticed(self):
        [(_, _, hz, _)] = cadence.tones(sine(1001, 0.5), RATE)
        self.assertEqual(hz, 1001)

    def test_a_burst_that_begins_between_the_blocks_is_refused(self):
        with self.assertRaisesRegex(ValueError, "begins or ends inside"):
            cadence.tones(silence(0.103) + sine(1000, 0.2), RATE)
        with self.assertRaisesRegex(ValueError, "begins or ends inside"):
            cadence.tones(sine(1000, 0.203) + silence(0.2), RATE)

    def test_a_stretch_of_two_pitches_is_refused(self):
        with self.assertRaisesRegex(ValueError, "one stretch has the frequencies"):
            cadence.tones(sine(1000, 0.5) + sine(880, 0.5), RATE)


class Purity(unittest.TestCase):
    def test_what_is_not_the_sine_counts_against_it(self):
        tone, overtone = sine(1000, 0.1), sine(3000, 0.1)
        with_overtone = [a + 1e-5 * b for a, b in zip(tone, overtone)]
        self.assertAlmostEqual(purity.distortion_db(with_overtone, 100), -100, 1)

    def test_level_and_phase_are_the_tones_own(self):
        shifted = [math.sin(2 * math.pi * i / 48 + 1) + 1e-4 for i in range(4800)]
        self.assertAlmostEqual(purity.distortion_db(shifted, 100), -77, 1)


class Colours(unittest.TestCase):
    def test_a_float_colour_is_its_8_bit_code(self):
        self.assertEqual(card.codes((145 / 219, -84 / 224, 14 / 224)), (161, 44, 142))

    def test_a_colour_between_two_codes_is_refused(self):
        with self.assertRaisesRegex(ValueError, "is no 8-bit colour"):
            card.codes((0.5, 0.0, 0.0))

    def test_a_percentage_is_what_its_standard_says(self):
        self.assertEqual(card.nominal("75 % yellow", "hd"), (674, 176, 543))
        self.assertEqual(card.nominal("75 % yellow", "sd"), (646, 176, 567))
        self.assertIsNone(card.nominal("-I", "hd"))


class Records(unittest.TestCase):
    TEXT = "/// of enum Kind\nenum Kind : int {\n    kOne = 1,   ///< the first\n    kTwo = -2,\n};\n" \
           "struct Record {\n    int a[4];       ///< four\n    float b = 1.5F;  ///< ratio, or none\n    long c;\n};\n" \
           "struct Other {\n    int c;  ///< not this one\n};\n"

    def test_what_a_name_means_stands_beside_it(self):
        self.assertEqual(headers.notes(self.TEXT, "Kind"), {"kOne": "the first"})
        self.assertEqual(headers.notes(self.TEXT, "Record"), {"a": "four", "b": "ratio, or none"})

    def test_a_record_that_no_header_has_is_refused(self):
        with self.assertRaisesRegex(ValueError, "no header has Missing"):
            headers.notes(self.TEXT, "Missing")


if __name__ == "__main__":
    unittest.main()
