// Runs the real program and other commands, as a user's shell would.
#pragma once

#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace cinora::test {

struct Outcome {
  int status;  // exit status, or 128 + the signal that ended it
  std::string output, errors;
};

struct RunOptions {
  std::string folder;               // to run in
  long fileSizeLimit = -1;          // bytes; -1: none
  int signal = 0, signalAfter = 0;  // sent once, so many milliseconds after `until` holds
  std::string until;                // a file, or a folder with a hidden file: a film being written
};

/// `cinora` with the arguments, at home in a folder without settings, without a display.
Outcome runCinora(const std::vector<std::string>& arguments, const RunOptions& = {});
/// Any program found by the PATH.
Outcome runProgram(const std::vector<std::string>& words, const RunOptions& = {});

/// Bytes of a file; empty when there is none.
std::string contentsOf(const std::string& path);
/// Names in a folder, hidden ones too, sorted.
std::vector<std::string> namesIn(const std::string& folder);
/// Frames of a film, each `bytesPerPixel` of `pixelFormat` (FFmpeg's name), decoded by the ffmpeg command.
std::vector<std::string> decodeFilm(const std::string& path, const std::string& pixelFormat, size_t bytesPerFrame);
/// One field of the first video stream as the ffprobe command tells it.
std::string probe(const std::string& path, const std::string& field);

}  // namespace cinora::test
