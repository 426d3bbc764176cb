// Rendering a range of frames to a file: the calling thread renders, another one encodes and writes.
#pragma once

#include <functional>

#include "cinora/export/frame_writer.h"
#include "cinora/host/host.h"

namespace cinora {

struct ExportRequest {
  OutputRequest output;
  int first = 0, last = 0;  // frames from 0, both ends included
};

/// The selection, as plug-ins have it exported.
ExportRequest requestOfSelection(const Host&, const std::string& path, bool alpha);

/// Called when `done` of `total` frames were rendered; false ends the export.
using ExportProgress = std::function<bool(int done, int total)>;

/// Throws Failure or WrongUsage; then nothing is left under the final name. Filters are told of the start and the end.
void exportFilm(Host&, const ExportRequest&, const ExportProgress&);

}  // namespace cinora
