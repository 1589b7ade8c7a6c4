// Compares the readers and writers of single numbers and texts with plain definitions.
//
// The input is text: it is read as a field, as a value, as a console answer of every
// kind. Its first bytes are a 32-bit real and an integer to write as well.

#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "console/console_dialogue.h"
#include "fuzz_input.h"
#include "reached.h"
#include "require.h"
#include "support/plain/fields.h"
#include "support/plain/texts.h"
#include "util/fixed_field.h"
#include "util/free_form.h"
#include "util/stringclean.h"
#include "util/text_field.h"

namespace veldmark::fuzz {
namespace {

// Splits a decimal number, character by character; nullopt for any other text.
struct Decimal {
  std::string sign;
  std::string whole;
  std::string fraction;
  std::string exponent;  // with its sign

  // In the form that strict number readers accept.
  [[nodiscard]] std::string text() const {
    const std::string minus = sign == "-" ? "-" : "";
    return minus + whole + "." + fraction + "0" +
           (exponent.empty() ? "" : "e" + exponent);
  }
};

std::string take_digits(std::string_view& text) {
  std::string digits;
  for (; !text.empty() && plain::only_digits(text.substr(0, 1));
       text.remove_prefix(1)) {
    digits += text.front();
  }
  return digits;
}

std::string take_sign(std::string_view& text) {
  if (!text.starts_with('+') && !text.starts_with('-')) return "";
  const std::string sign(text.substr(0, 1));
  text.remove_prefix(1);
  return sign;
}

std::optional<Decimal> plain_decimal(std::string_view text) {
  Decimal decimal;
  decimal.sign = take_sign(text);
  decimal.whole = take_digits(text);
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    decimal.fraction = take_digits(text);
  }
  if (decimal.whole.empty() && decimal.fraction.empty()) return std::nullopt;
  if (text.empty()) return decimal;
  if (std::string_view("EeDd").find(text.front()) == std::string_view::npos) {
    return std::nullopt;
  }
  text.remove_prefix(1);
  const std::string sign = take_sign(text);
  const std::string digits = take_digits(text);
  if (digits.empty() || !text.empty()) return std::nullopt;
  decimal.exponent = (sign == "-" ? "-" : "") + digits;
  return decimal;
}

void check_real(std::string_view value) {
  const std::optional<float> real = parse_real(value);
  const std::optional<Decimal> decimal = plain_decimal(value);
  require(real.has_value() == decimal.has_value(), "a real is a decimal", value);
  if (!real) return;
  require(!std::isnan(*real), "no decimal is NaN", value);
  require(std::signbit(*real) == (decimal->sign == "-"), "a real keeps its sign",
          value);
  const std::string text = decimal->text();
  float expected = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), expected);
  if (result.ec == std::errc::result_out_of_range) {
    const float smallest = std::numeric_limits<float>::min();
    require(std::isinf(*real) || std::fabs(*real) < smallest,
            "beyond the range of reals there are infinity and next to nothing", value);
    return;
  }
  require(result.ec == std::errc() && result.ptr == text.data() + text.size(),
          "the plain definition reads a decimal to its end", text);
  require(std::bit_cast<std::uint32_t>(*real) == std::bit_cast<std::uint32_t>(expected),
          "a real is the nearest one", value);
}

void check_texts(std::string_view text) {
  const std::string value = plain::first_value(text);
  require(first_value(text) == value, "the first value ends at a separator", text);
  require(parse_logical(value) == plain::is_true(value), "true begins with a T", text);
  for (const std::size_t width : {0U, 1U, 8U, 65U}) {
    require(text_field(text, width) == plain::text_field(text, width),
            "a field has its width", text);
  }
  std::string_view cut = text;
  while (cut.ends_with(' ')) cut.remove_suffix(1);
  require(without_trailing_blanks(text) == cut, "the last blanks go", text);
}

void check_stringclean(const std::string& text) {
  std::string cleaned = text;
  stringclean(cleaned, static_cast<std::int32_t>(cleaned.size()));
  require(cleaned == plain::without_inner_blanks(text, text.size()),
          "blanks are closed up", text);
}

void check_written_real(float value, int width, int decimals) {
  const std::string field = fixed_real(value, width, decimals);
  std::string text;
  if (std::isnan(value)) {
    text = "NaN";
  } else if (std::isinf(value)) {
    text = value < 0 ? "-Inf" : "Inf";
  } else {
    char buffer[128];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value,
                                   std::chars_format::fixed, decimals);
    text.assign(buffer, end.ptr);
  }
  require(field == plain::in_columns(text, static_cast<std::size_t>(width)),
          "a real stands in its field", field);

  const std::string free = free_form_real(value);
  require(free.size() == 16 && free.starts_with(' '), "a record item has 16 columns",
          free);
  const std::string item = free.substr(free.rfind(' ') + 1);
  // Too many digits for the columns: only with a minus.
  const bool may_not_fit = value <= -1e12F && item == std::string(15, '*');
  if (std::isfinite(value) && !may_not_fit) {
    const float back = std::strtof(item.c_str(), nullptr);
    require(std::bit_cast<std::uint32_t>(back) == std::bit_cast<std::uint32_t>(value),
            "a record item reads back", free);
    require(item.find('.') != std::string::npos, "a record item has a point", free);
  }
}

void check_written_integer(std::int32_t value, int width) {
  require(fixed_integer(value, width) ==
              plain::in_columns(std::to_string(value), static_cast<std::size_t>(width)),
          "an integer stands in its field", std::to_string(value));
  require(plain::integer(fixed_integer(value, 11)) == value, "an integer reads back",
          std::to_string(value));
}

// One answer of each kind is read from the same console input.
class Answers {
 public:
  explicit Answers(const std::string& typed) : typed_(typed) {}

  // The result of an answer: its text, or the end of the run.
  std::string read(const std::function<std::string(ConsoleDialogue&)>& ask) const {
    std::istringstream input(typed_);
    std::ostringstream output;
    ConsoleDialogue console(input, output, [](const std::string&) {});
    try {
      return ask(console);
    } catch (const RunEnd& end) {
      require(end.status() == 255, "a bad answer ends with status 255", typed_);
      const bool ended = end.report().find(kPastEndOfFile) != std::string::npos;
      return ended ? "END" : "BAD";
    }
  }

 private:
  const std::string& typed_;
};

std::string shown(const std::optional<std::int32_t>& value) {
  return value ? std::to_string(*value) : "BAD";
}

// Lines without a value are skipped.
std::string plain_free_integer(std::string_view typed) {
  while (const std::optional<plain::Line> line = plain::take_line(typed)) {
    const std::string value = plain::first_value(line->text);
    if (!value.empty()) return shown(plain::integer(value));
  }
  return "END";
}

void check_answers(const std::string& typed) {
  const Answers answers(typed);
  std::string_view rest = typed;
  const std::optional<plain::Line> line = plain::take_line(rest);
  const auto expect = [&](const std::string& answer, const std::string& expected) {
    require(answer == (line ? expected : "END"), "an answer is its line's", typed);
  };
  const std::string text(line ? line->text : "");
  reached(line ? "lines answered" : "ends of the input");
  for (const std::size_t width : {2U, 4U}) {
    expect(answers.read([&](ConsoleDialogue& console) {
      return std::to_string(console.read_fixed_integer(width));
    }),
           shown(plain::integer(plain::text_field(text, width))));
  }
  expect(answers.read([](ConsoleDialogue& console) { return console.read_text(8); }),
         plain::text_field(text, 8));
  const std::string value = plain::first_value(text);
  expect(answers.read([](ConsoleDialogue& console) {
    return std::string(console.read_logical() ? "true" : "false");
  }),
         plain::is_true(value) ? "true" : "false");
  expect(answers.read([](ConsoleDialogue& console) {
    return std::string(1, console.read_free_character());
  }),
         value.empty() ? " " : value.substr(0, 1));
  require(answers.read([](ConsoleDialogue& console) {
    return std::to_string(console.read_free_integer());
  }) == plain_free_integer(typed),
          "a free-form integer is the first value", typed);
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  std::uint32_t bits = 0;
  for (int i = 0; i < 4; ++i) bits = bits * 256 + input.byte();
  const int width = input.between(1, 20);
  check_written_real(std::bit_cast<float>(bits), width, input.between(0, 6));
  check_written_integer(std::bit_cast<std::int32_t>(bits), width);

  const std::string text = input.rest();
  reached(veldmark::plain::integer(text) ? "integers" : "texts that are no integer");
  veldmark::fuzz::require(
      veldmark::parse_integer(text) == veldmark::plain::integer(text),
      "an integer is its digits", text);
  check_real(text);
  check_real(veldmark::plain::first_value(text));
  check_texts(text);
  check_stringclean(text);
  check_answers(text);
  return 0;
}
