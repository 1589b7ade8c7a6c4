// Reads a CSV file into records of fields.

#ifndef VELDMARK_EXTRACT_CSV_TABLE_H_
#define VELDMARK_EXTRACT_CSV_TABLE_H_

#include <cstddef>
#include <string>
#include <vector>

namespace veldmark::extract {

struct CsvRecord {
  std::size_t number = 0;  // counted from 1, empty lines not counted
  std::vector<std::string> fields;
};

// Reads the file `name`: commas between fields, fields with commas, quotes or line ends
// in double quotes. A byte order mark at the start is skipped, and so are empty lines.
// Blanks around unquoted fields are kept.
// Throws Failure for a file that can't be read, a stray quote, or a quote that is never
// closed.
std::vector<CsvRecord> read_csv(const std::string& name);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CSV_TABLE_H_
