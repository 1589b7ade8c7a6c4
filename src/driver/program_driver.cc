#include "driver/program_driver.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"
#include "catalogue/read_block.h"
#include "catalogue/variable_catalogue.h"
#include "driver/run_state.h"
#include "driver/screens.h"
#include "output/search_outputs.h"
#include "output/time_series_output.h"
#include "output/variance_report.h"
#include "selection/grid_geometry.h"
#include "selection/lattice.h"
#include "selection/period_dialogue.h"
#include "selection/region_dialogue.h"
#include "selection/thinning_dialogue.h"
#include "util/file_identity.h"
#include "util/stringclean.h"
#include "util/text_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr std::size_t kMenuAnswerWidth = 2;

// Frost days are stored in hundredths of a day.
constexpr float kFrostDayScale = 0.01F;

// Output names take this much of the input's name.
constexpr std::size_t kNameStemWidth = 40;

// S2: what the user sees before the menu, but not again after a missing file.
void show_data_files(ConsoleDialogue& console) {
  console.pause(kHitReturnToContinue);
  console.run_shell_command("clear");
  console.run_shell_command("ls *.dat.new");
}

// S4: the citation of the chosen data set, and its missing code.
// Kept on purpose: a negative answer, which chooses nothing, counts as CRU TS here.
void cite_data_set(ConsoleDialogue& console, RunState& state) {
  if (state.MenuChoice == kDroughtIndex) {
    write_drought_citation(console);
    state.MissingCode = kDroughtMissingCode;
  } else if (state.MenuChoice > kLastVariable || state.MenuChoice == 0) {
    return;
  } else {
    write_cru_citation(console);
    state.MissingCode = kCruMissingCode;
  }
  console.pause(" Hit RETURN to continue");
}

[[noreturn]] void end_by_menu(ConsoleDialogue& console) {
  console.write_line(kMargin, "");
  console.write_line(0, "Program Terminating");
  throw RunEnd::quiet();
}

// S3 to S5: asks for a variable until its file is there, and opens the file.
// Kept on purpose: an answer out of range is not refused; the entry stays as it was and
// no file is opened.
std::optional<GridFile> choose_variable(ConsoleDialogue& console, RunState& state) {
  for (;;) {
    show_menu(console);
    state.MenuChoice = console.read_fixed_integer(kMenuAnswerWidth);
    cite_data_set(console, state);
    state.LastDataYear = kLastDataYear;
    if (state.MenuChoice == 0) {
      end_by_menu(console);
    }
    if (state.MenuChoice < kFirstVariable || state.MenuChoice > kLastVariable) {
      return std::nullopt;
    }
    state.entry = catalogue_entry(state.MenuChoice);
    if (state.MenuChoice == kFrostDays) {
      state.SampleScale = kFrostDayScale;
    }
    std::optional<GridFile> input =
        open_data_file(console, state.MenuChoice, state.entry);
    if (input) {
      return input;
    }
  }
}

std::string output_name(const VariableEntry& entry, const std::string& extension) {
  std::string name = text_field(
      entry.DataFileName.substr(0, kNameStemWidth) + extension, kFileNameWidth);
  stringclean(name, static_cast<std::int32_t>(name.size()));
  return name;
}

// S7: region and years, unless the last search's are kept.
void ask_search(ConsoleDialogue& console, RunState& state) {
  const MinLonTest min_lon_test =
      state.MenuChoice == kDroughtIndex ? MinLonTest::kNone : MinLonTest::kInRange;
  state.region = ask_search_region(console, min_lon_test);
  state.years = ask_year_span(console, state.LastDataYear);
}

// S8: the rows and columns of the region, and their values.
GridValues read_values(ConsoleDialogue& console, RunState& state,
                       std::optional<GridFile> input) {
  state.ranges = find_ranges(state.region, row_order(state.MenuChoice), state.ranges);
  if (!input) {
    throw RunEnd::error("Channel is not connected", Operation::kRead,
                        Channel::kGridFile);
  }
  const BlockRequest request{
      .years = state.years, .ranges = state.ranges, .MissingCode = state.MissingCode};
  return read_block(console, std::move(*input), request);
}

// S10: the offer of the variance test; opens its report when the user takes it.
std::optional<VarianceReport> offer_variance_test(ConsoleDialogue& console,
                                                  const RunState& state,
                                                  const FilesInUse& in_use) {
  const std::optional<std::int32_t> CutoffYear = ask_cutoff_year(console, state.years);
  if (!CutoffYear) {
    return std::nullopt;
  }
  const VarianceTest test{.years = state.years,
                          .CutoffYear = *CutoffYear,
                          .MissingCode = state.MissingCode,
                          .SampleScale = state.SampleScale};
  const std::string name = output_name(state.entry, ".ftst");
  return std::make_optional<VarianceReport>(
      console, std::string(without_trailing_blanks(name)), test, in_use);
}

// One search, from the menu (S3) to the summary (S12).
void run_pass(ConsoleDialogue& console, RunState& state) {
  std::optional<GridFile> input = choose_variable(console, state);

  state.TsfName = output_name(state.entry, ".TSF");
  state.XyName = output_name(state.entry, ".XY");
  FilesInUse in_use;
  in_use.add(input ? input->identity() : std::nullopt);
  auto [time_series, cell_list] =
      open_search_outputs(std::string(without_trailing_blanks(state.TsfName)),
                          std::string(without_trailing_blanks(state.XyName)), in_use);

  if (state.ChangeSearch) {
    ask_search(console, state);
  }
  const GridValues values = read_values(console, state, std::move(input));
  const std::int32_t ThinningFactor = ask_thinning_factor(console, state.ranges);
  std::optional<VarianceReport> variance_report =
      offer_variance_test(console, state, in_use);

  const Lattice lattice = kept_cells(state.ranges, ThinningFactor);
  const SaveRequest request{.entry = state.entry,
                            .values = values,
                            .lattice = lattice,
                            .years = state.years,
                            .order = row_order(state.MenuChoice),
                            .CrossesDateLine = state.ranges.CrossesDateLine};
  const std::int32_t CellsSaved = save_cells(console, request, state.TsfName,
                                             time_series, cell_list, variance_report);

  // The files are complete before the summary says so.
  time_series.close();
  cell_list.close();
  if (variance_report) {
    variance_report->close();
  }
  write_summary(console, state.ranges.CellCount(), CellsSaved, state.TsfName);
}

bool ask_true_or_false(ConsoleDialogue& console, const char* question) {
  console.blank_line();
  console.write_line(kMargin, question);
  console.prompt(kMargin, "[t]rue [f]alse ==> ");
  return console.read_logical();
}

// The passes of a run; ends by a RunEnd.
[[noreturn]] void run_passes(ConsoleDialogue& console) {
  RunState state;
  console.run_shell_command("clear");  // S0
  for (;;) {
    if (state.ChangeSearch) {
      show_introduction(console);  // S1
    }
    show_data_files(console);
    run_pass(console, state);
    if (!ask_true_or_false(console, "Perform another search?")) {  // S13
      throw RunEnd::quiet();
    }
    state.ChangeSearch = ask_true_or_false(console, "Change search parameters?");
  }
}

}  // namespace

int run_program(ConsoleDialogue& console, std::ostream& errors) {
  try {
    try {
      run_passes(console);
    } catch (const std::bad_alloc&) {
      throw not_enough_memory();
    }
  } catch (const RunEnd& end) {
    try {
      console.flush();
    } catch (const RunEnd& output_failure) {
      errors << (end.report().empty() ? output_failure : end).report() << std::flush;
      return output_failure.status();
    }
    errors << end.report() << std::flush;
    return end.status();
  }
}

}  // namespace veldmark
