"""What a watch says of programs that were seen to do this and that."""
import os
import tempfile
import unittest

from long_run import Repeated
from watch import MEBIBYTE, Sample, Watched, faults_of


def seen(memory=lambda at: 10, descriptors=lambda at: 7, ticks=lambda at: at):
    return [Sample(memory(at) * MEBIBYTE, descriptors(at), ticks(at)) for at in range(40)]


class Faults(unittest.TestCase):
    def test_a_program_that_keeps_what_it_has_has_none(self):
        self.assertEqual(faults_of(seen()), [])
        self.assertEqual(faults_of(seen(memory=lambda at: min(at, 9) * 5)), [], "what it takes at first")
        self.assertEqual(faults_of(seen(descriptors=lambda at: 7 + at % 3)), [], "open for a moment")
        self.assertEqual(faults_of(seen(descriptors=lambda at: 7 - (at == 15))), [], "closed for a moment")

    def test_growth_is_found(self):
        self.assertEqual(faults_of(seen(memory=lambda at: 10 + at / 5)), ["its memory grew by 4.0 MiB"])
        self.assertEqual(faults_of(seen(descriptors=lambda at: 7 + at // 10)), ["it holds 10 descriptors, after 8"])

    def test_a_program_that_does_nothing_is_found(self):
        self.assertEqual(faults_of(seen(ticks=lambda at: min(at, 20))), ["it stands still"])
        self.assertEqual(faults_of(seen()[:3]), ["it was seen too few times"])

    def test_a_program_that_ends_is_found(self):
        with tempfile.TemporaryDirectory() as folder:
            ended = Watched("ended", ["sh", "-c", "echo enough; exit 3"], folder=folder)
            ended.processes[0].wait()
            ended.look()
            self.assertEqual(ended.end(), ["it ended with 3: enough\n"])

    def test_a_run_of_many_that_goes_wrong_is_found(self):
        runs = Repeated("runs", [["echo", "right"], ["echo", "wrong"]],
                        lambda _command, status, said: "" if (status, said) == (0, "right\n") else said, None, os.environ)
        self.assertEqual(runs.end(), ["it came to no end"])
        while runs.count < 2:
            runs.go_on()
        self.assertEqual(runs.end(), ["run 2: wrong\n"])


if __name__ == "__main__":
    unittest.main()
