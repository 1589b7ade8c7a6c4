#include "catalogue/variable_catalogue.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr int kNotFoundMargin = 9;

constexpr std::string_view kContinue = " Hit RETURN to continue";

constexpr std::string_view kOneDecimal = "RFMT=(1x,i4,12f6.1)";
constexpr std::string_view kTwoDecimals = "RFMT=(1x,i4,12f6.2)";

struct CatalogueRow {
  std::string_view menu_line;
  std::string_view DataFileName;
  std::string_view OutputPrefix;
  std::string_view TitleText;
  std::string_view RFMT;
};

// Kept on purpose: PET and WET have neither name nor units nor title, the prefix of
// precipitation says "ppt", and the scPDSI prefix ends in ".dat.".
constexpr std::array<CatalogueRow, kLastVariable> kVariableCatalogue{{
    {" [1] Precipitation             pre       mm      1901-2016",
     "cru_ts4.01.1901.2016.pre.dat.new", "CRUts4.01ppt.", "glo.pre. mm", kOneDecimal},
    {" [2] Mean temperature          tmp     degC*10   1901-2016",
     "cru_ts4.01.1901.2016.tmp.dat.new", "CRUts4.01tmp.", "glo.tmp. degC*10",
     kOneDecimal},
    {" [3] Diurnal Temp. Range       dtr     degC*10   1901-2016",
     "cru_ts4.01.1901.2016.dtr.dat.new", "CRUts4.01dtr.", "glo.dtr. degC*10",
     kOneDecimal},
    {" [4] Min.Temperature           tmn     degC*10   1901-2016",
     "cru_ts4.01.1901.2016.tmn.dat.new", "CRUts4.01tmn.", "glo.tmn. degC*10",
     kOneDecimal},
    {" [5] Max.Temperature           tmx     degC*10   1901-2016",
     "cru_ts4.01.1901.2016.tmx.dat.new", "CRUts4.01tmx.", "glo.tmx. degC*10",
     kOneDecimal},
    {" [6] Vapour pressure           vap     hPa *10   1901-2016",
     "cru_ts4.01.1901.2016.vap.dat.new", "CRUts4.01vap.", "glo.vap.hPa*10",
     kOneDecimal},
    {" [7] PET                                         1901-2016",
     "cru_ts4.01.1901.2016.pet.dat.new", "CRUts4.01pet.", "", kOneDecimal},
    {" [8] cloud cover               cld      %*10     1901-2016",
     "cru_ts4.01.1901.2016.cld.dat.new", "CRUts4.01cld.", "glo.cld. %*10", kOneDecimal},
    {" [9] frost day frequency*100   frs    days*100   1901-2016",
     "cru_ts4.01.1901.2016.frs.dat.new", "CRUts4.01frs.", "glo.frs.days*100",
     kTwoDecimals},
    {"[10] WET                                         1901-2016",
     "cru_ts4.01.1901.2016.wet.dat.new", "CRUts4.01wet.", "", kOneDecimal},
    {"[11] GLOBAL CRUts.3.25 based  scPDSI             1901-2016",
     "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new", "scPDSI.dat.", "scPDSI", kTwoDecimals},
}};

void report_missing_cru_file(ConsoleDialogue& console, const VariableEntry& entry) {
  console.blank_line();
  console.write_line(kMargin, "The file: " + entry.DataFileName + " Does not exist. ");
  console.write_line(kMargin, "Try a different variable.");
  console.pause(kContinue);
}

void report_missing_drought_file(ConsoleDialogue& console, const VariableEntry& entry) {
  console.blank_line();
  console.write_line(kMargin, "WARNING: the file: " + entry.DataFileName);
  console.write_line(kNotFoundMargin, "** NOT FOUND ** ");
  console.blank_line();
  console.write_line(kMargin, "NOTE: the data of van der Schrier et al., 2006");
  console.write_line(kMargin, "are not part of the public CRUTS3.0/1 distribution.");
  console.write_line(kMargin, "");
  console.write_line(kMargin,
                     "The 1.8GB file scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new ");
  console.write_line(kMargin, "must be in the current working directory before");
  console.write_line(kMargin,
                     "using this program to extract PDSI. To learn more open the ");
  console.write_line(kMargin,
                     "Tallow file that accompanyed this program distribution.");
  console.blank_line();
  console.pause(kContinue);
}

}  // namespace

RowOrder row_order(std::int32_t MenuChoice) {
  return MenuChoice == kDroughtIndex ? RowOrder::kNorthFirst : RowOrder::kSouthFirst;
}

VariableEntry catalogue_entry(std::int32_t MenuChoice) {
  const CatalogueRow& row =
      kVariableCatalogue.at(static_cast<std::size_t>(MenuChoice - kFirstVariable));
  return {text_field(row.OutputPrefix, kOutputPrefixWidth),
          text_field(row.TitleText, kTitleWidth),
          text_field(row.RFMT, kRowFormatTextWidth),
          text_field(row.DataFileName, kFileNameWidth)};
}

void write_menu_lines(ConsoleDialogue& console) {
  for (const CatalogueRow& row : kVariableCatalogue) {
    console.write_line(kMargin, row.menu_line);
  }
  console.write_line(kMargin, " [0] Exit Program");
}

void write_cru_citation(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(kMargin, "The proper citation for these data is:");
  console.blank_line();
  console.write_line(
      kMargin, "University of East Anglia Climatic Research Unit; Harris, I.C.; ");
  console.write_line(kMargin,
                     "Jones, P.D. (2017): CRU TS4.01: Climatic Research Unit (CRU) ");
  console.write_line(
      kMargin, "Time-Series (TS) version 4.01 of high-resolution gridded data of  ");
  console.write_line(kMargin,
                     "month-by-month variation in climate (Jan. 1901- Dec. 2016).  ");
  console.write_line(kMargin,
                     "Centre for Environmental Data Analysis, 04 December 2017. ");
  console.write_line(kMargin, "doi:10.5285/58a8802721c94c66ae45c3baa4d814d0");
  console.blank_line();
}

void write_drought_citation(ConsoleDialogue& console) {
  console.blank_line();
  console.write_line(kMargin, "The proper citation for these data is:");
  console.write_line(
      kMargin,
      "van der Schrier, G., J. Barichivich, K.R. Briffa and P.D. Jones (2013),");
  console.write_line(
      kMargin, "A scPDSI-based global data set of dry and wet spells for 1901-2009,");
  console.write_line(kMargin,
                     "J. Geophys. Res. Atmos. 118, 4025-4048, doi:10.1002/jgrd.50355");
  console.write_line(kMargin, "");
  console.write_line(kMargin, "and");
  console.write_line(kMargin, "");
  console.write_line(kMargin,
                     "Osborn, T.J., J. Barichivich, I. Harris, G. van der Schrier and "
                     "P.D. Jones (2017),");
  console.write_line(kMargin,
                     "Monitoring global drought using the self-calibrating Palmer "
                     "Drought Severity Index");
  console.write_line(
      kMargin,
      "[in \"State of the Climate in 2016\"], Bull. Amer. Meteor. Soc. 98, S32-S33,");
  console.write_line(kMargin, "doi:10.1175/2017BAMSStateoftheClimate.1");
}

std::optional<GridFile> open_data_file(ConsoleDialogue& console,
                                       std::int32_t MenuChoice,
                                       const VariableEntry& entry) {
  const std::string name(without_trailing_blanks(entry.DataFileName));
  std::error_code error;
  // A file that cannot be looked up isn't missing: opening it tells what is wrong.
  if (std::filesystem::exists(name, error) || error) {
    return GridFile(name);
  }
  if (MenuChoice == kDroughtIndex) {
    report_missing_drought_file(console, entry);
  } else {
    report_missing_cru_file(console, entry);
  }
  return std::nullopt;
}

}  // namespace veldmark
