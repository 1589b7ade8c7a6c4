#include "catalogue/variable_catalogue.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace veldmark {
namespace {

using std::string_view;

constexpr TextField<65> kOneDecimal("RFMT=(1x,i4,12f6.1)");
constexpr TextField<65> kTwoDecimals("RFMT=(1x,i4,12f6.2)");

constexpr std::array<string_view, 10> kCruTsLines{
    "",
    " The proper citation for these data is:",
    "",
    " University of East Anglia Climatic Research Unit; Harris, I.C.; ",
    " Jones, P.D. (2017): CRU TS4.01: Climatic Research Unit (CRU) ",
    " Time-Series (TS) version 4.01 of high-resolution gridded data of  ",
    " month-by-month variation in climate (Jan. 1901- Dec. 2016).  ",
    " Centre for Environmental Data Analysis, 04 December 2017. ",
    " doi:10.5285/58a8802721c94c66ae45c3baa4d814d0",
    ""};

constexpr std::array<string_view, 12> kDroughtLines{
    "",
    " The proper citation for these data is:",
    " van der Schrier, G., J. Barichivich, K.R. Briffa and P.D. Jones (2013),",
    " A scPDSI-based global data set of dry and wet spells for 1901-2009,",
    " J. Geophys. Res. Atmos. 118, 4025-4048, doi:10.1002/jgrd.50355",
    " ",
    " and",
    " ",
    " Osborn, T.J., J. Barichivich, I. Harris, G. van der Schrier and P.D. Jones "
    "(2017),",
    " Monitoring global drought using the self-calibrating Palmer Drought Severity "
    "Index",
    " [in \"State of the Climate in 2016\"], Bull. Amer. Meteor. Soc. 98, S32-S33,",
    " doi:10.1175/2017BAMSStateoftheClimate.1"};

// Returns `entry` with what all CRU TS data sets have in common.
constexpr VariableEntry cru_ts(VariableEntry entry) {
  entry.MissingCode = kCruTsMissingCode;
  entry.citation = {kCruTsLines};
  entry.row_order = RowOrder::kSouthFirst;
  return entry;
}

// Kept on purpose: titles-of-eight-data-sets. Menu and files show no name, units or
// title for PET and WET; the prefix of precipitation is "ppt"; the prefix of scPDSI
// ends in
// ".dat.".
constexpr std::array<VariableEntry, kVariableCount> kRows{
    cru_ts({.menu_number = 1,
            .menu_line = " [1] Precipitation             pre       mm      1901-2016",
            .short_name = "pre",
            .units = "mm",
            .OutputPrefix = "CRUts4.01ppt.",
            .TitleText = "glo.pre. mm",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.pre.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "mm/month",
            .long_name = "precipitation"}),
    cru_ts({.menu_number = 2,
            .menu_line = " [2] Mean temperature          tmp     degC*10   1901-2016",
            .short_name = "tmp",
            .units = "degC*10",
            .OutputPrefix = "CRUts4.01tmp.",
            .TitleText = "glo.tmp. degC*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.tmp.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "degC",
            .long_name = "mean temperature"}),
    cru_ts({.menu_number = 3,
            .menu_line = " [3] Diurnal Temp. Range       dtr     degC*10   1901-2016",
            .short_name = "dtr",
            .units = "degC*10",
            .OutputPrefix = "CRUts4.01dtr.",
            .TitleText = "glo.dtr. degC*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.dtr.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "degC",
            .long_name = "diurnal temperature range"}),
    cru_ts({.menu_number = 4,
            .menu_line = " [4] Min.Temperature           tmn     degC*10   1901-2016",
            .short_name = "tmn",
            .units = "degC*10",
            .OutputPrefix = "CRUts4.01tmn.",
            .TitleText = "glo.tmn. degC*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.tmn.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "degC",
            .long_name = "mean daily minimum temperature"}),
    cru_ts({.menu_number = 5,
            .menu_line = " [5] Max.Temperature           tmx     degC*10   1901-2016",
            .short_name = "tmx",
            .units = "degC*10",
            .OutputPrefix = "CRUts4.01tmx.",
            .TitleText = "glo.tmx. degC*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.tmx.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "degC",
            .long_name = "mean daily maximum temperature"}),
    cru_ts({.menu_number = 6,
            .menu_line = " [6] Vapour pressure           vap     hPa *10   1901-2016",
            .short_name = "vap",
            .units = "hPa *10",
            .OutputPrefix = "CRUts4.01vap.",
            .TitleText = "glo.vap.hPa*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.vap.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "hPa",
            .long_name = "vapour pressure"}),
    cru_ts({.menu_number = 7,
            .menu_line = " [7] PET                                         1901-2016",
            .short_name = "pet",
            .OutputPrefix = "CRUts4.01pet.",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.pet.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "mm/day",
            .long_name = "potential evapotranspiration"}),
    cru_ts({.menu_number = 8,
            .menu_line = " [8] cloud cover               cld      %*10     1901-2016",
            .short_name = "cld",
            .units = "%*10",
            .OutputPrefix = "CRUts4.01cld.",
            .TitleText = "glo.cld. %*10",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.cld.dat.new",
            .stored_per_unit = 10,
            .physical_unit = "percent",
            .long_name = "cloud cover"}),
    cru_ts({.menu_number = 9,
            .menu_line = " [9] frost day frequency*100   frs    days*100   1901-2016",
            .short_name = "frs",
            .units = "days*100",
            .OutputPrefix = "CRUts4.01frs.",
            .TitleText = "glo.frs.days*100",
            .RFMT = kTwoDecimals,
            .DataFileName = "cru_ts4.01.1901.2016.frs.dat.new",
            .SampleScale = 0.01F,
            .stored_per_unit = 100,
            .physical_unit = "days/month",
            .long_name = "frost days"}),
    cru_ts({.menu_number = 10,
            .menu_line = "[10] WET                                         1901-2016",
            .short_name = "wet",
            .OutputPrefix = "CRUts4.01wet.",
            .RFMT = kOneDecimal,
            .DataFileName = "cru_ts4.01.1901.2016.wet.dat.new",
            .stored_per_unit = 100,
            .physical_unit = "days/month",
            .long_name = "wet days"}),
    VariableEntry{
        .menu_number = 11,
        .menu_line = "[11] GLOBAL CRUts.3.25 based  scPDSI             1901-2016",
        .short_name = "scPDSI",
        .OutputPrefix = "scPDSI.dat.",
        .TitleText = "scPDSI",
        .RFMT = kTwoDecimals,
        .DataFileName = "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new",
        .MissingCode = -9999,
        .citation = {kDroughtLines},
        .row_order = RowOrder::kNorthFirst,
        .min_lon_test = MinLonTest::kNone,
        .is_in_cru_ts_distribution = false,
        .stored_per_unit = 100,
        .physical_unit = "1",
        .long_name = "self-calibrating Palmer drought severity index"}};

// Returns whether `text` contains the first and last year, with `separator` in between.
constexpr bool holds_years(string_view text, char separator, const YearSpan& years) {
  constexpr std::size_t kYearWidth = 4;
  constexpr std::size_t kSpanWidth = 9;  // two years and the separator
  constexpr std::int32_t kTen = 10;
  std::array<char, kSpanWidth> span{};
  span[kYearWidth] = separator;
  std::int32_t first = years.FYOD;
  std::int32_t last = years.LYOD;
  for (std::size_t i = kYearWidth; i > 0; --i, first /= kTen, last /= kTen) {
    span[i - 1] = static_cast<char>('0' + first % kTen);
    span[kYearWidth + i] = static_cast<char>('0' + last % kTen);
  }
  return text.find(string_view(span.data(), span.size())) != string_view::npos;
}

// Returns whether the rows are in the order of their menu numbers, their texts contain
// their years, and their file names are short enough.
constexpr bool is_consistent(const std::array<VariableEntry, kVariableCount>& rows) {
  std::int32_t number = 0;
  for (const VariableEntry& row : rows) {
    ++number;
    if (row.menu_number != number || !holds_years(row.menu_line, '-', row.years) ||
        !holds_years(row.DataFileName.view(), '.', row.years) ||
        row.DataFileName.view()[kMaxDataFileNameLength] != ' ') {
      return false;
    }
  }
  return true;
}

static_assert(is_consistent(kRows));

}  // namespace

constexpr std::array<VariableEntry, kVariableCount> VariableCatalogue = kRows;
constexpr CitationBlock kCruTsCitation{kCruTsLines};

const VariableEntry* find_variable(std::int32_t MenuChoice) {
  if (MenuChoice < 1 || MenuChoice > static_cast<std::int32_t>(kVariableCount)) {
    return nullptr;
  }
  return &VariableCatalogue[static_cast<std::size_t>(MenuChoice - 1)];
}

bool data_file_exists(const VariableEntry& entry) {
  std::error_code error;
  return std::filesystem::exists(entry.DataFileName.trimmed(), error) || error;
}

}  // namespace veldmark
