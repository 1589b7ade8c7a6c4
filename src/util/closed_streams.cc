#include "util/closed_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace veldmark {

// Opens the input for writing and the outputs for reading, so that any use fails.
void reserve_closed_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) < 0) {
      ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
  }
}

}  // namespace veldmark
