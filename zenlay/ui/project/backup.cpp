#include "zenlay/ui/project/backup.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/paths.h"
#include "platform/system.h"
#include "zenlay/files/project_block.h"
#include "zenlay/host/environment.h"
#include "zenlay/host/preferences.h"
#include "zenlay/model/order.h"
#include "zenlay/model/timeline_view.h"
#include "zenlay/ui/project/new_project.h"
#include "zenlay/ui/timeline/timeline.h"

namespace zenlay {
namespace {

constexpr char pattern[] = "\?\?\?\?-\?\?-\?\?_\?\?-\?\?-\?\?.zenlay_backup";
constexpr char magic[4] = {'8', '0', 'Z', 'L'};
constexpr int attempts = 5;
constexpr int retryMilliseconds = 300;
constexpr uint32_t minuteMilliseconds = 60000;
/// The largest project that fits: 15,000 objects with all their extra data, and the tables.
constexpr int32_t maxProjectBytes = maxObjects * static_cast<int32_t>(sizeof(ObjectRecord) + maxExtraData) + 0x1000000;

struct BackupHeader {
  char magic[4];
  int32_t version;
  int32_t frameCount;
  int32_t width, height;
  int32_t rate, scale;
  int32_t audioRate;
  int32_t dataSize;  // of the project data that follows
};
static_assert(sizeof(BackupHeader) == 36);
constexpr int32_t usualChannels = 2;  // others follow the project data

struct CloseFile {
  void operator()(FILE* file) const { fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

std::vector<std::string> backups() { return platform::filesMatching(environment.backupDirectory, pattern); }

std::string timeStampedName() {
  std::tm t = platform::localTime();
  char name[96];
  snprintf(name, sizeof name, "%02d-%02d-%02d_%02d-%02d-%02d.zenlay_backup", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday,
           t.tm_hour, t.tm_min, t.tm_sec);
  return name;
}

constexpr char createFailure[] = "Failed to create the backup file.";
constexpr char writeFailure[] = "Failed to write to the backup file.";
constexpr char readFailure[] = "Failed to read the backup file.";

/// A backup of the project as it stands, header and data. Null, or why there is none (static text).
const char* backupBytes(std::vector<char>& bytes) {
  int32_t size = 0;
  if (!saveProject(environment.mainFilter, environment.edit, nullptr, &size)) {
    return "There is nothing to back up: the project holds no objects.";
  }
  if (size > maxProjectBytes) return "The project is too large for a backup file.";
  const HostFileInfo& clip = environment.clip;
  BackupHeader header{{},        projectVersion, timelineView.sceneLength, clip.width, clip.height,
                      clip.rate, clip.scale,     clip.audioRate,           size};
  memcpy(header.magic, magic, sizeof magic);
  bytes.resize(sizeof header + static_cast<size_t>(size));
  memcpy(bytes.data(), &header, sizeof header);
  saveProject(environment.mainFilter, environment.edit, bytes.data() + sizeof header, &size);
  const char* channels = reinterpret_cast<const char*>(&clip.audioChannels);
  if (clip.audioChannels != usualChannels) bytes.insert(bytes.end(), channels, channels + sizeof clip.audioChannels);
  return nullptr;
}

/// Whether there is something to lose, and the user wants it kept.
bool mayBackUp() {
  return preferences.auto_save && preferences.auto_save_num > 0 && timelineView.sceneLength > 0 && objectCount > 0 &&
         !environment.backupDirectory.empty();
}

bool intervalIsOver() {
  return platform::tickCount() - lastBackup >= static_cast<uint32_t>(preferences.auto_save_time) * minuteMilliseconds;
}

const char* writeBytes(const char* path, const std::vector<char>& bytes, bool replace) {
  File file(platform::openFile(path, replace ? "wb" : "wbx"));
  if (!file) return createFailure;
  bool written = fwrite(bytes.data(), bytes.size(), 1, file.get()) == 1;
  return written && fflush(file.get()) == 0 ? nullptr : writeFailure;
}

/// In place of the oldest one when there are as many as wanted.
const char* addBackup(const std::vector<char>& bytes) {
  std::vector<std::string> names = backups();
  if (names.empty()) platform::makeFolders(environment.backupDirectory);
  if (!names.empty() && static_cast<int>(names.size()) >= preferences.auto_save_num) {
    platform::removeFile(environment.backupDirectory + names.front());
  }
  const char* failure = createFailure;
  for (int i = 0; i < attempts && failure == createFailure; i++) {
    if (i > 0) platform::sleepMilliseconds(retryMilliseconds);
    failure = writeBytes((environment.backupDirectory + timeStampedName()).c_str(), bytes, false);
  }
  return failure;
}

int32_t channelsBehind(FILE* file, const BackupHeader& header) {
  int32_t channels = usualChannels;
  const bool there = fseek(file, long{header.dataSize} + long{sizeof header}, SEEK_SET) == 0 &&
                     fread(&channels, sizeof channels, 1, file) == 1;
  fseek(file, sizeof header, SEEK_SET);
  return there ? channels : usualChannels;
}

}  // namespace

uint32_t lastBackup;

void restartBackupInterval() { lastBackup = platform::tickCount(); }

void pruneBackups() {
  std::vector<std::string> names = backups();
  const size_t kept = static_cast<size_t>(preferences.auto_save_num);
  for (size_t i = 0; i + kept < names.size(); i++) platform::removeFile(environment.backupDirectory + names[i]);
}

void writeAutomaticBackup(bool force) {
  if (!mayBackUp() || (!force && (environment.saving || !intervalIsOver()))) return;
  lastBackup = platform::tickCount();
  std::vector<char> bytes;
  if (backupBytes(bytes)) return;
  if (const char* failure = addBackup(bytes)) showMessage(failure, boxWarning);
}

const char* writeTimeStampedBackup() {
  if (environment.backupDirectory.empty()) return createFailure;
  std::vector<char> bytes;
  const char* failure = backupBytes(bytes);
  return failure ? failure : addBackup(bytes);
}

std::string newestBackup() {
  std::vector<std::string> names = backups();
  return names.empty() ? environment.backupDirectory : environment.backupDirectory + names.back();
}

const char* writeBackup(const char* path, bool replace) {
  std::vector<char> bytes;
  const char* failure = backupBytes(bytes);
  return failure ? failure : writeBytes(path, bytes, replace);
}

int restoreBackup(const char* path) {
  File file(platform::openFile(path, "rb"));
  BackupHeader header;
  if (!file || fread(&header, sizeof header, 1, file.get()) != 1) {
    showMessage(readFailure, boxWarning);
    return 0;
  }
  if (memcmp(header.magic, magic, sizeof magic) != 0 || header.version != projectVersion) {
    showMessage("This is a backup file of a different version.", boxWarning);
    return 0;
  }
  if (header.dataSize < 0 || header.dataSize > maxProjectBytes) {
    showMessage("Read buffer is not enough.", boxWarning);
    return 0;
  }
  const ClipFormat format{header.width, header.height,    header.rate,
                          header.scale, header.audioRate, channelsBehind(file.get(), header)};
  if (!createProject(format)) return 0;
  setSceneLength(std::clamp(header.frameCount, 1, environment.maxFrames));

  // Grown as it is read: a small file that claims gigabytes takes no memory for them.
  std::vector<char> data;
  char chunk[65536];
  while (data.size() < static_cast<size_t>(header.dataSize)) {
    size_t want = std::min(sizeof chunk, static_cast<size_t>(header.dataSize) - data.size());
    size_t got = fread(chunk, 1, want, file.get());
    if (got == 0) {
      showMessage(readFailure, boxWarning);
      return 0;
    }
    data.insert(data.end(), chunk, chunk + got);
  }
  return loadProject(environment.mainFilter, environment.edit, data.data(), header.dataSize);
}

}  // namespace zenlay
