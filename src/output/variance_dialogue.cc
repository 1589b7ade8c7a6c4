#include "output/variance_dialogue.h"

#include <array>
#include <string_view>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr auto kOffer = std::to_array<std::string_view>({
    "",
    " OK, You may now (finally) opt to test the within grid",
    " variance for equality. To do this you must enter a year",
    " at which you feel the variance in the grid values may change.",
    "",
});

}  // namespace

std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years) {
  console.write_lines(kOffer);
  console.prompt(" Perform Ftest of Vairance? [T]rue or [F]alse ==> ");
  const bool FtestChosen = console.read_logical();
  if (!FtestChosen) {
    return std::nullopt;
  }
  console.blank_line();
  console.write_line(" Enter cutoff year for Ftest. The value must be");
  console.prompt(" between " + fixed_integer(years.FYOD, 4) + "-" +
                 fixed_integer(years.LYOD, 4) + " ==> ");
  return console.read_free_integer();
}

void show_periods(ConsoleDialogue& console, const VarianceReportFile& report) {
  console.write_line(" Ftest Comparison of Variance: " + report.periods());
}

VarianceNotices console_notices(ConsoleDialogue& console) {
  return {.not_a_number =
              [&console] { console.write_line("    *** Ftest Nan computed ***"); },
          .bad_argument = [&console](std::string_view text) { console.pause(text); }};
}

}  // namespace veldmark
