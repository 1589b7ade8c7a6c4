#include "driver/screens.h"

#include <array>
#include <string>
#include <string_view>

#include "catalogue/variable_catalogue.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr int kMenuMargin = 4;
constexpr int kListMargin = 12;

// The variables in the order in which the file lists run.
constexpr std::array<std::string_view, 10> kListedVariables{
    "tmn", "pet", "tmx", "wet", "pre", "cld", "vap", "tmp", "dtr", "frs"};

void list_files(ConsoleDialogue& console, std::string_view before,
                std::string_view after) {
  for (const std::string_view variable : kListedVariables) {
    console.write_line(
        kListMargin, std::string(before) + std::string(variable) + std::string(after));
  }
  console.blank_line();
}

void show_banner(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(kMargin, "Program Veldmark_v24 (vmk) 10/2018");
  console.blank_line();
  console.blank_line();
  console.write_line(kMargin, "This program serves the gridded 0.5x0.5 degree ");
  console.write_line(kMargin, "LAND AREA ONLY CRU TS4.01 data sets ");
  console.write_line(kMargin, "put together by the Climatic Research Unit, ");
  console.write_line(kMargin, "University of East Anglia, U.K, July 2008. ");
  console.blank_line();
  console.write_line(kMargin, "Last Update - 10/2018 -VMK:");
  console.blank_line();
  console.write_line(kMargin, "CRU TS_4.01 RAW data file list:");
  console.blank_line();
  list_files(console, "cru_ts_4.01.1901.2016.", ".dat");
}

// Kept on purpose: the doubled "of", "proceedure", and the example with its years,
// version and open parenthesis are the program's own wording.
void explain_condensing(ConsoleDialogue& console) {
  const auto line = [&](std::string_view text) { console.write_line(kMargin, text); };
  console.blank_line();
  line("The original uncompressed TS4.01 files from CRU are quite large (2.71GB).");
  line("Therefore, to use this server program you must first reduce the original");
  line("file size to 1.7GB by using the program Tersify provided with this");
  line("distribution. Tersify simply removes the white space (blanks) from the raw");
  line("TS3.1 files and in so doing reduces their size by 1GB.");
  console.blank_line();
  line("The required input for program Tersify is a simple list file of all the");
  line("original decompressed CRU data file names one name/line, (as shown above). ");
  line("Save this list in a text file then launch program Tersify and enter the ");
  line("newly created list file name.  Tersify will then create a condensed copy of ");
  line("of each original file with a \".new\" extension appended to the name:");
  line("(e.g., cru_ts4.01.1901.2018.vap.dat > cru_ts_3_10.1901.2018.vap.dat.new");
  line("This proceedure takes time depending on the number of files being ");
  line("reformatted in a single run of the program.");
}

void show_expected_files(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(
      kMargin,
      "This program expects to find one or all of the following file names in the  ");
  console.write_line(kMargin, "current program directory in order to continue.");
  console.blank_line();
  list_files(console, "cru_ts4.01.1901.2016.", ".dat.new");
  console.blank_line();
  console.write_line(kMargin, "Good Luck.");
  console.write_line(kMargin, "VMK-Arnhem, 2011");
  console.blank_line();
}

}  // namespace

void show_introduction(ConsoleDialogue& console) {
  show_banner(console);
  console.pause(kHitReturnToContinue);
  explain_condensing(console);
  show_expected_files(console);
}

void show_menu(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(kMenuMargin, "Select the Variable you want to extract:");
  console.blank_line();
  console.blank_line();
  console.write_line(kMargin, "    Variable Type            Name    Units     Length");
  write_menu_lines(console);
  console.blank_line();
  console.prompt(kMargin, "Enter a value from 0 to 11 ==> ");
}

}  // namespace veldmark
