"""docs/recipes/README.md: its commands typed one after another, and what they print.

The recipe is run in Python, which is there wherever this test is; that the others print the
same is what tests/recipes is for.
"""

import re
import shlex

from demo_folder import program_environment
from examples import examples_of_markdown, rows_of_tables
from page_shell import run_commands
from support import Built, DocumentTest, page

PAGE = "docs/recipes/README.md"


class RecipesPage(DocumentTest):
    def blocks(self):
        """The commands, in their order, and the numbers that they are said to print."""
        section = page(PAGE).split("\n## The extract\n")[1]
        texts = examples_of_markdown(section)[1]
        numbers = [number for number, text in enumerate(texts) if text.startswith("data ")]
        self.assertEqual(len(numbers), 1, texts)
        return texts[: numbers[0]], texts[numbers[0]]

    def test_prints_what_its_commands_print(self):
        Built.demo.copy_to(self.folder)
        commands, printed = self.blocks()
        self.assertEqual(len(commands), 3)
        command, count = re.subn(r"Rscript (\S+)\.R", r"python3 \1.py", commands[-1])
        self.assertEqual(count, 1)
        environment = program_environment(Built.folder)
        results = run_commands([*commands[:-1], command], self.folder, environment)
        for shown, status in results:
            self.assertEqual(status, 0, shown)
        lines = results[-1][0].splitlines()
        numbers = [line for line in lines if not line.startswith("picture ")]
        self.assertEqual(numbers, printed.splitlines())
        shown = {line.rsplit(".", 2)[1] for line in lines if line not in numbers}
        (rows,) = rows_of_tables(page(PAGE), "Picture")
        self.assertEqual(len(shown), 4)
        self.assertLessEqual({row[0].strip("`").split(".")[1] for row in rows}, shown)

    def test_its_answers_are_those_of_its_table(self):
        (rows,) = rows_of_tables(page(PAGE), "Prompt")
        told = []
        for prompt, answers in rows:
            given = re.findall(r"`([^`]*)`", answers) or [""]
            told += given * (2 if "twice" in prompt else 1)
        typed = self.find(r"printf '%s\\n' (.*) > answers", page(PAGE), "the answers")
        self.assertEqual(told, shlex.split(typed))
