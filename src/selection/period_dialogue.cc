#include "selection/period_dialogue.h"

#include <optional>
#include <string>
#include <string_view>

#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr int kYearWidth = 4;

// Asks for a year until the answer is an integer. If the input ends after a refused
// answer, the error report names that refusal, as the reason why there is no year.
std::int32_t ask_year(ConsoleDialogue& console, std::string_view request,
                      std::string_view prompt) {
  const char* end_message = kPastEndOfFile;
  for (;;) {
    console.write_lines({"", request});
    console.prompt(prompt);
    const std::optional<std::int32_t> year =
        console.try_read_fixed_integer(kYearWidth, end_message);
    if (year) {
      return *year;
    }
    end_message = kIllegalCharacter;
  }
}

std::int32_t ask_first_year(ConsoleDialogue& console, std::int32_t LastDataYear) {
  for (;;) {
    const std::int32_t FYOD =
        ask_year(console, "        Enter the First Year Of Data.", "        FYOD ==> ");
    if (kFirstDataYear <= FYOD && FYOD <= LastDataYear) {
      return FYOD;
    }
    console.write_lines({"", "        *WARNING* FYOD must be > " +
                                 fixed_integer(kFirstDataYear, kYearWidth) + " and < " +
                                 fixed_integer(LastDataYear, kYearWidth)});
  }
}

std::int32_t ask_last_year(ConsoleDialogue& console, std::int32_t FYOD,
                           std::int32_t LastDataYear) {
  for (;;) {
    const std::int32_t LYOD =
        ask_year(console, "        Enter the Last Year Of Data.", "        LYOD ==> ");
    if (FYOD <= LYOD && LYOD <= LastDataYear) {
      return LYOD;
    }
    console.write_lines(
        {"", "        *WARNING* LYOD must be >= " + fixed_integer(FYOD, kYearWidth) +
                 " and <= " + fixed_integer(LastDataYear, kYearWidth)});
  }
}

void introduce_years(ConsoleDialogue& console, std::int32_t LastDataYear) {
  console.write_lines({"", " Define the time span to select data from;",
                       " Valid years are " + fixed_integer(kFirstDataYear, kYearWidth) +
                           "-" + fixed_integer(LastDataYear, kYearWidth)});
}

bool confirm_years(ConsoleDialogue& console, const YearSpan& years) {
  console.write_lines({"", " Values Entered are:", "",
                       " yrmin= " + fixed_integer(years.FYOD, 5) +
                           " yrmax= " + fixed_integer(years.LYOD, 5),
                       ""});
  console.prompt(" Is this ok? [T]rue or [F]alse ==> ");
  return console.read_logical();
}

}  // namespace

YearSpan ask_year_span(ConsoleDialogue& console, std::int32_t LastDataYear) {
  for (;;) {
    introduce_years(console, LastDataYear);
    YearSpan years{};
    years.FYOD = ask_first_year(console, LastDataYear);
    years.LYOD = ask_last_year(console, years.FYOD, LastDataYear);
    const bool YearsOk = confirm_years(console, years);
    if (YearsOk) {
      return years;
    }
  }
}

}  // namespace veldmark
