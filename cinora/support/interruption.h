// Being asked to stop.
#pragma once

namespace cinora {

/// Writing beyond a limit on file sizes, or to a pipe nobody reads, becomes an ordinary error.
void makeWriteSignalsErrors();

/// From here on SIGINT, SIGTERM and SIGHUP ask the program to end its work in order; a second one, or the first one
/// when the program has not ended some seconds later, ends it at once: without partial files, with a line on standard
/// error. Before this call they end the program as they end any other.
void watchForInterruption();
bool interrupted();

}  // namespace cinora
