#!/usr/bin/env python3
"""Whether readme_examples.py notices what it is there to notice. The program under test here is /bin/echo."""

import pathlib
import tempfile
import unittest

import readme_examples


def failures(text):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "page.md"
        path.write_text(text, encoding="utf-8")
        return readme_examples.failures_of(path, pathlib.Path("/bin/echo"))


def page(commands, output=None, mark="<!-- test -->"):
    text = f"{mark}\n```sh\n{commands}\n```\n"
    return text if output is None else f"{text}\n```text\n{output}\n```\n"


class ReadmeExamples(unittest.TestCase):
    def test_an_example_that_prints_what_the_page_says_holds(self):
        self.assertEqual(failures(page("./run one two", "one two")), [])

    def test_another_output_is_a_failure(self):
        self.assertEqual(len(failures(page("./run one", "two"))), 1)

    def test_a_missing_line_is_a_failure(self):
        self.assertEqual(len(failures(page("./run one", "one\ntwo"))), 1)

    def test_a_line_too_many_is_a_failure(self):
        self.assertEqual(len(failures(page("./run one; ./run two", "one"))), 1)

    def test_standard_error_is_output_too(self):
        self.assertEqual(len(failures(page("./run one; ./run two >&2", "one"))), 1)

    def test_another_status_is_a_failure(self):
        self.assertEqual(len(failures(page("false"))), 1)
        self.assertEqual(len(failures(page("true", mark="<!-- test: status 1 -->"))), 1)
        self.assertEqual(failures(page("false", mark="<!-- test: status 1 -->")), [])

    def test_an_example_without_a_mark_is_a_failure(self):
        self.assertEqual(len(failures(page("true") + page("true", mark="text"))), 1)
        self.assertEqual(failures(page("true") + page("false", mark="<!-- no test: never ends -->")), [])

    def test_an_example_for_a_clone_is_left_to_the_test_that_makes_one(self):
        self.assertEqual(failures(page("false", mark="<!-- test in a clone -->")), [])

    def test_a_line_of_dots_stands_for_any_number_of_lines(self):
        self.assertEqual(failures(page("seq 5", "1\n…\n5")), [])
        self.assertEqual(failures(page("seq 2", "1\n…\n2")), [])
        self.assertEqual(len(failures(page("seq 5", "1\n…\n4"))), 1)

    def test_the_day_file_is_that_of_today(self):
        self.assertEqual(failures(page("./run $(date +%Y%m%d).xml", "20261113.xml")), [])
        self.assertEqual(len(failures(page("./run 20261113.xml", "20261113.xml"))), 1)

    def test_the_home_folder_is_the_one_of_the_page(self):
        self.assertEqual(failures(page("./run ~/EPG and ~/data", "~/EPG and ~/data")), [])

    def test_variables_and_folder_carry_over_to_the_next_example(self):
        self.assertEqual(failures(page("export A=1\ncd samples") + page("echo $A\nls guide.xml", "1\nguide.xml")), [])

    def test_examples_cannot_change_the_project(self):
        self.assertEqual(failures(page("rm samples/guide.xml")), [])
        self.assertTrue((readme_examples.ROOT / "samples" / "guide.xml").exists())


if __name__ == "__main__":
    unittest.main()
