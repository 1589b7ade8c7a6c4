// A plain definition of a table of sites: a second, obvious parser.

#ifndef VELDMARK_TESTS_FUZZ_PLAIN_SITES_H_
#define VELDMARK_TESTS_FUZZ_PLAIN_SITES_H_

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::fuzz {

using PlainRecord = std::vector<std::string>;

// Parses a CSV text, a character at a time.
class PlainCsv {
 public:
  explicit PlainCsv(std::string_view text) : text_(text) {
    if (text_.starts_with("\xEF\xBB\xBF")) text_.remove_prefix(3);
  }

  // Returns the records without empty lines; nullopt after a misplaced quote.
  std::optional<std::vector<PlainRecord>> records() {
    while (!text_.empty()) {
      if (at_line_end()) {
        text_.remove_prefix(1);
        continue;
      }
      std::optional<PlainRecord> record = next_record();
      if (!record) return std::nullopt;
      records_.push_back(*record);
    }
    return records_;
  }

 private:
  [[nodiscard]] bool at_line_end() const {
    return text_.front() == '\n' || text_.front() == '\r';
  }

  [[nodiscard]] bool at_end_of_field() const {
    return text_.empty() || text_.front() == ',' || at_line_end();
  }

  std::optional<PlainRecord> next_record() {
    PlainRecord record;
    for (;;) {
      std::optional<std::string> field =
          text_.starts_with('"') ? quoted_field() : plain_field();
      if (!field) return std::nullopt;
      record.push_back(*field);
      if (text_.empty() || at_line_end()) return record;
      text_.remove_prefix(1);  // the comma
    }
  }

  std::optional<std::string> plain_field() {
    std::string field;
    while (!at_end_of_field()) {
      if (text_.front() == '"') return std::nullopt;
      field += text_.front();
      text_.remove_prefix(1);
    }
    return field;
  }

  std::optional<std::string> quoted_field() {
    std::string field;
    text_.remove_prefix(1);
    for (;;) {
      const std::size_t quote = text_.find('"');
      if (quote == std::string_view::npos) return std::nullopt;
      field += text_.substr(0, quote);
      text_.remove_prefix(quote + 1);
      if (!text_.starts_with('"')) break;
      field += '"';
      text_.remove_prefix(1);
    }
    if (!at_end_of_field()) return std::nullopt;
    return field;
  }

  std::string_view text_;
  std::vector<PlainRecord> records_;
};

inline std::string plain_trimmed(std::string text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && is_blank(text.back())) text.pop_back();
  while (!text.empty() && is_blank(text.front())) text.erase(0, 1);
  return text;
}

// Returns the column with the first of the titles that occurs; nullopt for none.
inline std::optional<std::size_t> plain_column(
    const PlainRecord& header, std::initializer_list<const char*> titles) {
  for (const char* title : titles) {
    for (std::size_t i = 0; i < header.size(); ++i) {
      std::string heading = plain_trimmed(header[i]);
      for (char& c : heading) {
        if ('A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
      }
      if (heading == title) return i;
    }
  }
  return std::nullopt;
}

// Returns a number of degrees, as in 60.25, -1.5e1 or +7; nullopt for other texts.
inline std::optional<double> plain_degrees(const std::string& field) {
  const std::string text = plain_trimmed(field);
  const bool has_sign = text.starts_with('+') || text.starts_with('-');
  const std::string number = text.substr(has_sign ? 1 : 0);
  if (number.find_first_not_of("0123456789.eE+-") != std::string::npos ||
      number.find_first_of("0123456789.") != 0) {
    return std::nullopt;
  }
  errno = 0;
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  // Subnormal numbers set ERANGE as well, and are valid.
  const bool out_of_range = errno != 0 && (value == 0 || std::isinf(value));
  if (end != text.c_str() + text.size() || out_of_range) return std::nullopt;
  return value;
}

struct PlainSite {
  double latitude;
  double longitude;  // -180..180
  std::string title;
};

struct PlainSites {
  std::vector<PlainRecord> records;  // the header first
  std::vector<PlainSite> sites;
};

inline std::optional<PlainSite> plain_site(
    const PlainRecord& record, std::size_t latitude_column,
    std::size_t longitude_column, const std::optional<std::size_t>& name_column) {
  const std::optional<double> latitude = plain_degrees(record[latitude_column]);
  const std::optional<double> longitude = plain_degrees(record[longitude_column]);
  if (!latitude || !longitude || std::abs(*latitude) > 90 || *longitude < -180 ||
      *longitude > 360) {
    return std::nullopt;
  }
  const double signed_longitude = *longitude > 180 ? *longitude - 360 : *longitude;
  PlainSite site{*latitude, signed_longitude, ""};
  if (name_column && !plain_trimmed(record[*name_column]).empty()) {
    site.title = record[*name_column];
  }
  return site;
}

// Parses a table. Returns nullopt if it is invalid.
inline std::optional<PlainSites> plain_sites(std::string_view text) {
  const auto records = PlainCsv(text).records();
  if (!records || records->size() < 2) return std::nullopt;
  const PlainRecord& header = records->front();
  const auto latitude = plain_column(header, {"lat", "latitude"});
  const auto longitude = plain_column(header, {"lon", "long", "lng", "longitude"});
  const auto name = plain_column(header, {"name", "site", "id"});
  if (!latitude || !longitude) return std::nullopt;
  PlainSites table{*records, {}};
  for (std::size_t i = 1; i < records->size(); ++i) {
    if ((*records)[i].size() != header.size()) return std::nullopt;
    const auto site = plain_site((*records)[i], *latitude, *longitude, name);
    if (!site) return std::nullopt;
    table.sites.push_back(*site);
    if (table.sites.back().title.empty()) {
      table.sites.back().title = "site " + std::to_string(i);
    }
  }
  return table;
}

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_PLAIN_SITES_H_
