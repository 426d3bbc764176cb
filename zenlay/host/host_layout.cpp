// Proves that the records keep the stated offsets: places in the function table on every build, byte offsets where a
// pointer has 4 bytes (test.sh compiles this file with -m32).
#include "zenlay/host/host_interface.h"

namespace zenlay {
namespace {

#define PLACE(member, offset) static_assert(offsetof(HostFunctionTable, member) == (offset) / 4 * sizeof(void*))
PLACE(getCurrentFrame, 0x18);
PLACE(getFrameCount, 0x1C);
PLACE(setCurrentFrame, 0x24);
PLACE(setFrameCount, 0x28);
PLACE(getFrameStatus, 0x40);
PLACE(setFrameStatus, 0x44);
PLACE(getFileInfo, 0x5C);
PLACE(getAudioFiltered, 0x6C);
PLACE(getSelection, 0x70);
PLACE(setSelection, 0x74);
PLACE(askLoadFileName, 0x80);
PLACE(askSaveFileName, 0x84);
PLACE(readIntSetting, 0x88);
PLACE(writeIntSetting, 0x8C);
PLACE(readStringSetting, 0x90);
PLACE(writeStringSetting, 0x94);
PLACE(getSystemInfo, 0xA0);
PLACE(getFilterRecord, 0xA4);
PLACE(getFrameBeforeFilter, 0xA8);
PLACE(runOnThreads, 0xCC);
PLACE(resizeImage, 0xDC);
PLACE(hostDrawText, 0xE4);
PLACE(openMediaFile, 0xE8);
PLACE(closeMediaFile, 0xEC);
PLACE(readVideoFrame, 0xF0);
PLACE(getVideoFramePixels, 0xF8);
PLACE(getMediaFileFilter, 0xFC);
PLACE(readAudioSamples, 0x100);
PLACE(setAudioSampleRate, 0x104);
PLACE(getFrameStatusTable, 0x108);
PLACE(addMenuItem, 0x110);
PLACE(openEdit, 0x114);
PLACE(exportEdit, 0x11C);
#undef PLACE

#define AT(record, member, offset) static_assert(sizeof(void*) != 4 || offsetof(record, member) == (offset))
AT(HostFilterRecord, name, 0x0C);
AT(HostFilterRecord, trackCount, 0x10);
AT(HostFilterRecord, trackMaxima, 0x20);
AT(HostFilterRecord, checkCount, 0x24);
AT(HostFilterRecord, checkDefaults, 0x2C);
AT(HostFilterRecord, process, 0x30);
AT(HostFilterRecord, initialise, 0x34);
AT(HostFilterRecord, exit, 0x38);
AT(HostFilterRecord, update, 0x3C);
AT(HostFilterRecord, windowProcedure, 0x40);
AT(HostFilterRecord, trackValues, 0x44);
AT(HostFilterRecord, checkValues, 0x48);
AT(HostFilterRecord, extraData, 0x4C);
AT(HostFilterRecord, extraDataSize, 0x50);
AT(HostFilterRecord, information, 0x54);
AT(HostFilterRecord, saveStart, 0x58);
AT(HostFilterRecord, saveEnd, 0x5C);
AT(HostFilterRecord, functions, 0x60);
AT(HostFilterRecord, window, 0x64);
AT(HostFilterRecord, module, 0x68);
AT(HostFilterRecord, projectLoad, 0x74);
AT(HostFilterRecord, projectSave, 0x78);
AT(HostFilterRecord, category, 0x80);
AT(HostFilterRecord, reserved, 0x84);
AT(HostSystemInfo, filterCount, 0x08);
AT(HostSystemInfo, maxWidth, 0x14);
AT(HostSystemInfo, maxHeight, 0x18);
AT(HostSystemInfo, maxFrames, 0x1C);
AT(HostSystemInfo, bufferWidth, 0x2C);
AT(HostSystemInfo, bufferHeight, 0x30);
AT(HostSystemInfo, font, 0x3C);
AT(HostSystemInfo, build, 0x40);
AT(HostFileInfo, rate, 0x10);
AT(HostFileInfo, scale, 0x14);
AT(HostFileInfo, audioRate, 0x18);
AT(HostFileInfo, audioChannels, 0x1C);
AT(FrameProcessInfo, frame, 0x04);
AT(FrameProcessInfo, scratch, 0x08);
AT(FrameProcessInfo, width, 0x0C);
AT(FrameProcessInfo, height, 0x10);
AT(FrameProcessInfo, frameNumber, 0x1C);
AT(FrameProcessInfo, audio, 0x2C);
AT(FrameProcessInfo, sampleCount, 0x30);
AT(FrameProcessInfo, channelCount, 0x34);
AT(FrameProcessInfo, edit, 0x3C);
#undef AT

}  // namespace
}  // namespace zenlay
