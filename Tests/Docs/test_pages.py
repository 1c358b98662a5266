"""The tests of the pages' own checks: each must find what is wrong, and where."""

import os
import subprocess
import sys
import tempfile
import unittest

import check_links
import pages
import run_page

HERE = os.path.dirname(os.path.abspath(__file__))
BROKEN = os.path.join(HERE, "samples", "broken")


def run(name, *arguments):
    return subprocess.run([sys.executable, "-B", os.path.join(HERE, name), *arguments], capture_output=True,
                          text=True, check=False)


def run_commands(*arguments):
    return run("run_page.py", "--source", BROKEN, "--lineup", "/bin/false", "--bundle", "/nowhere", *arguments)


class Blocks(unittest.TestCase):
    def test_a_block_has_its_kind_its_file_and_the_line_it_begins_on(self):
        page = pages.parse("a.md", "text\n\n```c++ host.cpp\nint main() {\n}\n```\n")
        [block] = page.blocks
        self.assertEqual((block.kind, block.file, block.line), ("c++", "host.cpp", 4))
        self.assertEqual(block.text, "int main() {\n}\n")

    def test_a_block_in_a_list_loses_the_lists_indentation(self):
        [block] = pages.parse("a.md", "- item\n\n  ```sh\n  echo a\n    echo b\n  ```\n").blocks
        self.assertEqual(block.lines, ["echo a", "  echo b"])

    def test_a_longer_fence_holds_a_shorter_one(self):
        [block] = pages.parse("a.md", "````text\n```sh\nfalse\n```\n````\n").blocks
        self.assertEqual((block.kind, block.lines), ("text", ["```sh", "false", "```"]))

    def test_a_fence_that_is_never_closed_is_a_problem(self):
        page = pages.parse("a.md", "```sh\ntrue\n")
        self.assertEqual(page.problems, [(1, "the fence is never closed")])

    def test_links_in_code_are_not_links(self):
        page = pages.parse("a.md", "`[a](b.md)` and [c](d.md)\n\n```text\n[e](f.md)\n```\n")
        self.assertEqual([link.target for link in page.links], ["d.md"])


class Anchors(unittest.TestCase):
    def test_a_heading_becomes_lower_case_without_punctuation(self):
        taken = {}
        self.assertEqual(pages.slug("EBU 5.1, `--ident`: what's in it", taken), "ebu-51---ident-whats-in-it")

    def test_the_same_heading_again_is_numbered(self):
        self.assertEqual(pages.parse("a.md", "# A\n## A\n").anchors, {"a", "a-1"})


class Patterns(unittest.TestCase):
    def difference(self, expected, printed):
        return run_page.first_difference(expected, printed)

    def test_lines_must_be_the_same(self):
        self.assertIsNone(self.difference(["a", "b"], ["a", "b"]))
        self.assertEqual(self.difference(["a", "b"], ["a", "c"]), 1)
        self.assertEqual(self.difference(["a.b"], ["axb"]), 0)

    def test_more_and_less_than_expected_are_found(self):
        self.assertEqual(self.difference(["a"], ["a", "b"]), 1)
        self.assertEqual(self.difference(["a", "b"], ["a"]), 1)
        self.assertEqual(self.difference(["a"], []), 0)

    def test_dots_in_a_line_stand_for_text_in_that_line_alone(self):
        self.assertIsNone(self.difference(["took ... s"], ["took 12.5 s"]))
        self.assertEqual(self.difference(["a...", "c"], ["a", "b", "c"]), 1)

    def test_dots_alone_stand_for_lines(self):
        self.assertIsNone(self.difference(["a", "...", "d"], ["a", "b", "c", "d"]))
        self.assertIsNone(self.difference(["a", "...", "d"], ["a", "d"]))
        self.assertEqual(self.difference(["a", "...", "d"], ["a", "b"]), 2)

    def test_of_a_progress_bar_the_last_state_counts(self):
        self.assertEqual(run_page.tidy("10 %\r100 %\ndone  \n\n"), ["100 %", "done"])


class BrokenCommands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.done = run_commands("Docs/commands.md")

    def test_the_run_fails(self):
        self.assertEqual(self.done.returncode, 1)
        self.assertIn("Docs/commands.md: 3 blocks run, 2 outputs compared", self.done.stdout)

    def test_another_output_names_its_line(self):
        self.assertIn("Docs/commands.md:17: this is not what is printed", self.done.stderr)
        self.assertIn("-zwei\n+two", self.done.stderr)

    def test_an_output_without_commands_names_its_line(self):
        self.assertIn("Docs/commands.md:26: an output block that does not follow", self.done.stderr)

    def test_a_command_that_fails_names_its_block_and_ends_the_page(self):
        self.assertIn("Docs/commands.md:30: the commands end with status 3:\nbefore", self.done.stderr)

    def test_nothing_else_is_complained_of(self):
        self.assertEqual(self.done.stderr.count("Docs/commands.md:"), 3)


class RightCommands(unittest.TestCase):
    def run_page(self, text, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "page.md"), "w", encoding="utf-8") as file:
                file.write(text)
            done = run("run_page.py", "--source", folder, "--lineup", "/bin/true", "--bundle", "/b", *arguments,
                       "page.md")
            with open(os.path.join(folder, "page.md"), encoding="utf-8") as file:
                return done, file.read()

    def test_blocks_share_the_pages_folder_and_its_files(self):
        done, _ = self.run_page("```text a/b.txt\nhello\n```\n\n```sh\ncat a/b.txt\n```\n\n```output\nhello\n```\n")
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_pipe_fails_with_any_of_its_commands(self):
        self.assertEqual(self.run_page("```sh\nfalse | true\n```\n")[0].returncode, 1)

    def test_update_writes_what_was_printed(self):
        done, text = self.run_page("```sh\necho new\n```\n```output\nold\n```\nafter\n", "--update")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(text, "```sh\necho new\n```\n```output\nnew\n```\nafter\n")

    def test_a_file_stays_in_the_pages_folder(self):
        done, _ = self.run_page("```text ../outside.txt\nhello\n```\n")
        self.assertIn("page.md:1: the file ../outside.txt would lie outside", done.stderr)


class BrokenLinks(unittest.TestCase):
    def test_all_that_is_wrong_is_found_where_it_is_and_nothing_else(self):
        found = list(check_links.problems(check_links.Tree(BROKEN)))
        kinds = ", ".join(pages.KINDS)
        self.assertEqual(found, [
            "Docs/links.md:6: the link commands.md#no-such-heading leads to no heading of Docs/commands.md",
            "Docs/links.md:6: the link missing.md leads to nothing",
            "Docs/links.md:7: the link images/missing.png leads to nothing",
            "Docs/links.md:8: the link images/also-missing.png leads to nothing",
            "Docs/links.md:9: there is no Src/NoSuchFile.cpp",
            "Docs/links.md:11: code without a fence: put it between ``` and say its kind",
            f"Docs/links.md:13: a block of the kind \"shell\"; there are {kinds}",
            "Docs/images/unused.png: no page shows it",
            "Docs/README.md: the index does not have Docs/orphan.md",
        ])


if __name__ == "__main__":
    unittest.main()
