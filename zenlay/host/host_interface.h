// Everything that crosses the boundary between the Cinora host and a filter plug-in: records, operations, messages.
//
// The records keep the field order of the host's 32-bit interface; in a 32-bit build every offset is the one stated
// beside the field, in a 64-bit build pointers and callbacks take their natural size. All calls happen on the host's
// user-interface thread, except the callback given to `runOnThreads`. Strings are in the ANSI code page (UTF-8 unless
// zenlay.ini says otherwise) and end in NUL.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zenlay/effects/pixels.h"

namespace platform {
struct Window;
struct Module;
struct Font;
}  // namespace platform

namespace zenlay {

struct HostEdit;   // the host's current edit, opaque to the plug-in
struct HostMedia;  // a media file opened by the host, opaque to the plug-in
using EditHandle = HostEdit*;
using MediaHandle = HostMedia*;
using WindowHandle = platform::Window*;
using ModuleHandle = platform::Module*;
using FontHandle = platform::Font*;

struct HostFilterRecord;
struct HostFunctionTable;
struct FrameProcessInfo;

// Messages the host sends to a filter's window procedure. Mouse positions are image coordinates of the host's frame.
enum HostMessage : uint32_t {
  messageCommand = 0x111,          // ordinary window command: first = id
  messageUpdate = 0x464,           // the host's state changed
  messageFileOpen = 0x465,         // a clip was opened
  messageFileClose = 0x466,        // the clip was closed
  messageWindowSetUp = 0x467,      // the filter's window exists
  messageWindowClose = 0x468,      // the filter's window is about to go
  messageHostCommand = 0x471,      // a command from a host menu or shortcut: first = id
  messageClipChanged = 0x472,      // the clip's information changed
  messageImageMouseDown = 0x478,
  messageImageMouseUp = 0x479,
  messageImageMouseMove = 0x47A,
  messageImageKeyDown = 0x47B,
  messageImageKeyUp = 0x47C,
  messageImageDoubleClick = 0x47E,
  messageImageRightDown = 0x47F,
  messageImageRightUp = 0x480,
  messageImageWheel = 0x481,
};

/// To the main record's window procedure: what a program that drives the plug-in without a screen has to ask beyond its
/// commands. first = PluginQuery, second = QueryRequest*. 1 when answered.
inline constexpr uint32_t messageQuery = 0x7000;
enum PluginQuery : intptr_t {
  queryEffects = 1,      // argument: an effect's name or null for all; answer: JSON array
  queryProject = 2,      // answer: JSON object of clip, scenes, layers and objects
  queryWriteBackup = 3,  // argument: path, or null for a file among the automatic ones, whether they are wanted or not;
                         // writes a backup file there; answer: null or the reason of a failure
  queryLeftOut = 4,      // answer: null or a line on what the last object file read or written left out
  queryTexts = 5,        // answer: JSON array of the texts in the objects' extra data, file names among them
  queryUndoSteps = 6,    // answer: the number of steps that undo puts back, decimal
  queryFault = 7,        // answer: what is broken in the model, empty while it is sound
};
struct QueryRequest {
  const char* argument;
  const char* answer;  // owned by the plug-in, valid until the next query
};

/// Commands with which a host drives the plug-in: sent as messageCommand, or found among the entries that the plug-in
/// offers for its menus. Files come from the host's file dialogs. Those that open answer 1 when something was opened.
enum PluginCommand : int32_t {
  commandUndoStep = 1010,
  commandNewProject = 1030,      // asks for the format
  commandOpenObjectFile = 1037,  // import; with no project open: new project from the object file
  commandSaveObjectFile = 1038,
  commandOpenBackup = 1067,      // new project from a backup file
  commandHostCopy = 1200,        // these three from the host's main window only
  commandHostPaste = 1201,
  commandHostDelete = 1202,
};

// Commands (messageCommand) of the plug-in to the host's main window.

/// The settings window is being moved or sized, so that the host can snap it. second = SizeMoveNotice*.
inline constexpr int32_t hostSizeMove = 900;
struct SizeMoveNotice {
  WindowHandle window;
  uint32_t message;
  intptr_t first, second;
};
/// Plays the preview. second = first frame.
inline constexpr int32_t hostPlayFromCursor = 901;

/// The host's own filter that tells of playback.
inline constexpr char playbackFilter[] = "Playback window";
/// A command (messageCommand) to that filter's window. second = PlaybackCallback, to be called from then on.
inline constexpr int32_t playbackLink = 900;
enum PlaybackFlag : int32_t {
  playbackHideAids = 0x1,  // a frame is about to be made that shows the film alone
  playbackFrameShown = 0x2,
  playbackStart = 0x4,
  playbackEnd = 0x8,
};
using PlaybackCallback = int (*)(int32_t frame, int32_t flags);

// Bits of HostFilterRecord::flags with a meaning of the plug-in's own; the others are the host's.
enum FilterFlag : uint32_t {
  filterHasExtraData = 0x00000400,
  filterBuiltIn = 0x04000000,  // marks Zenlay's own effects in its effect list; a foreign filter never carries it
};

using FilterProcess = int (*)(HostFilterRecord*, FrameProcessInfo*);
using FilterCall = int (*)(HostFilterRecord*);
using FilterWindowProcedure = int (*)(WindowHandle, uint32_t message, intptr_t first, intptr_t second, EditHandle,
                                      HostFilterRecord*);

/// One filter of the host, 0x8C bytes in a 32-bit build. The plug-in fills the static fields, the host those marked
/// (host) after loading.
struct HostFilterRecord {
  uint32_t flags;                        // 0x00
  int32_t windowX, windowY;              // 0x04
  const char* name;                      // 0x0C identity of the filter
  int32_t trackCount;                    // 0x10
  const char* const* trackNames;         // 0x14
  const int32_t* trackDefaults;          // 0x18
  const int32_t* trackMinima;            // 0x1C
  const int32_t* trackMaxima;            // 0x20
  int32_t checkCount;                    // 0x24
  const char* const* checkNames;         // 0x28
  const int32_t* checkDefaults;          // 0x2C
  FilterProcess process;                 // 0x30 1 on success
  FilterCall initialise;                 // 0x34 1 on success, 0 refuses
  FilterCall exit;                       // 0x38
  void* update;                          // 0x3C
  FilterWindowProcedure windowProcedure; // 0x40 1 asks the host to redraw the frame
  int32_t* trackValues;                  // 0x44 (host)
  int32_t* checkValues;                  // 0x48 (host)
  void* extraData;                       // 0x4C
  int32_t extraDataSize;                 // 0x50 bytes
  const char* information;               // 0x54
  int (*saveStart)(HostFilterRecord*, int32_t first, int32_t last, EditHandle);  // 0x58
  int (*saveEnd)(HostFilterRecord*, EditHandle);                                 // 0x5C
  const HostFunctionTable* functions;    // 0x60 (host)
  WindowHandle window;                   // 0x64 (host)
  ModuleHandle module;                   // 0x68 (host)
  void* unused6C;
  void* unused70;
  int (*projectLoad)(HostFilterRecord*, EditHandle, const void* data, int32_t size);  // 0x74 1 when loaded
  /// With `data` null only sets `size`; otherwise fills `data`. 0 when there is nothing to save.
  int (*projectSave)(HostFilterRecord*, EditHandle, void* data, int32_t* size);       // 0x78
  void* unused7C;
  const char* category;                  // 0x80 null or the menu category
  uint32_t reserved[2];                  // 0x84
};

/// The module's one export: a null-terminated list of filter records.
using FilterTableGetter = HostFilterRecord** (*)();
inline constexpr char filterTableExport[] = "GetFilterTableList";

/// Filled by `getSystemInfo`, 76 bytes.
struct HostSystemInfo {
  uint32_t flags;           // 0x00 bit 0x2 makes the plug-in refuse to start
  uint32_t unused04;
  int32_t filterCount;      // 0x08
  const char* projectFile;  // 0x0C path of the project file of the current edit; null or empty when it has none
  uint32_t unused10;
  int32_t maxWidth;         // 0x14 largest image, pixels
  int32_t maxHeight;        // 0x18
  int32_t maxFrames;        // 0x1C
  uint32_t unused20[3];
  int32_t bufferWidth;      // 0x2C row length of the host's frame images, pixels
  int32_t bufferHeight;     // 0x30
  uint32_t unused34[2];
  FontHandle font;          // 0x3C
  int32_t build;            // 0x40
  uint32_t unused44[2];
};

enum FileInfoFlag : uint32_t { fileHasVideo = 0x1, fileHasAudio = 0x2 };

/// The host's clip (`getFileInfo`) or an opened media file (`openMediaFile`).
struct HostFileInfo {
  uint32_t flags;           // 0x00 FileInfoFlag
  const char* name;         // 0x04 path, owned by the host
  int32_t width, height;    // 0x08 pixels
  int32_t rate, scale;      // 0x10 frames per second = rate / scale
  int32_t audioRate;        // 0x18 samples per second, valid with fileHasAudio
  int32_t audioChannels;    // 0x1C
  uint32_t videoFormat;     // 0x20 codec tag
  int32_t videoBits;        // 0x24 bits per pixel of the decoded picture: 24, or 32 with an alpha channel
  uint32_t audioFormat;     // 0x28
  int32_t frameCount;       // 0x2C
  int32_t audioSampleCount; // 0x30 per channel
  uint32_t reserved[7];
};

/// One frame (or block of audio) to process, 104 bytes.
struct FrameProcessInfo {
  uint32_t flags;            // 0x00
  FramePixel* frame;         // 0x04 rows `lineBytes` apart; read and written
  FramePixel* scratch;       // 0x08 same size; the plug-in may exchange the two
  int32_t width, height;     // 0x0C of the frame; the plug-in writes its output size
  int32_t maxWidth, maxHeight;            // 0x14
  int32_t frameNumber;       // 0x1C 0-based
  int32_t frameCount;        // 0x20
  int32_t originalWidth, originalHeight;  // 0x24
  int16_t* audio;            // 0x2C interleaved samples
  int32_t sampleCount;       // 0x30 per channel
  int32_t channelCount;      // 0x34
  void* unusedPixels;        // 0x38
  EditHandle edit;           // 0x3C
  int32_t pixelBytes;        // 0x40
  int32_t lineBytes;         // 0x44
  uint32_t reserved[8];      // 0x48
};

/// Called on each worker thread with its index and their count; works on its own slice only.
using ThreadWork = void (*)(int index, int count, void* first, void* second);

/// Frame status exchanged by `getFrameStatus` and `setFrameStatus`.
struct FrameStatus {
  int32_t video, audio;
  uint32_t inter, flags;
};

enum MediaKind : int32_t { mediaVideo = 0, mediaAudio = 1 };

/// Flags of `openMediaFile`.
enum OpenMediaFlag : uint32_t {
  openVideo = 0x10,
  openAudio = 0x20,
  openAlpha = 0x40000,  // deliver 32-bit pictures with alpha where the file has one
};

/// Flags of `addMenuItem`.
enum KeyModifier : int32_t { keyShift = 1, keyCtrl = 2, keyAlt = 4 };

/// The host's operations; an operation's place is its 32-bit offset / 4. Unnamed places are null.
struct HostFunctionTable {
  void* unused00[6];
  int32_t (*getCurrentFrame)(EditHandle);                     // 0x18
  int32_t (*getFrameCount)(EditHandle);                       // 0x1C
  void* unused20;
  int32_t (*setCurrentFrame)(EditHandle, int32_t frame);      // 0x24 the frame now current
  int32_t (*setFrameCount)(EditHandle, int32_t count);        // 0x28 non-zero on success
  void* unused2C[5];
  int32_t (*getFrameStatus)(EditHandle, int32_t frame, FrameStatus*);        // 0x40
  int32_t (*setFrameStatus)(EditHandle, int32_t frame, const FrameStatus*);  // 0x44
  void* unused48[5];
  int32_t (*getFileInfo)(EditHandle, HostFileInfo*);          // 0x5C 0 when no clip is open
  void* unused60[3];
  int32_t (*getAudioFiltered)(EditHandle, int32_t frame, int16_t* samples);  // 0x6C samples per channel
  int32_t (*getSelection)(EditHandle, int32_t* first, int32_t* last);        // 0x70
  int32_t (*setSelection)(EditHandle, int32_t first, int32_t last);          // 0x74
  void* unused78[2];
  /// `name` has room for 260 bytes; `filter` is pairs of NUL-terminated strings (label, patterns), then an empty one.
  int32_t (*askLoadFileName)(char* name, const char* filter, const char* initial);  // 0x80
  int32_t (*askSaveFileName)(char* name, const char* filter, const char* initial);  // 0x84
  int32_t (*readIntSetting)(HostFilterRecord*, const char* key, int32_t fallback);   // 0x88
  int32_t (*writeIntSetting)(HostFilterRecord*, const char* key, int32_t value);     // 0x8C
  /// `buffer` has room for 256 bytes.
  int32_t (*readStringSetting)(HostFilterRecord*, const char* key, char* buffer, const char* fallback);  // 0x90
  int32_t (*writeStringSetting)(HostFilterRecord*, const char* key, const char* value);                  // 0x94
  void* unused98[2];
  int32_t (*getSystemInfo)(EditHandle, HostSystemInfo*);      // 0xA0 non-zero on success; the edit may be null
  HostFilterRecord* (*getFilterRecord)(int32_t index);        // 0xA4
  FramePixel* (*getFrameBeforeFilter)(HostFilterRecord*, EditHandle, int32_t frame, int32_t zero);  // 0xA8
  void* unusedAC[8];
  int32_t (*runOnThreads)(ThreadWork, void* first, void* second);  // 0xCC returns when all threads have
  void* unusedD0[3];
  /// Rows of both images are `bufferWidth` pixels apart.
  int32_t (*resizeImage)(FramePixel* destination, int32_t width, int32_t height, const FramePixel* source,
                         int32_t x, int32_t y, int32_t sourceWidth, int32_t sourceHeight);  // 0xDC
  void* unusedE0;
  /// With a null image only `width` and `height` are measured. Transparency 0..4096.
  int32_t (*hostDrawText)(FramePixel* image, int32_t x, int32_t y, const char* text, int32_t red, int32_t green,
                          int32_t blue, int32_t transparency, FontHandle, int32_t* width, int32_t* height);  // 0xE4
  MediaHandle (*openMediaFile)(const char* path, HostFileInfo*, uint32_t flags);  // 0xE8
  int32_t (*closeMediaFile)(MediaHandle);                                         // 0xEC
  /// Rows of the image are `bufferWidth` pixels apart.
  int32_t (*readVideoFrame)(MediaHandle, int32_t frame, FramePixel* image);       // 0xF0
  void* unusedF4;
  /// Bottom-up rows padded to 4 bytes, of the file's `videoBits` per pixel; valid until the next call.
  const void* (*getVideoFramePixels)(MediaHandle, int32_t frame);                 // 0xF8
  const char* (*getMediaFileFilter)(int32_t kind);                                // 0xFC
  int32_t (*readAudioSamples)(MediaHandle, int32_t first, int32_t count, int16_t* buffer);     // 0x100
  int32_t (*setAudioSampleRate)(MediaHandle, int32_t rate, int32_t channels);                  // 0x104 total samples
  const uint8_t* (*getFrameStatusTable)(EditHandle, int32_t kind);                             // 0x108
  void* unused10C;
  int32_t (*addMenuItem)(HostFilterRecord*, const char* entry, WindowHandle, int32_t command, int32_t key,
                         int32_t modifiers);                                                   // 0x110
  int32_t (*openEdit)(EditHandle, const char* name, uint32_t flags);                           // 0x114
  void* unused118;
  int32_t (*exportEdit)(EditHandle, const char* name, uint32_t flags, const char* output);     // 0x11C
};

static_assert(sizeof(void*) != 4 || sizeof(HostFilterRecord) == 0x8C);
static_assert(sizeof(void*) != 4 || sizeof(HostSystemInfo) == 76);
static_assert(sizeof(void*) != 4 || sizeof(FrameProcessInfo) == 104);
static_assert(sizeof(HostFunctionTable) == (0x11C / 4 + 1) * sizeof(void*));

}  // namespace zenlay
