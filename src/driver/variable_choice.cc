#include "driver/variable_choice.h"

#include <cstddef>
#include <string>

#include "catalogue/catalogue_screens.h"
#include "catalogue/variable_catalogue.h"

namespace veldmark {
namespace {

constexpr std::size_t kMenuAnswerWidth = 2;

// S4: shows the citation of the chosen data set and sets its missing code. `chosen` is
// nullptr if the answer is not the number of a data set.
//
// Kept on purpose: menu-minus-3-at-first. A negative answer chooses nothing, but is
// treated as CRU TS here.
void cite_data_set(ConsoleDialogue& console, const VariableEntry* chosen,
                   RunState& state) {
  if (chosen != nullptr) {
    show_citation(console, chosen->citation);
    state.MissingCode = chosen->MissingCode;
  } else if (state.MenuChoice < 0) {
    show_citation(console, kCruTsCitation);
    state.MissingCode = kCruTsMissingCode;
  }
}

[[noreturn]] void end_at_menu(ConsoleDialogue& console) {
  console.write_lines({" ", "Program Terminating"});
  throw RunEnd::quiet();
}

// Makes `chosen` the current data set, even if its file does not exist.
void select_variable(const VariableEntry& chosen, RunState& state) {
  state.entry = chosen;
  state.SampleScale = chosen.SampleScale.value_or(state.SampleScale);
}

}  // namespace

std::optional<GridFile> choose_variable(ConsoleDialogue& console, RunState& state) {
  for (;;) {
    show_menu(console);
    state.MenuChoice = console.read_fixed_integer(kMenuAnswerWidth);
    const VariableEntry* const chosen = find_variable(state.MenuChoice);
    cite_data_set(console, chosen, state);
    state.LastDataYear = kLastDataYear;
    if (state.MenuChoice == 0) {
      end_at_menu(console);
    }
    if (chosen == nullptr) {
      return std::nullopt;
    }
    select_variable(*chosen, state);
    if (data_file_exists(state.entry)) {
      return GridFile(std::string(state.entry.DataFileName.trimmed()));
    }
    report_missing_file(console, state.entry);
  }
}

}  // namespace veldmark
