#include "driver/introduction_screens.h"

#include <array>
#include <string_view>

namespace veldmark {
namespace {

// Kept on purpose: exit-at-first-menu. The names of the raw files have "ts_4.01", those
// of the condensed files "ts4.01".
constexpr auto kBanner = std::to_array<std::string_view>({
    "",
    " Program Veldmark_v24 (vmk) 10/2018",
    "",
    "",
    " This program serves the gridded 0.5x0.5 degree ",
    " LAND AREA ONLY CRU TS4.01 data sets ",
    " put together by the Climatic Research Unit, ",
    " University of East Anglia, U.K, July 2008. ",
    "",
    " Last Update - 10/2018 -VMK:",
    "",
    " CRU TS_4.01 RAW data file list:",
    "",
    "            cru_ts_4.01.1901.2016.tmn.dat",
    "            cru_ts_4.01.1901.2016.pet.dat",
    "            cru_ts_4.01.1901.2016.tmx.dat",
    "            cru_ts_4.01.1901.2016.wet.dat",
    "            cru_ts_4.01.1901.2016.pre.dat",
    "            cru_ts_4.01.1901.2016.cld.dat",
    "            cru_ts_4.01.1901.2016.vap.dat",
    "            cru_ts_4.01.1901.2016.tmp.dat",
    "            cru_ts_4.01.1901.2016.dtr.dat",
    "            cru_ts_4.01.1901.2016.frs.dat",
    "",
});

// Kept on purpose: exit-at-first-menu. The doubled "of", "proceedure", and the unclosed
// parenthesis, version and years of the example are part of the screen.
constexpr auto kCondensing = std::to_array<std::string_view>({
    "",
    " The original uncompressed TS4.01 files from CRU are quite large (2.71GB).",
    " Therefore, to use this server program you must first reduce the original",
    " file size to 1.7GB by using the program Tersify provided with this",
    " distribution. Tersify simply removes the white space (blanks) from the raw",
    " TS3.1 files and in so doing reduces their size by 1GB.",
    "",
    " The required input for program Tersify is a simple list file of all the",
    " original decompressed CRU data file names one name/line, (as shown above). ",
    " Save this list in a text file then launch program Tersify and enter the ",
    " newly created list file name.  Tersify will then create a condensed copy of ",
    " of each original file with a \".new\" extension appended to the name:",
    " (e.g., cru_ts4.01.1901.2018.vap.dat > cru_ts_3_10.1901.2018.vap.dat.new",
    " This proceedure takes time depending on the number of files being ",
    " reformatted in a single run of the program.",
});

constexpr auto kExpectedFiles = std::to_array<std::string_view>({
    "",
    " This program expects to find one or all of the following file names in the  ",
    " current program directory in order to continue.",
    "",
    "            cru_ts4.01.1901.2016.tmn.dat.new",
    "            cru_ts4.01.1901.2016.pet.dat.new",
    "            cru_ts4.01.1901.2016.tmx.dat.new",
    "            cru_ts4.01.1901.2016.wet.dat.new",
    "            cru_ts4.01.1901.2016.pre.dat.new",
    "            cru_ts4.01.1901.2016.cld.dat.new",
    "            cru_ts4.01.1901.2016.vap.dat.new",
    "            cru_ts4.01.1901.2016.tmp.dat.new",
    "            cru_ts4.01.1901.2016.dtr.dat.new",
    "            cru_ts4.01.1901.2016.frs.dat.new",
    "",
    "",
    " Good Luck.",
    " VMK-Arnhem, 2011",
    "",
});

}  // namespace

void show_introduction(ConsoleDialogue& console) {
  console.write_lines(kBanner);
  console.pause(kHitReturnToContinue);
  console.write_lines(kCondensing);
  console.write_lines(kExpectedFiles);
}

}  // namespace veldmark
