// The film's own footage is not to be lost to a slip of the hand.
#pragma once

#include "cinora/export/exporter.h"

namespace cinora {

/// Throws WrongUsage when a file that the request would write is the film being edited or one it is made of, by
/// whatever name.
void keepMedia(Host&, const ExportRequest&);

}  // namespace cinora
