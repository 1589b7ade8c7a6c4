#include "extract/csv_table.h"

#include <csv.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <string_view>
#include <utility>

#include "extract/read_failure.h"
#include "util/failure.h"
#include "util/file_descriptor.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"
#include "util/piece_size.h"

namespace veldmark::extract {
namespace {

// What the parser's callbacks fill in.
struct Collected {
  std::vector<CsvRecord> records;
  std::vector<std::string> fields;
  bool out_of_memory = false;
};

// Runs the body of a callback. C code calls it, so no exception may leave it: running
// out of memory is recorded, and thrown after the parser has returned.
template <typename Action>
void without_throwing(Collected& collected, Action action) {
  try {
    action();
  } catch (const std::bad_alloc&) {
    collected.out_of_memory = true;
  }
}

extern "C" void take_field(void* text, std::size_t size, void* data) {
  auto& collected = *static_cast<Collected*>(data);
  without_throwing(collected, [&] {
    collected.fields.emplace_back(static_cast<const char*>(text), size);
  });
}

extern "C" void take_record(int /*end*/, void* data) {
  auto& collected = *static_cast<Collected*>(data);
  without_throwing(collected, [&] {
    collected.records.push_back(
        {collected.records.size() + 1, std::exchange(collected.fields, {})});
  });
}

extern "C" int never_blank(unsigned char /*character*/) { return 0; }

class Parser {
 public:
  explicit Parser(std::string name) : name_(std::move(name)) {
    csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI);
    csv_set_space_func(&parser_, never_blank);
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

// Waits for data from a pipe or a terminal. Returns the number of bytes read, 0 at the
// end of the file. Throws Interrupted after a signal.
std::size_t read_some(const std::string& name, const FileDescriptor& file, char* buffer,
                      std::size_t size) {
  pollfd until_readable{.fd = file.get(), .events = POLLIN, .revents = {}};
  for (;;) {
    InterruptWatch::throw_if_caught();
    if (::poll(&until_readable, 1, -1) == -1 && errno == EINTR) {
      continue;
    }
    const std::ptrdiff_t count = file.read(buffer, size);
    if (count >= 0) {
      return static_cast<std::size_t>(count);
    }
    if (errno != EAGAIN) {
      fail_to_read(name, errno);
    }
  }
}

// A file that is truncated while it is read may end inside a number.
void require_not_truncated(const std::string& name, std::size_t size,
                           const struct stat& opened) {
  if (S_ISREG(opened.st_mode) && static_cast<std::int64_t>(size) < opened.st_size) {
    fail_to_read(name, 0);
  }
}

std::string read_whole_file(const std::string& name) {
  // O_NONBLOCK: opening a pipe must not wait for its writer.
  const FileDescriptor file(name, O_RDONLY | O_NONBLOCK);
  struct stat opened {};
  if (!file.is_open() || ::fstat(file.get(), &opened) != 0) {
    fail_to_read(name, errno);
  }
  std::string content;
  std::size_t size = 0;
  std::size_t count = 0;
  do {
    content.resize(size + kPieceSize);
    count = read_some(name, file, content.data() + size, kPieceSize);
    size += count;
  } while (count != 0);
  require_not_truncated(name, size, opened);
  content.resize(size);
  return content;
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
