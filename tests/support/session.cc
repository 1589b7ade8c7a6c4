#include "support/session.h"

#include <istream>
#include <ostream>
#include <sstream>
#include <streambuf>

#include "console/console_dialogue.h"
#include "driver/program_driver.h"

namespace veldmark::testing {
namespace {

// Builds the screen from what is written, read and run, in that order.
class Screen {
 public:
  void write(char character) {
    output_ += character;
    if (character == '\n') {
      lines_.push_back("|" + partial_ + "|");
      partial_.clear();
      line_open_ = false;
    } else {
      partial_ += character;
      line_open_ = true;
    }
    can_append_answer_ = true;
  }

  void answer(const std::string& answer) {
    if (line_open_) {
      lines_.push_back("|" + partial_);
      partial_.clear();
      line_open_ = false;
    } else if (!can_append_answer_) {
      lines_.emplace_back();
    }
    lines_.back() += "<" + answer + ">";
  }

  void command(const std::string& command) {
    close_open_line();
    lines_.push_back("$ " + command);
    can_append_answer_ = false;
  }

  std::vector<std::string> finish() {
    close_open_line();
    return lines_;
  }

  [[nodiscard]] const std::string& output() const { return output_; }

 private:
  void close_open_line() {
    if (line_open_) {
      lines_.push_back("|" + partial_);
      partial_.clear();
      line_open_ = false;
    }
  }

  std::vector<std::string> lines_;
  std::string partial_;
  std::string output_;
  bool line_open_ = false;
  bool can_append_answer_ = false;
};

// Buffers output until it is flushed, so that a missing flush shows on the screen.
class ScreenOutput : public std::streambuf {
 public:
  explicit ScreenOutput(Screen& screen) : screen_(screen) {}

 protected:
  int_type overflow(int_type character) override {
    unflushed_ += traits_type::to_char_type(character);
    return character;
  }
  int sync() override {
    for (const char character : unflushed_) {
      screen_.write(character);
    }
    unflushed_.clear();
    return 0;
  }

 private:
  Screen& screen_;
  std::string unflushed_;
};

std::string replace_all(std::string text, const std::string& from,
                        const std::string& to) {
  for (std::size_t offset = text.find(from); offset != std::string::npos;
       offset = text.find(from, offset + to.size())) {
    text.replace(offset, from.size(), to);
  }
  return text;
}

// Returns the input for an answer in the notation of the screen.
std::string input_for(const std::string& answer) {
  if (answer == "RETURN") {
    return "\n";
  }
  std::string text = replace_all(replace_all(answer, "\\t", "\t"), "\\r", "\r");
  const std::string end_mark = "\\EOF";
  if (text.ends_with(end_mark)) {
    text.erase(text.size() - end_mark.size());
    return text;
  }
  return text + "\n";
}

// Supplies one answer per read, and records it on the screen at that moment.
class AnswerInput : public std::streambuf {
 public:
  AnswerInput(const std::vector<std::string>& answers, Screen& screen)
      : answers_(answers), screen_(screen) {}

 protected:
  int_type underflow() override {
    if (ended_ || next_ == answers_.size()) {
      if (!ended_) {
        screen_.answer("EOF");
      }
      ended_ = true;
      return traits_type::eof();
    }
    screen_.answer(answers_[next_]);
    current_ = input_for(answers_[next_]);
    ++next_;
    ended_ = !current_.ends_with('\n');
    setg(current_.data(), current_.data(), current_.data() + current_.size());
    return traits_type::to_int_type(current_.front());
  }

 private:
  const std::vector<std::string>& answers_;
  Screen& screen_;
  std::size_t next_ = 0;
  std::string current_;
  bool ended_ = false;
};

}  // namespace

SessionResult run_session(const std::vector<std::string>& answers) {
  Screen screen;
  ScreenOutput screen_output(screen);
  AnswerInput answer_input(answers, screen);
  std::ostream output(&screen_output);
  std::istream input(&answer_input);
  std::ostringstream errors;
  ConsoleDialogue console(input, output,
                          [&](const std::string& command) { screen.command(command); });
  SessionResult result;
  result.status = run_program(console, errors);
  result.screen = screen.finish();
  result.output = screen.output();
  result.errors = errors.str();
  return result;
}

}  // namespace veldmark::testing
