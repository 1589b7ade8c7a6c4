#include "driver/program_driver.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/grid_file.h"
#include "catalogue/grid_values.h"
#include "catalogue/read_block.h"
#include "catalogue/variable_catalogue.h"
#include "driver/fault_messages.h"
#include "driver/introduction_screens.h"
#include "driver/run_state.h"
#include "driver/variable_choice.h"
#include "output/cell_list_file.h"
#include "output/console_table.h"
#include "output/output_names.h"
#include "output/save_cells.h"
#include "output/search_outputs.h"
#include "output/summary_screens.h"
#include "output/time_series_file.h"
#include "output/variance_dialogue.h"
#include "output/variance_report_file.h"
#include "selection/grid_geometry.h"
#include "selection/lattice.h"
#include "selection/period_dialogue.h"
#include "selection/region_dialogue.h"
#include "selection/thinning_dialogue.h"
#include "util/file_identity.h"

namespace veldmark {
namespace {

// S2: a pause, a cleared screen and the list of data files.
void show_data_files(ConsoleDialogue& console) {
  console.pause(kHitReturnToContinue);
  console.run_shell_command("clear");
  console.run_shell_command("ls *.dat.new");
}

// S7: asks for region and years.
//
// Kept on purpose: AnswerOutOfRange.HasItsMinimumLongitudeTested. After a menu answer
// out of range the minimum longitude is tested, even if the variable that is still set
// up accepts any.
void ask_search(ConsoleDialogue& console, RunState& state) {
  const VariableEntry* const chosen = find_variable(state.MenuChoice);
  const MinLonTest min_lon_test =
      chosen != nullptr ? chosen->min_lon_test : MinLonTest::kInRange;
  state.region = ask_search_region(console, min_lon_test);
  state.years = ask_year_span(console, state.LastDataYear);
}

// S8: finds the rows and columns of the region and reads their values.
GridValues read_values(ConsoleDialogue& console, RunState& state,
                       std::optional<GridFile> input) {
  if (!input) {
    throw RunEnd::error("Channel is not connected", Operation::kRead,
                        Channel::kGridFile);
  }
  state.ranges = find_ranges(state.region, state.entry.row_order, state.ranges);
  const BlockRequest request{
      .years = state.years, .ranges = state.ranges, .MissingCode = state.MissingCode};
  try {
    return read_block(std::move(*input), request);
  } catch (const ReadFault& fault) {
    throw run_end_for(console, fault, state.ranges.CrossesDateLine);
  }
}

// S10: offers the variance test. Returns its open report; nullptr if the user declines.
std::unique_ptr<VarianceReportFile> offer_variance_test(ConsoleDialogue& console,
                                                        RunState& state,
                                                        const FilesInUse& in_use) {
  const std::optional<std::int32_t> CutoffYear = ask_cutoff_year(console, state.years);
  state.FtestChosen = CutoffYear.has_value();
  if (!state.FtestChosen) {
    return nullptr;
  }
  const VarianceTest test{.years = state.years,
                          .CutoffYear = *CutoffYear,
                          .MissingCode = state.MissingCode,
                          .SampleScale = state.SampleScale};
  const std::string name(report_name(state.entry).trimmed());
  auto report = std::make_unique<VarianceReportFile>(name, test,
                                                     console_notices(console), in_use);
  show_periods(console, *report);
  return report;
}

// S11: saves the cells of `lattice` to the files and the console table. Each cell is
// tested before it is written. Returns the number of saved cells.
std::int32_t save(ConsoleDialogue& console, const RunState& state,
                  const GridValues& values, const Lattice& lattice,
                  SearchOutputs& outputs, VarianceReportFile* variance_report) {
  ConsoleTable table(console, state.entry, state.years);
  CellListFile cell_list(outputs.cell_list, state.TsfName, state.entry,
                         state.ranges.CrossesDateLine);
  TimeSeriesFile time_series(outputs.time_series, state.entry, state.years);
  std::vector<CellSink*> sinks{&cell_list, &table, &time_series};
  if (state.FtestChosen) {
    sinks.insert(sinks.begin(), variance_report);
  }
  return save_cells(values, lattice, state.entry.row_order, sinks);
}

// Runs one search, from the menu (S3) to the summary (S12).
void run_search(ConsoleDialogue& console, RunState& state) {
  std::optional<GridFile> input = choose_variable(console, state);

  state.TsfName = extract_name(state.entry, ".TSF");
  state.XyName = extract_name(state.entry, ".XY");
  FilesInUse in_use;
  in_use.add(input ? input->identity() : std::nullopt);
  SearchOutputs outputs =
      open_search_outputs(std::string(state.TsfName.trimmed()),
                          std::string(state.XyName.trimmed()), in_use);

  if (state.ChangeSearch) {
    ask_search(console, state);
  }
  const GridValues values = read_values(console, state, std::move(input));
  const std::int32_t ThinningFactor = ask_thinning_factor(console, state.ranges);
  const std::unique_ptr<VarianceReportFile> variance_report =
      offer_variance_test(console, state, in_use);
  const Lattice lattice = make_lattice(state.ranges, ThinningFactor);
  const std::int32_t CellsSaved =
      save(console, state, values, lattice, outputs, variance_report.get());

  // The files must be complete before the summary says so.
  outputs.time_series.close();
  outputs.cell_list.close();
  if (state.FtestChosen) {
    variance_report->close();
  }
  write_summary(console, state.ranges.CellCount(), CellsSaved, state.TsfName);
}

bool ask_true_or_false(ConsoleDialogue& console, const char* question) {
  console.write_lines({"", question});
  console.prompt(" [t]rue [f]alse ==> ");
  return console.read_logical();
}

// Runs all searches, from S0 to S13.
void run_searches(ConsoleDialogue& console) {
  RunState state;
  console.run_shell_command("clear");  // S0
  while (state.AnotherSearch) {
    if (state.ChangeSearch) {
      show_introduction(console);  // S1
    }
    show_data_files(console);
    run_search(console, state);
    state.AnotherSearch =
        ask_true_or_false(console, " Perform another search?");  // S13
    if (state.AnotherSearch) {
      state.ChangeSearch = ask_true_or_false(console, " Change search parameters?");
    }
  }
}

// Runs all searches and converts a FileFault to a RunEnd.
void run_searches_converting_faults(ConsoleDialogue& console) {
  try {
    run_searches(console);
  } catch (const FileFault& fault) {
    throw run_end_for(fault);
  }
}

// Flushes the output and writes the report of the end. Returns the exit status.
int finish_output(ConsoleDialogue& console, std::ostream& errors, const RunEnd& end) {
  try {
    console.flush();
  } catch (const RunEnd& output_failure) {
    errors << (end.report().empty() ? output_failure : end).report() << std::flush;
    return output_failure.status();
  }
  errors << end.report() << std::flush;
  return end.status();
}

}  // namespace

int run_program(ConsoleDialogue& console, std::ostream& errors) {
  try {
    run_searches_converting_faults(console);
    return finish_output(console, errors, RunEnd::quiet());
  } catch (const RunEnd& end) {
    return finish_output(console, errors, end);
  } catch (const std::bad_alloc&) {
    return finish_output(console, errors, not_enough_memory());
  }
}

}  // namespace veldmark
