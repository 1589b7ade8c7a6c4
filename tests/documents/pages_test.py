"""Walks all pages: their examples, their links and the version they name."""

import re

from examples import examples_of_manual, examples_of_markdown
from links import faults_of_page, is_elsewhere, targets_of
from page_shell import run_commands
from pages import PAGES, USERS, pages_of_project
from support import SAMPLE, TOP, Built, DocumentTest, page, run
from demo_folder import program_environment

INSTALLED_SAMPLE = "/usr/share/veldmark/sample"
FOR_DEVELOPERS = "\n## For developers\n"


def examples_of(name):
    if name.startswith("docs/man/"):
        return examples_of_manual(page(name))
    return examples_of_markdown(page(name))


class Pages(DocumentTest):
    def test_each_has_an_entry(self):
        names = {name for name in pages_of_project() if not name.startswith("tests/")}
        self.assertEqual(names - set(PAGES), set())

    def test_each_entry_has_its_page(self):
        names = set(pages_of_project())
        self.assertGreater(len(names), 15)
        self.assertEqual(set(PAGES) - names, set())

    def test_each_holds_what_its_entry_says(self):
        for name, entry in PAGES.items():
            with self.subTest(page=name):
                examples, texts = examples_of(name)
                positions = sum(len(example.parts) for example in examples)
                held = (len(examples), positions)
                self.assertEqual(held, (entry.examples, entry.positions), f"see {name}")
                if entry.texts is not None:
                    self.assertEqual(len(texts), entry.texts, texts)


class Examples(DocumentTest):
    def check_output(self, example, shown, status, entry):
        expected = 1 if example.command.startswith(entry.failing) else 0
        self.assertEqual(status, expected, f"{example.command}: {shown}")
        # A page can't show that the last line has no line end, as after `head -c`.
        self.assertIn(example.output, (shown, shown + "\n"), example.command)

    def check_parts(self, example, shown):
        line = shown.splitlines()[0] if example.parts else ""
        end = 0
        for first, last, text in example.parts:
            self.assertEqual(first, end + 1, f"bytes {first}-{last} of {line}")
            part = line[first - 1 : last]
            self.assertEqual(part.rstrip(), text.rstrip(), f"bytes {first}-{last}")
            end = last
        self.assertEqual(end, len(line), "the positions stop before the end of the line")

    def lacks(self, program):
        """Is the program left out of this build, or built without netCDF?"""
        if not Built.has(program):
            return True
        result = run([program, "none", "-o", "none.nc"], self.folder)
        return "built without netCDF" in result.stderr

    def run_page(self, name, entry):
        top = self.folder / name.replace("/", "-")
        top.mkdir()
        folder = top
        if entry.folder is not None:
            Built.demo.copy_to(top)
            folder = top / entry.folder
        examples = examples_of(name)[0]
        if entry.optional and self.lacks(entry.optional):
            examples = [one for one in examples if entry.optional not in one.command]
        commands = [
            example.command.replace(INSTALLED_SAMPLE, str(SAMPLE)) for example in examples
        ]
        environment = program_environment(Built.folder)
        return zip(examples, run_commands(commands, folder, environment), strict=True)

    def test_show_what_the_shell_shows_in_the_demos_folder(self):
        for name, entry in PAGES.items():
            if entry.examples == 0 or (entry.program and self.lacks(entry.program)):
                continue
            for example, (shown, status) in self.run_page(name, entry):
                with self.subTest(page=name, command=example.command):
                    self.check_output(example, shown, status, entry)
                    self.check_parts(example, shown)


class Links(DocumentTest):
    def test_lead_somewhere(self):
        looked_at = 0
        for name in pages_of_project():
            if name.endswith(".md"):
                looked_at += len(targets_of(page(name)))
                self.assertEqual(list(faults_of_page(TOP / name, TOP)), [])
        self.assertGreater(looked_at, 40)

    def test_of_users_pages_lead_to_users_pages(self):
        for name, entry in PAGES.items():
            if entry.reader != USERS or not name.endswith(".md"):
                continue
            for target in targets_of(page(name).split(FOR_DEVELOPERS)[0]):
                if is_elsewhere(target) or target.startswith("#"):
                    continue
                path = ((TOP / name).parent / target.split("#")[0]).resolve()
                to = str(path.relative_to(TOP))
                with self.subTest(page=name, target=target):
                    is_users = to in PAGES and PAGES[to].reader == USERS
                    is_file = not to.endswith(".md") and not to.startswith(("tests", "bench"))
                    self.assertTrue(is_users or is_file)
                    # The sample is installed elsewhere than the documents.
                    self.assertFalse(to.startswith("data/"))


class Versions(DocumentTest):
    def test_of_manual_pages_and_citation_are_the_programs(self):
        version = run(["veldmark", "--version"], self.folder).stdout.split()[1]
        self.assertRegex(version, r"^\d+\.\d+\.\d+$")
        manuals = [name for name in PAGES if name.startswith("docs/man/")]
        self.assertGreaterEqual(len(manuals), 3)
        for name in manuals:
            with self.subTest(page=name):
                title = re.search(r"^\.TH .*$", page(name), re.MULTILINE).group()
                self.assertIn(f'"Veldmark {version}"', title)
        self.assertIn(f"\nversion: {version}\n", page("CITATION.cff"))
        self.assertIn(f"\n## {version}", page("CHANGELOG.md"))

    def test_of_the_companions_is_the_programs(self):
        version = run(["veldmark", "--version"], self.folder).stdout.split()[1]
        pages = [path.stem for path in (TOP / "docs" / "man").glob("*.1")]
        companions = sorted(set(pages) - {"veldmark"})
        self.assertIn("tersify", companions)
        for program in filter(Built.has, companions):
            shown = run([program, "--version"], self.folder).stdout
            self.assertEqual(shown, f"{program} (veldmark) {version}\n")
