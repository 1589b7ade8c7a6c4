"""Tests scripts/play_session with small programs that ask.

    play_session_test.py
"""

import signal
import subprocess
import time
import unittest

from support import TOP, ScriptTest

PLAY = TOP / "scripts" / "play_session"

ASKS_TWICE = """
printf ' Name ==> '; IFS= read -r name
echo ' Hit RETURN to CONTINUE'; IFS= read -r pause
echo "name [$name], pause [$pause]"
exit 7
"""


class PlaySession(ScriptTest):
    def play(self, script, answers, *options):
        program = self.stand_in(self.folder / "program", script)
        (self.folder / "answers").write_text(answers)
        limit = [] if options else ["--limit", "20"]
        return self.run_script(PLAY, *limit, *options, program, "answers")

    def test_answers_each_prompt_and_pause_and_gives_the_programs_status(self):
        result = self.play(ASKS_TWICE, "Ada Lovelace\n\n")
        self.assertEqual(
            result.stdout,
            " Name ==> Ada Lovelace\n Hit RETURN to CONTINUE\n<RETURN>\n"
            "name [Ada Lovelace], pause []\n",
        )
        self.assertEqual((result.stderr, result.returncode), ("", 7))

    def test_gives_an_answer_only_when_it_is_asked_for(self):
        result = self.play(
            "IFS= read -r -t 0.5 early && echo early; printf ' Now ==> '; read -r x; echo $x",
            "one\n")
        self.assertEqual((result.stdout, result.returncode), (" Now ==> one\none\n", 0))

    def test_gives_the_status_of_a_program_that_a_signal_ended(self):
        result = self.play("kill -TERM $$", "")
        self.assertEqual(result.returncode, 128 + signal.SIGTERM)

    def test_a_program_that_ends_at_once_is_no_trouble(self):
        for _ in range(10):
            result = self.play("exit 0", "one\n")
            self.assertEqual(result.returncode, 0)
            self.assertEqual(
                result.stderr, "play_session: the program ended before answer 1 of 1\n")

    def test_says_which_answer_is_missing_and_to_which_prompt(self):
        result = self.play(
            "printf ' Name ==> '; read -r x; printf ' Age ==> '; read -r y || exit 255", "Ada\n")
        self.assertEqual(
            result.stderr, "play_session: answers has no answer 2, to the prompt 'Age ==>'\n")
        self.assertEqual(result.returncode, 255)

    def test_a_missing_answer_is_a_failure_even_where_the_program_ends_well(self):
        result = self.play("printf ' Name ==> '; read -r x; exit 0", "")
        self.assertEqual(result.returncode, 125)
        self.assertIn("no answer 1, to the prompt 'Name ==>'", result.stderr)

    def test_ends_a_program_that_asks_again_without_a_prompt(self):
        began = time.monotonic()
        result = self.play(
            "printf ' Factor ==> '; while read -r x && [[ -z $x ]]; do :; done", "\n2\n",
            "--limit", "0.5")
        self.assertLess(time.monotonic() - began, 30)
        self.assertEqual(
            result.stderr,
            "play_session: the program said nothing for 0.5 seconds after answer 1 ('') to the "
            "prompt 'Factor ==>'; is it asking again without a prompt?\n",
        )
        self.assertEqual(result.returncode, 124)

    def test_ends_a_program_that_goes_on_after_its_last_answer(self):
        result = self.play("printf ' Name ==> '; while :; do echo on; sleep 0.1; done", "",
                           "--limit", "1")
        self.assertEqual(result.returncode, 124)

    def test_a_slow_program_that_keeps_talking_is_left_alone(self):
        result = self.play("for i in 1 2 3 4 5 6 7 8; do echo $i; sleep 0.4; done", "",
                           "--limit", "2.5")
        self.assertEqual((result.stdout.split(), result.returncode), (list("12345678"), 0))

    def test_says_what_cannot_be_started_or_read(self):
        result = self.run_script(PLAY, "nothing", "answers")
        self.assertEqual(result.returncode, 127)
        self.assertEqual(result.stderr, "play_session: answers: No such file or directory\n")
        (self.folder / "answers").write_text("")
        result = self.run_script(PLAY, "./nothing", "answers")
        self.assertEqual(result.returncode, 127)
        self.assertEqual(result.stderr, "play_session: ./nothing: No such file or directory\n")

    def test_the_screen_is_never_cleared(self):
        result = self.play("echo $TERM", "")
        self.assertEqual(result.stdout, "dumb\n")

    def test_an_interrupt_ends_the_program_too(self):
        self.stand_in(self.folder / "program", "echo $$; printf ' Name ==> '; exec sleep 60")
        (self.folder / "answers").write_text("Ada\n")
        # Started in the background, the test itself may have to ignore interrupts.
        signal.signal(signal.SIGINT, signal.default_int_handler)
        process = subprocess.Popen([PLAY, "./program", "answers"], cwd=self.folder,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        process.stdout.readline()
        process.send_signal(signal.SIGINT)
        _, errors = process.communicate(timeout=30)
        self.assertEqual((process.returncode, errors), (130, b""))


if __name__ == "__main__":
    unittest.main()
