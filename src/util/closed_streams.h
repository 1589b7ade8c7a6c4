// Standard streams that are closed when a program starts.

#ifndef VELDMARK_UTIL_CLOSED_STREAMS_H_
#define VELDMARK_UTIL_CLOSED_STREAMS_H_

namespace veldmark {

// Takes up the numbers of the standard streams that are closed. Reading or writing them
// fails as before, with EBADF.
//
// A file that is opened gets the lowest number that is free: without this it could be
// that of a stream, whose text would then land in the file.
void take_up_closed_streams();

}  // namespace veldmark

#endif  // VELDMARK_UTIL_CLOSED_STREAMS_H_
