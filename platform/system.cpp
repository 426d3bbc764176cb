#include "platform/system.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cfenv>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/live_files.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace platform {

void* reserveMemory(size_t bytes) {
  if (bytes == 0) return nullptr;
  void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

void releaseMemory(void* memory, size_t bytes) {
  if (memory) munmap(memory, bytes);
}

void discardMemory(void* memory, size_t bytes) {
  static const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  auto* begin = static_cast<char*>(memory);
  char* end = begin + bytes;
  auto address = reinterpret_cast<uintptr_t>(begin);
  char* firstPage = begin + (page - address % page) % page;
  char* lastPage = end - reinterpret_cast<uintptr_t>(end) % page;
  if (firstPage >= lastPage) {
    memset(begin, 0, bytes);
    return;
  }
  memset(begin, 0, firstPage - begin);
  if (madvise(firstPage, lastPage - firstPage, MADV_DONTNEED) != 0) memset(firstPage, 0, lastPage - firstPage);
  memset(lastPage, 0, end - lastPage);
}

uint32_t tickCount() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<uint32_t>(static_cast<uint64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000);
}

void sleepMilliseconds(int duration) {
  if (duration <= 0) return;
  timespec left{duration / 1000, duration % 1000 * 1000000L};
  while (nanosleep(&left, &left) != 0) {
  }
}

std::tm localTime() {
  std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  return parts;
}

namespace {
thread_local std::string lastLoadError;

void keepLoadError() {
  const char* reason = dlerror();
  lastLoadError = reason ? reason : "";
}
}  // namespace

Module* loadModule(std::string_view path) {
  bool bare = std::none_of(path.begin(), path.end(), isSeparator);
  std::string name = bare ? std::string(path) : nativePath(path);
  if (name.empty()) {  // what dlopen would take for the program itself
    lastLoadError = utf8FromAnsi(path) + ": no such file";
    return nullptr;
  }
  void* module = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) keepLoadError();
  return static_cast<Module*>(module);
}

void* moduleSymbol(Module* module, const char* name) {
  if (!module) return nullptr;
  void* symbol = dlsym(module, name);
  if (!symbol) keepLoadError();
  return symbol;
}

void unloadModule(Module* module) {
  if (module) dlclose(module);
}

const char* loadError() { return lastLoadError.c_str(); }

struct SharedMemory {
  int file = -1;
  size_t bytes = 0;
  void* mapping = nullptr;
  std::string created;  // the name to remove again
  int guard = noLiveFile;
};

namespace {

std::string sharedName(const char* name) {
  std::string full = '/' + std::string(name);
  std::replace(full.begin() + 1, full.end(), '/', '_');
  return full;
}

}  // namespace

SharedMemory* createSharedMemory(const char* name, size_t bytes) {
  if (!name || !*name || bytes == 0) return nullptr;
  std::string full = sharedName(name);
  int file = shm_open(full.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
  if (file < 0 && shm_unlink(full.c_str()) == 0) file = shm_open(full.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
  if (file < 0) return nullptr;
  if (posix_fallocate(file, 0, static_cast<off_t>(bytes)) != 0) {  // now, rather than a fault at the first write
    close(file);
    shm_unlink(full.c_str());
    return nullptr;
  }
  return new SharedMemory{file, bytes, nullptr, full, guardLiveFile("/dev/shm" + full)};
}

SharedMemory* openSharedMemory(const char* name) {
  if (!name || !*name) return nullptr;
  int file = shm_open(sharedName(name).c_str(), O_RDWR, 0);
  if (file < 0) return nullptr;
  struct stat status;
  if (fstat(file, &status) != 0 || status.st_size <= 0) {
    close(file);
    return nullptr;
  }
  return new SharedMemory{file, static_cast<size_t>(status.st_size), nullptr, {}, noLiveFile};
}

void* mapSharedMemory(SharedMemory* memory) {
  if (!memory) return nullptr;
  if (!memory->mapping) {
    void* mapping = mmap(nullptr, memory->bytes, PROT_READ | PROT_WRITE, MAP_SHARED, memory->file, 0);
    if (mapping != MAP_FAILED) memory->mapping = mapping;
  }
  return memory->mapping;
}

void unmapSharedMemory(SharedMemory* memory) {
  if (!memory || !memory->mapping) return;
  munmap(memory->mapping, memory->bytes);
  memory->mapping = nullptr;
}

void closeSharedMemory(SharedMemory* memory) {
  if (!memory) return;
  unmapSharedMemory(memory);
  close(memory->file);
  if (!memory->created.empty()) shm_unlink(memory->created.c_str());
  releaseLiveFile(memory->guard);
  delete memory;
}

int processId() { return getpid(); }

bool hasSse2() {
#if defined(__x86_64__) || defined(__i386__)
  return __builtin_cpu_supports("sse2");
#else
  return true;
#endif
}

void maskFloatingPointExceptions() { fedisableexcept(FE_ALL_EXCEPT); }

void debugOutput(std::string_view line) {
  std::string text = utf8FromAnsi(line);
  if (text.empty() || text.back() != '\n') text += '\n';
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace platform
