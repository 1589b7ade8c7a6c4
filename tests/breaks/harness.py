"""Breaks of the tests themselves: ways in which they could pass without testing."""

from catchers import SECOND_PROGRAM, ctest, faults, transcripts, unit
from definition import Break
from edits import Add, Change, Empty, Remove

CASE = "tests/sessions/cases/exit-at-first-menu.txt"
SWEEP = "tests/stats/statistics_sweep_test.cc"
MAKER = "tests/second_program/session_maker.py"
MENU_ANSWERED = Change(MAKER,
                       '        return text.encode("latin-1")\n', '        return b"\\n\\n0\\n"\n')
NO_SESSIONS = Change("tests/CMakeLists.txt", "set(random_sessions 150)", "set(random_sessions 0)")
BESIDE_SECOND = ctest("SecondProgram.AgreesOnRandomSessions", "veldmark")
INVARIANTS = ctest("RandomSessions.KeepTheirInvariants", "veldmark")

CORPORA = {"session": "Sessions", "grid_file": "GridFiles", "numbers": "Numbers",
           "row": "Rows", "tersify": "Tersify"}

BREAKS = [
    Break(
        "transcripts are rewritten to what another menu shows",
        transcripts(),
        Change("src/catalogue/variable_catalogue.cc", '" [1] Precipitation             pre ',
               '" [1] Rain                      pre '),
        VELDMARK_WRITE_TRANSCRIPTS="1",
    ),
    Break(
        "a new transcript that must fail is not run",
        transcripts(),
        Add("tests/sessions/cases/exit-otherwise.txt", copy_of=CASE),
        Change("tests/sessions/cases/exit-otherwise.txt", "|Program Terminating|", "|Good bye|"),
    ),
    Break(
        "a transcript is lost",
        transcripts(),
        Remove(CASE),
    ),
    Break(
        "all transcripts but one are lost",
        SECOND_PROGRAM,
        Remove("tests/sessions/cases/*.txt", but="exit-at-first-menu.txt"),
    ),
    Break(
        "every session beside the second program ends at the menu",
        BESIDE_SECOND,
        MENU_ANSWERED,
    ),
    Break(
        "every session of the invariants ends at the menu",
        INVARIANTS,
        MENU_ANSWERED,
    ),
    Break(
        "no session beside the second program",
        BESIDE_SECOND,
        NO_SESSIONS,
    ),
    Break(
        "no session for the invariants",
        INVARIANTS,
        NO_SESSIONS,
    ),
    Break(
        "the scene whose calls fail saves nothing",
        faults("EveryCallOfASessionFailsOnce"),
        Change("tests/faults/scenes.py", "    answers = search(2, (200, 223)",
               '    answers = ["", "", "0"] + search(2, (200, 223)'),
    ),
    Break(
        "the shim of failing calls misses pread",
        faults("EveryCallOfASessionFailsOnce"),
        Change("tests/faults/failing_calls.cc",
               '    {SYS_pread64, "pread", Names::kDescriptor},\n', ""),
    ),
    Break(
        "the sweep of the F-test has one case",
        unit("StatisticsSweep.Ftest*"),
        Change(SWEEP, "  const std::vector<std::vector<float>> samples = all_samples(5, 3);\n",
               "  const std::vector<std::vector<float>> samples = all_samples(0, 3);\n"),
    ),
    Break(
        "the sweep of frost days has one case",
        unit("StatisticsSweep.Ftest*"),
        Change(SWEEP, "cases < 6000;", "cases < 1;"),
    ),
    Break(
        "an oddity names a test that is not there",
        ctest("Source.OdditiesNameTheirTests", "veldmark"),
        Change("src/driver/variable_choice.cc", "Kept on purpose: menu-minus-3-at-first.",
               "Kept on purpose: menu-minus-4-at-first."),
    ),
] + [
    Break(
        f"the corpus of the fuzz target {target} is empty",
        ctest("Fuzz.ReplaysTheCorpusOf" + name, "fuzz_" + target),
        Empty(f"tests/fuzz/corpus/{target}/*"),
    )
    for target, name in CORPORA.items()
]
