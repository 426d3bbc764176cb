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

uint32_t tickCount();  // milliseconds, wrapping
void sleepMilliseconds(int);
std::tm localTime();

struct Module;  // a shared library
/// Null on failure; `loadError` then says why.
Module* loadModule(std::string_view path);
void* moduleSymbol(Module*, const char* name);
void unloadModule(Module*);
const char* loadError();

/// Named memory visible to the whole process and, by name, to others of the machine. Null on failure.
struct SharedMemory;
SharedMemory* createSharedMemory(const char* name, size_t bytes);
SharedMemory* openSharedMemory(const char* name);
void* mapSharedMemory(SharedMemory*);
void unmapSharedMemory(SharedMemory*);
void closeSharedMemory(SharedMemory*);  // removes the name when this handle created it

int processId();
bool hasSse2();
/// Masks every floating-point exception.
void maskFloatingPointExceptions();

/// One line on standard error.
void debugOutput(std::string_view line);

}  // namespace platform
