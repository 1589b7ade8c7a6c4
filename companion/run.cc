#include "companion/run.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <vector>

#include "companion/standard_stream.h"
#include "util/closed_streams.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::companion {
std::ostream& start_message(const Environment& environment, std::string_view program) {
  environment.output << std::flush;  // a terminal shows both in their order
  return environment.messages.stream << program << ": ";
}

int run_reported(const Environment& environment, std::string_view program,
                 const std::function<int()>& work) {
  try {
    const int status = work();
    environment.output << std::flush;
    if (environment.output) {
      return status;
    }
    start_message(environment, program) << "cannot write to standard output\n";
    return status == kSuccess ? kFailed : status;
  } catch (const UsageError& error) {
    start_message(environment, program)
        << error.what() << "\nTry '" << program << " --help' for more information.\n";
    return kWrongUsage;
  } catch (const Interrupted& interrupted) {
    start_message(environment, program) << "interrupted; nothing was written\n";
    return kEndedBySignal + interrupted.signal;
  } catch (const std::exception& error) {
    start_message(environment, program) << reason_of(error) << "\n";
    return kFailed;
  }
}

int run_main(int argc, char** argv, std::string_view program,
             const std::function<int(Arguments, const Environment&)>& run) try {
  // Ignore SIGPIPE: a closed pipe then shows up as a failed write, which is reported
  // and cleaned up after.
  std::signal(SIGPIPE, SIG_IGN);
  reserve_closed_streams();
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  StandardStream output_stream(STDOUT_FILENO);
  StandardStream message_stream(STDERR_FILENO);
  std::ostream output(&output_stream);
  std::ostream messages(&message_stream);
  messages << std::unitbuf;
  const Environment environment{
      .input = STDIN_FILENO,
      .output = output,
      .messages = {.stream = messages, .shown = isatty(STDERR_FILENO) == 1}};
  return run(arguments, environment);
} catch (const std::exception& error) {  // before or after the run itself
  std::fprintf(stderr, "%s: %s\n", std::string(program).c_str(), reason_of(error));
  return kFailed;
}

}  // namespace veldmark::companion
