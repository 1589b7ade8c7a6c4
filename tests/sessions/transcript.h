// Transcripts: whole sessions as text, with the data they need and all expected
// results.
//
//   # what the case shows
//   data ...            a file in the folder, see prepared_data.h
//   answers             only the answers, one per line, for a case without a screen yet
//                       (see README.md in this folder)
//   status N            the exit status
//   --- screen          the screen, in the notation of support/session.h
//     @NAME ...         in the screen: the lines of blocks/NAME.txt, see blocks.h
//   --- stderr          standard error, |line| each; empty without this section
//   --- file NAME       the lines of a plain file with mode 644 that is left;
//                       for another mode: --- file NAME mode 640. There must be no
//                       other files except the unchanged data.

#ifndef VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
#define VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "sessions/blocks.h"
#include "support/temporary_folder.h"

namespace veldmark::testing {

struct Transcript {
  std::vector<std::string> comments;
  std::vector<std::string> data;
  int status = 0;
  std::vector<std::string> screen;  // blocks spelt out
  std::string errors;
  std::map<std::string, FolderEntry> files;
  std::vector<std::string> answers;  // as the screen, or the answers section, has them
};

// Fails the test if a line is not valid.
Transcript read_transcript(const std::filesystem::path& path, const Blocks& blocks);

// Writes `transcript` to `path`, using blocks for the lines that they contain.
void write_transcript(const std::filesystem::path& path, const Transcript& transcript,
                      const Blocks& blocks);

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SESSIONS_TRANSCRIPT_H_
