// Mutates a session by whole answers: replaces, removes, repeats or exchanges them, or
// repeats a part of the dialogue. Half of all mutations are left to the fuzzer, which
// changes bytes and inserts words of the dictionary.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size,
                                        std::size_t max_size);

namespace {

using Lines = std::vector<std::string>;

// Answers that are valid somewhere in the dialogue.
constexpr auto kAnswers = std::to_array<std::string_view>(
    {"",      "1",          "2",           "3",      "4",           "5",      "6",
     "7",     "8",          "9",           "10",     "11",          "0",      "12",
     "-3",    "T",          "F",           "y",      "n",           "1901",   "1902",
     "1903",  "1906",       "2016",        "2017",   "1900",        "51.0",   "50.0",
     "50.5",  "50.25",      "89.8",        "89.75",  "90.0",        "-90.0",  "-89.75",
     "-89.8", "0.0",        "-0.5",        "0.25",   "1.5",         "-1.5",   "179.75",
     "179.8", "180.0",      "-180.0",      "-179.8", "-179.5",      "-175.0", "175.0",
     "500.0", "1.e39",      "-1.D-60",     "a.b",    ".",           "45",     "x",
     "40",    "2147483647", "99999999999", "-1",     "-2147483648", " 5 ",    "1,2",
     "/",     ".T."});

Lines lines_of(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

std::string text_of(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class AnswerMutator {
 public:
  explicit AnswerMutator(unsigned seed) : random_(seed) {}

  bool leave_to_fuzzer() { return below(2) == 0; }

  void change(Lines& lines) {
    if (lines.empty()) lines.emplace_back();
    const auto place = lines.begin() + static_cast<std::ptrdiff_t>(below(lines.size()));
    switch (below(6)) {
      case 0:
      case 1:
        *place = kAnswers[below(kAnswers.size())];
        break;
      case 2:
        lines.insert(place, std::string(kAnswers[below(kAnswers.size())]));
        break;
      case 3:
        lines.erase(place);
        break;
      case 4:
        std::swap(*place, lines[below(lines.size())]);
        break;
      default:
        repeat_stretch(lines);
    }
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  // Repeats a part of the dialogue, at its end or anywhere.
  void repeat_stretch(Lines& lines) {
    const std::size_t begin = below(lines.size());
    const std::size_t size = 1 + below(lines.size() - begin);
    const auto first = lines.begin() + static_cast<std::ptrdiff_t>(begin);
    const Lines stretch(first, first + static_cast<std::ptrdiff_t>(size));
    const std::size_t to = below(2) == 0 ? lines.size() : below(lines.size());
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(to), stretch.begin(),
                 stretch.end());
  }

  std::minstd_rand random_;
};

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  AnswerMutator mutator(seed);
  if (mutator.leave_to_fuzzer()) return LLVMFuzzerMutate(data, size, max_size);
  Lines lines = lines_of({reinterpret_cast<const char*>(data), size});
  mutator.change(lines);
  const std::string text = text_of(lines);
  const std::size_t kept = std::min(text.size(), max_size);
  std::copy_n(text.begin(), kept, data);
  return kept;
}
