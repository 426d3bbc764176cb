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
  int16_t shape[5];
  uint8_t mirror;
};
constexpr int16_t WaveformData::*shapeFields[] = {&WaveformData::mode, &WaveformData::res_w, &WaveformData::res_h,
                                                  &WaveformData::pad_w, &WaveformData::pad_h};
constexpr Preset presets[] = {
    {{modeLine, 0, 0, 0, 0}, 0},      // every sample
    {{modeLine, 64, 0, 0, 0}, 1},     // few points and their mirror image
    {{modeBars, 32, 0, 25, 0}, 0},    // bars
    {{modeBars, 32, 24, 25, 40}, 0},  // bars of steps
    {{modeBars, 64, 0, 40, 0}, 1},    // bars around the middle line
};

constexpr int maxShownSeconds = 10;
constexpr int maxResolution = 2000;  // of a picture's sides, too
constexpr double quietest = 60.0;    // dB below full scale, where bars begin

/// The sound around the frame, and which of it is shown.
struct ShownSound {
  int rate, channels;
  int rateOfFilm, scaleOfFilm;  // frames per second = rate / scale
  int64_t from;                 // samples behind the first of the frame
  int count;

  int64_t frameSample(int64_t frame) const { return frame * scaleOfFilm * rate / rateOfFilm; }
  int frameSamples() const { return static_cast<int>(frameSample(1)) + 1; }  // at most
};

/// (L + R) / 2 of the first two channels.
void toMono(int16_t* mono, const int16_t* samples, int64_t count, int channels) {
  for (int64_t i = 0; i < count; i++, samples += channels)
    mono[i] = channels == 1 ? samples[0] : static_cast<int16_t>((samples[0] + samples[1]) / 2);
}

/// The edit's own sound around the host's frame. `block` holds a frame of it.
void readOriginal(const EffectDefinition* effect, const EffectProcessInfo* info, const ShownSound& sound, int16_t* mono,
                  int16_t* block) {
  const int64_t from = sound.frameSample(info->hostFrame) + sound.from, to = from + sound.count;
  int frame = info->hostFrame;
  while (frame > 0 && sound.frameSample(frame) > from) frame--;
  for (int64_t first = sound.frameSample(frame), length; first < to; frame++, first += length) {
    const int got = effect->host_functions->getAudioFiltered(info->host.edit, frame, block);
    length = got > 0 ? got : sound.frameSample(int64_t{frame} + 1) - first;
    const int64_t begin = std::max(first, from), end = std::min(first + got, to);
    if (begin < end)
      toMono(mono + (begin - from), block + (begin - first) * sound.channels, end - begin, sound.channels);
  }
}

/// The sample that the frame begins with. A still position goes on with the film, a moving one from its first value to
/// its last.
int64_t filePosition(const EffectDefinition* effect, const EffectProcessInfo* info, int rate) {
  const int64_t start = effect->track_begin_values[trackPosition];
  const int64_t position = start * rate / 100;
  if (!moves(effect->track_modes[trackPosition])) {
    const int64_t elapsed = int64_t{info->host.frameNumber} * 100 + info->subFrame;
    return position + static_cast<int64_t>(__int128{elapsed} * info->scale * rate / (100 * int64_t{info->rate}));
  }
  const int64_t frames = std::max(effect->frame_end - effect->frame_begin, 1);
  const int64_t elapsed = (int64_t{info->absoluteFrame} - effect->frame_begin) * 100 + info->subFrame;
  const __int128 way = effect->track_end_values[trackPosition] - start;
  return position + static_cast<int64_t>(way * elapsed * rate / (frames * 10000));
}

/// The object's file around its position.
void readFile(EffectDefinition* effect, const EffectProcessInfo* info, const ShownSound& sound, int16_t* mono,
              int16_t* block) {
  MediaHandle handle = effect->services->openMedia(&extraData<WaveformData>(effect).media, openAudio, nullptr);
  if (!handle) return;
  const int64_t total = effect->host_functions->setAudioSampleRate(handle, sound.rate, sound.channels);
  const int64_t from = filePosition(effect, info, sound.rate) + sound.from, to = std::min(from + sound.count, total);
  for (int64_t at = std::max<int64_t>(from, 0); at < to;) {
    const int wanted = static_cast<int>(std::min<int64_t>(to - at, sound.frameSamples()));
    const int got = effect->host_functions->readAudioSamples(handle, static_cast<int32_t>(at), wanted, block);
    if (got <= 0) return;
    toMono(mono + (at - from), block, got, sound.channels);
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
  ObjectPixel colour;
  effect->services->convertRgb(&colour, bitmap, 1, 1, 24);
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

/// A frame's samples, or more or fewer of them around its middle.
ShownSound shownSound(const EffectProcessInfo* info, const WaveformData& data, const HostFileInfo* clip) {
  constexpr int fallbackRate = 44100, fallbackChannels = 2;
  ShownSound sound{clip ? clip->audioRate : fallbackRate,
                   clip ? clip->audioChannels : fallbackChannels,
                   info->rate,
                   info->scale,
                   0,
                   0};
  const int64_t ofFrame = sound.frameSample(int64_t{info->hostFrame} + 1) - sound.frameSample(info->hostFrame);
  const int64_t wanted = data.sample_n > 0 ? int64_t{data.sample_n} : ofFrame;
  const int64_t fewest = data.mode == modeBars ? spectrumBlock : 2;
  sound.count = static_cast<int>(std::clamp<int64_t>(wanted, fewest, int64_t{maxShownSeconds} * sound.rate));
  sound.from = (ofFrame - sound.count) / 2;
  return sound;
}

int processWaveform(EffectDefinition* effect, EffectProcessInfo* info) {
  const HostFunctionTable* host = effect->host_functions;
  if (info->rate <= 0 || info->scale <= 0) return 0;
  HostFileInfo file{};
  bool hasSound = host->getFileInfo(info->host.edit, &file) && file.flags & fileHasAudio && file.audioRate > 0;
  const ShownSound sound = shownSound(info, extraData<WaveformData>(effect), hasSound ? &file : nullptr);
  if (sound.channels < 1 || sound.frameSample(1) > int64_t{maxShownSeconds} * sound.rate) return 0;

  const int frameSamples = sound.frameSamples();  // blocks differ by one, the memory must not
  size_t samples =
      static_cast<size_t>(std::max(sound.count, frameSamples)) + static_cast<size_t>(frameSamples) * sound.channels;
  bool created;
  auto* mono =
      static_cast<int16_t*>(effect->services->workMemory(effect->object_ref, samples * sizeof(int16_t), &created));
  if (!mono) return 0;
  int16_t* block = mono + sound.count;
  std::fill_n(mono, sound.count, int16_t{0});
  if (!effect->check[checkOriginal])
    readFile(effect, info, sound, mono, block);
  else if (hasSound)
    readOriginal(effect, info, sound, mono, block);
  int gain = effect->track[trackVolume] * soundOne / 1000;
  if (gain != soundOne) amplifySamples(mono, sound.count, gain);
  draw(effect, info, mono, sound.count);
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
int choosePreset(EffectDefinition* effect, intptr_t index) {
  if (index < 0 || index >= static_cast<intptr_t>(std::size(presets))) return 0;
  effect->services->recordUndo(effect->object_ref);
  WaveformData& data = extraData<WaveformData>(effect);
  data.type = static_cast<int16_t>(index);
  for (size_t i = 0; i < std::size(shapeFields); i++) data.*shapeFields[i] = presets[index].shape[i];
  data.mirror = presets[index].mirror;
  effect->services->objectChanged(effect->object_ref);
  return 1;
}

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle, EffectDefinition* effect) {
  if (isCommand(message, wparam, commandDropDown)) return choosePreset(effect, lparam);
  if (!asksForFileCheck(message, wparam, lparam))
    return operateControls(effect, controls, std::size(controls), message, wparam, lparam);
  constexpr uint32_t flags = uint32_t{openAudio} | mediaQuiet | mediaExistence;
  return effect->services->openMedia(&extraData<WaveformData>(effect).media, flags, nullptr) != nullptr;
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
constexpr WaveformData defaults = {.media = {},
                                   .reserved = {},
                                   .type = 0,
                                   .mode = modeLine,
                                   .res_w = 0,
                                   .res_h = 0,
                                   .pad_w = 0,
                                   .pad_h = 0,
                                   .color = {255, 255, 255},
                                   .reserved2 = 0,
                                   .sample_n = 0,
                                   .mirror = 0,
                                   .reserved3 = {}};

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
