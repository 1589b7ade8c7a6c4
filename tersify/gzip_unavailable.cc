// Replaces gzip_reader.cc where tersify is built without zlib.

#include <utility>

#include "tersify/gzip_format.h"
#include "tersify/gzip_reader.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::tersify {

struct GzipReader::State {};

GzipReader::GzipReader(std::string name,
                       companion::LineBuffer::ReadMore /*compressed*/) {
  throw Failure(in_quotes(name) +
                " is compressed (gzip), and this tersify was built without zlib; "
                "decompress it first" +
                how_to_decompress(name));
}

// The constructor always throws; the other members only have to link.
GzipReader::~GzipReader() = default;

std::size_t GzipReader::read(char* /*buffer*/, std::size_t /*size*/) { return 0; }

void GzipReader::read_to_end() {}

std::int64_t GzipReader::members() const { return 0; }

bool GzipReader::has_trailing_garbage() const { return false; }

}  // namespace veldmark::tersify
