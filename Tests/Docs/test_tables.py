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
    RECORD = "struct Record {\n    std::uint8_t reserved0[4];\n    float** buffers;  ///< planes\n};\n"

    def test_offsets_are_counted_without_gaps(self):
        found, size = headers.fields(self.RECORD, "Record")
        self.assertEqual([(field.name, field.offset, field.size) for field in found],
                         [("reserved0", 0, 4), ("buffers", 4, 8)])
        self.assertEqual(size, 12)

    def test_an_offset_that_the_header_does_not_assert_is_refused(self):
        with self.assertRaisesRegex(ValueError, "Record.buffers is at 4, not at 8"):
            headers.fields(self.RECORD + "static_assert(offsetof(Record, buffers) == 8);\n", "Record")

    def test_a_field_that_cannot_be_read_is_refused(self):
        with self.assertRaisesRegex(ValueError, "cannot read the field"):
            headers.fields("struct Record {\n    long what;  // ?\n    int a : 3;\n};\n", "Record")


if __name__ == "__main__":
    unittest.main()
