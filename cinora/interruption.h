// Being asked to stop.
#pragma once

namespace cinora {

/// SIGINT, SIGTERM and SIGHUP ask the program to end its work in order; a second one ends it at once, without partial
/// files. Writing beyond a limit on file sizes becomes an ordinary error.
void watchForInterruption();
bool interrupted();

}  // namespace cinora
