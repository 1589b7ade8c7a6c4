// Handles standard streams that are already closed when a program starts.

#ifndef VELDMARK_UTIL_CLOSED_STREAMS_H_
#define VELDMARK_UTIL_CLOSED_STREAMS_H_

namespace veldmark {

// Occupies the descriptors 0, 1 and 2 where they are closed. Reading or writing them
// still fails with EBADF.
//
// A newly opened file gets the lowest free descriptor. Without this it could be given
// that of a standard stream, and messages would end up in the file.
void reserve_closed_streams();

}  // namespace veldmark

#endif  // VELDMARK_UTIL_CLOSED_STREAMS_H_
