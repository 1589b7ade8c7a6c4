#include "catalogue/catalogue_screens.h"

#include <array>
#include <string>
#include <string_view>

namespace veldmark {
namespace {

constexpr std::string_view kContinue = " Hit RETURN to continue";

constexpr auto kMenuHeading = std::to_array<std::string_view>({
    "",
    "    Select the Variable you want to extract:",
    "",
    "",
    "     Variable Type            Name    Units     Length",
});

constexpr auto kDroughtFileNotFound = std::to_array<std::string_view>({
    "         ** NOT FOUND ** ",
    "",
    " NOTE: the data of van der Schrier et al., 2006",
    " are not part of the public CRUTS3.0/1 distribution.",
    " ",
    " The 1.8GB file scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new ",
    " must be in the current working directory before",
    " using this program to extract PDSI. To learn more open the ",
    " Tallow file that accompanyed this program distribution.",
    "",
});

}  // namespace

void show_menu(ConsoleDialogue& console) {
  console.write_lines(kMenuHeading);
  for (const VariableEntry& entry : VariableCatalogue) {
    console.write_line(" " + std::string(entry.menu_line));
  }
  console.write_line("  [0] Exit Program");
  console.blank_line();
  console.prompt(" Enter a value from 0 to 11 ==> ");
}

void show_citation(ConsoleDialogue& console, const CitationBlock& citation) {
  console.write_lines(citation.lines);
  console.pause(kContinue);
}

void report_missing_file(ConsoleDialogue& console, const VariableEntry& entry) {
  const std::string name(entry.DataFileName.view());
  console.blank_line();
  if (entry.is_in_cru_ts_distribution) {
    console.write_line(" The file: " + name + " Does not exist. ");
    console.write_line(" Try a different variable.");
  } else {
    console.write_line(" WARNING: the file: " + name);
    console.write_lines(kDroughtFileNotFound);
  }
  console.pause(kContinue);
}

}  // namespace veldmark
