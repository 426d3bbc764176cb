// "Audio waveform display": draws the waveform or the levels of a sound.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/sound_samples.h"
#include "zenlay/media/spectrum.h"
#include "zenlay/media/waveform_drawing.h"

namespace zenlay {

namespace {

enum WaveformTrack { trackWidth, trackHeight, trackVolume, trackPosition };
enum WaveformCheck { checkPreset, checkColor, checkReference, checkOriginal, checkSetting };

enum WaveformMode { modeLine, modeBars };

struct WaveformData {
  MediaReference media;
  uint8_t reserved[12];
  int16_t type;   // index into presetList
  int16_t mode;   // WaveformMode
  int16_t res_w;  // see WaveformShape
  int16_t res_h;
  int16_t pad_w;  // gaps, percent
  int16_t pad_h;
  uint8_t color[3];  // red, green, blue
  uint8_t reserved2;
  int32_t sample_n;  // samples shown; 0 = those of the frame
  uint8_t mirror;
  uint8_t reserved3[3];
};
static_assert(sizeof(WaveformData) == 304);

constexpr char presetList[] =
    "Type1\0"
    "Type2\0"
    "Type3\0"
    "Type4\0"
    "Type5\0";

/// What a preset puts into the settings.
struct Preset {
  int16_t mode, res_w, res_h, pad_w, pad_h;
  uint8_t mirror;
};
constexpr Preset presets[] = {
    {modeLine, 0, 0, 0, 0, 0},      // every sample
    {modeLine, 64, 0, 0, 0, 1},     // few points and their mirror image
    {modeBars, 32, 0, 25, 0, 0},    // bars
    {modeBars, 32, 24, 25, 40, 0},  // bars of steps
    {modeBars, 64, 0, 40, 0, 1},    // bars around the middle line
};

constexpr int maxShownSeconds = 10;
constexpr int maxResolution = 2000;  // of a picture's sides, too
constexpr double quietest = 60.0;    // dB below full scale, where bars begin

struct ClipSound {
  int rate, channels;
  int64_t frameSamples;  // per channel, at most
};

/// (L + R) / 2 of the first two channels.
void toMono(int16_t* mono, const int16_t* samples, int count, int channels) {
  for (int i = 0; i < count; i++, samples += channels)
    mono[i] = channels == 1 ? samples[0] : static_cast<int16_t>((samples[0] + samples[1]) / 2);
}

/// The edit's own sound from the current frame on. `block` holds a frame of it.
void readOriginal(const EffectDefinition* effect, const EffectProcessInfo* info, const ClipSound& clip, int16_t* mono,
                  int count, int16_t* block) {
  int frame = info->absoluteFrame;
  for (int done = 0; done < count; frame++) {
    int got = effect->host_functions->getAudioFiltered(info->host.edit, frame, block);
    if (got <= 0) return;
    int taken = std::min(got, count - done);
    toMono(mono + done, block, taken, clip.channels);
    done += taken;
  }
}

/// The object's file at its position: with a static one the file goes on with the film.
void readFile(EffectDefinition* effect, const EffectProcessInfo* info, const ClipSound& clip, int16_t* mono, int count,
              int16_t* block) {
  constexpr int32_t movementMode = 0xF;
  MediaHandle handle = effect->services->openMedia(&extraData<WaveformData>(effect).media, openAudio, nullptr);
  if (!handle) return;
  int total = effect->host_functions->setAudioSampleRate(handle, clip.rate, clip.channels);
  int64_t at = int64_t{effect->track[trackPosition]} * clip.rate / 100;
  if (!(effect->track_modes[trackPosition] & movementMode)) {
    int64_t elapsed = int64_t{info->host.frameNumber} * 100 + info->subFrame;
    at += static_cast<int64_t>(__int128{elapsed} * info->scale * clip.rate / (100 * int64_t{info->rate}));
  }
  for (int done = 0; done < count && at >= 0 && at < total;) {
    int wanted = static_cast<int>(std::min<int64_t>({count - done, clip.frameSamples, total - at}));
    int got = effect->host_functions->readAudioSamples(handle, static_cast<int32_t>(at), wanted, block);
    if (got <= 0) return;
    toMono(mono + done, block, got, clip.channels);
    done += got;
    at += got;
  }
}

/// Bars show decibels.
void toHeights(float levels[spectrumLevels]) {
  for (int i = 0; i < spectrumLevels; i++) {
    double decibels = 20 * std::log10(std::max(static_cast<double>(levels[i]), 1e-9));
    levels[i] = static_cast<float>(1 + decibels / quietest);
  }
}

void draw(EffectDefinition* effect, EffectProcessInfo* info, const int16_t* mono, int count) {
  const WaveformData& data = extraData<WaveformData>(effect);
  info->objectWidth = std::clamp(effect->track[trackWidth], 1, info->maxWidth);
  info->objectHeight = std::clamp(effect->track[trackHeight], 1, info->maxHeight);
  info->opaqueImage = 0;
  const uint8_t bitmap[4] = {data.color[2], data.color[1], data.color[0], 0};
  effect->services->convertRgb(info->objectImage, bitmap, 1, 1, 24);
  ObjectPixel colour = *info->objectImage;
  colour.a = 0;
  for (int y = 0; y < info->objectHeight; y++)
    std::fill_n(info->objectImage + static_cast<ptrdiff_t>(y) * info->bufferLine, info->objectWidth, colour);

  WaveformImage image{info->objectImage, info->bufferLine, info->objectWidth, info->objectHeight};
  WaveformShape shape{data.res_w, data.res_h, data.pad_w, data.pad_h, data.mirror != 0};
  if (data.mode != modeBars) return drawWaveLine(image, mono, count, shape);
  float levels[spectrumLevels];
  soundSpectrum(mono, count, levels);
  toHeights(levels);
  drawLevelBars(image, levels, spectrumLevels, shape);
}

int processWaveform(EffectDefinition* effect, EffectProcessInfo* info) {
  const HostFunctionTable* host = effect->host_functions;
  const WaveformData& data = extraData<WaveformData>(effect);
  HostFileInfo file{};
  bool hasSound = host->getFileInfo(info->host.edit, &file) && file.flags & fileHasAudio && info->rate > 0;
  constexpr int fallbackRate = 44100, fallbackChannels = 2;
  ClipSound clip{hasSound ? file.audioRate : fallbackRate, hasSound ? file.audioChannels : fallbackChannels, 0};
  int64_t most = int64_t{maxShownSeconds} * clip.rate;
  clip.frameSamples = info->rate > 0 ? int64_t{clip.rate} * info->scale / info->rate + 1 : most;
  if (clip.frameSamples > most || clip.channels < 1) return 0;
  int64_t wanted = data.sample_n > 0 ? int64_t{data.sample_n} : clip.frameSamples;
  int count = static_cast<int>(std::clamp<int64_t>(wanted, data.mode == modeBars ? spectrumBlock : 2, most));

  size_t samples = static_cast<size_t>(count) + static_cast<size_t>(clip.frameSamples) * clip.channels;
  bool created;
  auto* mono =
      static_cast<int16_t*>(effect->services->workMemory(effect->object_ref, samples * sizeof(int16_t), &created));
  if (!mono) return 0;
  std::fill_n(mono, count, int16_t{0});
  if (effect->check[checkOriginal]) {
    if (hasSound) readOriginal(effect, info, clip, mono, count, mono + count);
  } else {
    readFile(effect, info, clip, mono, count, mono + count);
  }
  int gain = effect->track[trackVolume] * soundOne / 1000;
  if (gain != soundOne) amplifySamples(mono, count, gain);
  draw(effect, info, mono, count);
  return 1;
}

constexpr ExtraControl controls[] = {
    {checkPreset, extraShortList, offsetof(WaveformData, type)},
    {checkColor, extraColor, offsetof(WaveformData, color)},
    {checkReference, extraSound, offsetof(WaveformData, media)},
    {checkSetting, extraNumber, offsetof(WaveformData, mode), 0, {"Waveform type (0/1)", 2, 0, 1}},
    {checkSetting, extraNumber, offsetof(WaveformData, res_w), 0, {"Hx resolution", 2, 0, maxResolution}},
    {checkSetting, extraNumber, offsetof(WaveformData, res_h), 0, {"Vy resolution", 2, 0, maxResolution}},
    {checkSetting, extraNumber, offsetof(WaveformData, pad_w), 0, {"Hx space (%)", 2, 0, 100}},
    {checkSetting, extraNumber, offsetof(WaveformData, pad_h), 0, {"Vy space (%)", 2, 0, 100}},
    {checkSetting, extraNumber, offsetof(WaveformData, mirror), 0, {"Mirror", 1, 0, 1}},
};

/// A preset of the list brings its other values along.
int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  WaveformData& data = extraData<WaveformData>(effect);
  if (asksForFileCheck(message, wparam, lparam)) {
    constexpr uint32_t flags = uint32_t{openAudio} | mediaQuiet | mediaExistence;
    return effect->services->openMedia(&data.media, flags, nullptr) != nullptr;
  }
  bool known = lparam >= 0 && lparam < static_cast<intptr_t>(std::size(presets));
  if (!isCommand(message, wparam, commandDropDown))
    return operateControls(effect, controls, std::size(controls), message, wparam, lparam);
  if (!known) return 0;
  effect->services->recordUndo(effect->object_ref);
  const Preset& preset = presets[lparam];
  data.type = static_cast<int16_t>(lparam);
  data.mode = preset.mode;
  data.res_w = preset.res_w;
  data.res_h = preset.res_h;
  data.pad_w = preset.pad_w;
  data.pad_h = preset.pad_h;
  data.mirror = preset.mirror;
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

// The position in hundredths of a second.
constexpr TrackColumns tracks({
    {"Width", 640, 0, 2000, 1, 0, 2000},
    {"Height", 240, 0, 2000, 1, 0, 2000},
    {"Volume", 1000, 0, 5000, 10, 0, 5000},
    {"Playback position", 0, 0, 800000, 100, 0, 800000},
});
constexpr CheckColumns checks({
    {presetList, checkDropDown},
    {"Color of the waveform", checkButton},
    {"Reference file", checkButton},
    {"Restore original sound", 1},
    {"Setting", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(MediaReference::file), "file"},
    {exdataReserved, 20, nullptr},
    {exdataInteger, sizeof(WaveformData::type), "type"},
    {exdataInteger, sizeof(WaveformData::mode), "mode"},
    {exdataInteger, sizeof(WaveformData::res_w), "res_w"},
    {exdataInteger, sizeof(WaveformData::res_h), "res_h"},
    {exdataInteger, sizeof(WaveformData::pad_w), "pad_w"},
    {exdataInteger, sizeof(WaveformData::pad_h), "pad_h"},
    {exdataBytes, sizeof(WaveformData::color), "color"},
    {exdataReserved, sizeof(WaveformData::reserved2), nullptr},
    {exdataInteger, sizeof(WaveformData::sample_n), "sample_n"},
    {exdataInteger, sizeof(WaveformData::mirror), "mirror"},
    {exdataReserved, sizeof(WaveformData::reserved3), nullptr},
};
constexpr WaveformData defaults = {
    .media = {},
    .reserved = {},
    .type = 0,
    .mode = 0,
    .res_w = 0,
    .res_h = 0,
    .pad_w = 0,
    .pad_h = 0,
    .color = {255, 255, 255},
    .reserved2 = 0,
    .sample_n = 0,
    .mirror = 0,
    .reserved3 = {},
};

}  // namespace

constinit EffectDefinition audioWaveformDisplayMedia = defineEffect({
    .flag = effectMedia,
    .name = "Audio waveform display",
    .tracks = tracks,
    .checks = checks,
    .proc = processWaveform,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(WaveformData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
