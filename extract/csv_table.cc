#include "extract/csv_table.h"

#include <csv.h>
#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <string_view>
#include <system_error>

#include "util/failure.h"
#include "util/file_descriptor.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"

namespace veldmark::extract {
namespace {

// What the parser's callbacks fill in. They are called from C, so nothing may be thrown
// through them: running out of memory is noted and told afterwards.
struct Collected {
  std::vector<CsvRecord> records;
  std::vector<std::string> fields;
  bool out_of_memory = false;
};

extern "C" void take_field(void* text, std::size_t size, void* data) {
  auto* collected = static_cast<Collected*>(data);
  try {
    collected->fields.emplace_back(static_cast<const char*>(text), size);
  } catch (const std::bad_alloc&) {
    collected->out_of_memory = true;
  }
}

extern "C" void take_record(int /*end*/, void* data) {
  auto* collected = static_cast<Collected*>(data);
  try {
    collected->records.push_back(
        {collected->records.size() + 1, std::move(collected->fields)});
    collected->fields = {};
  } catch (const std::bad_alloc&) {
    collected->out_of_memory = true;
  }
}

extern "C" int is_no_blank(unsigned char /*character*/) { return 0; }

class Parser {
 public:
  explicit Parser(std::string name) : name_(std::move(name)) {
    csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI);
    csv_set_space_func(&parser_, is_no_blank);
  }
  ~Parser() { csv_free(&parser_); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;
  Parser(Parser&&) = delete;
  Parser& operator=(Parser&&) = delete;

  void parse(std::string_view text) {
    const std::size_t parsed = csv_parse(&parser_, text.data(), text.size(), take_field,
                                         take_record, &collected_);
    check(parsed == text.size(),
          "a quote stands inside a field that has none around it");
  }

  std::vector<CsvRecord> finish() {
    check(csv_fini(&parser_, take_field, take_record, &collected_) == 0,
          "a quote is never closed");
    return std::move(collected_.records);
  }

 private:
  void check(bool good, std::string_view fault) {
    if (collected_.out_of_memory || csv_error(&parser_) == CSV_ENOMEM) {
      throw std::bad_alloc();
    }
    if (!good) {
      throw Failure(in_quotes(name_) + ": record " +
                    std::to_string(collected_.records.size() + 1) + ": " +
                    std::string(fault));
    }
  }

  std::string name_;
  csv_parser parser_{};
  Collected collected_;
};

[[noreturn]] void fail_to_read(const std::string& name) {
  throw Failure("cannot read " + in_quotes(name) + ": " +
                std::generic_category().message(errno));
}

// Waits for what a pipe or a terminal has to give, until a signal asks to stop.
void wait_for_text(const FileDescriptor& file) {
  pollfd until_readable{.fd = file.get(), .events = POLLIN, .revents = 0};
  do {
    InterruptWatch::throw_if_caught();
  } while (::poll(&until_readable, 1, -1) < 0 && errno == EINTR);
}

std::string read_whole_file(const std::string& name) {
  constexpr std::size_t kPiece = std::size_t{256} * 1024;
  // A pipe is opened whether somebody writes to it already or not.
  const FileDescriptor file(name, O_RDONLY | O_NONBLOCK);
  if (!file.is_open()) {
    fail_to_read(name);
  }
  std::string content;
  for (;;) {
    const std::size_t size = content.size();
    content.resize(size + kPiece);
    wait_for_text(file);
    const std::ptrdiff_t count = file.read(content.data() + size, kPiece);
    if (count < 0) {
      fail_to_read(name);
    }
    content.resize(size + static_cast<std::size_t>(count));
    if (count == 0) {
      return content;
    }
  }
}

}  // namespace

std::vector<CsvRecord> read_csv(const std::string& name) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  const std::string content = read_whole_file(name);
  std::string_view text = content;
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  Parser parser(name);
  parser.parse(text);
  return parser.finish();
}

}  // namespace veldmark::extract
