// The services whose subject is media.
#pragma once

namespace zenlay {

/// Puts pictures, figures and media files behind the service table.
void installMediaServices();

}  // namespace zenlay
