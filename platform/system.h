// Memory, clocks, shared libraries, named shared memory, debug output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string_view>

namespace platform {

/// Address space of `bytes`, zero when first touched and backed by memory only where touched; null on failure.
void* reserveMemory(size_t bytes);
void releaseMemory(void*, size_t bytes);
/// Gives the pages back; they read as zero afterwards.
void discardMemory(void*, size_t bytes);

uint32_t tickCount();  // milliseconds since the machine started, wrapping
void sleepMilliseconds(int);
std::tm localTime();

struct Module;  // a shared library
/// A path with a separator names a file; a bare name is looked up where the system keeps its libraries. All its symbols
/// are bound at once and stay private to it. Null on failure; `loadError` then says why.
Module* loadModule(std::string_view path);
void* moduleSymbol(Module*, const char* name);
void unloadModule(Module*);
const char* loadError();  // of this thread's last failed loadModule or moduleSymbol

/// Named memory, zero at first, visible to the whole process and by name to the user's other processes. Null on
/// failure. A leftover of the same name is replaced; ended by a signal, the process takes its names along.
struct SharedMemory;
SharedMemory* createSharedMemory(const char* name, size_t bytes);
SharedMemory* openSharedMemory(const char* name);
void* mapSharedMemory(SharedMemory*);  // a mapping stays until unmapped or closed; mapping again gives the same address
void unmapSharedMemory(SharedMemory*);
void closeSharedMemory(SharedMemory*);  // removes the name when this handle created it

int processId();
bool hasSse2();  // true on processors of other families: there the question does not arise
/// Masks every floating-point exception of this thread.
void maskFloatingPointExceptions();

/// The text as lines on standard error, written in one piece.
void debugOutput(std::string_view line);

}  // namespace platform
