// What a run reads, so that none of its outputs destroys it.

#ifndef VELDMARK_COMPANION_INPUTS_H_
#define VELDMARK_COMPANION_INPUTS_H_

#include <optional>
#include <string>
#include <vector>

#include "util/file_identity.h"

namespace veldmark::companion {

// Files are compared by what they are, whatever names and links lead to them.
class Inputs {
 public:
  // Adds a file; nothing where there is none, or no regular one.
  //
  //   shown_name    what it is called in messages
  void add(std::string shown_name, const std::optional<FileIdentity>& file);

  // Throws Failure when `output`, or its part while it is written, is one of the
  // inputs.
  void expect_apart_from(const std::string& output) const;

 private:
  struct Input {
    std::string shown_name;
    FileIdentity file;
  };

  std::vector<Input> inputs_;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_INPUTS_H_
