// "Audio file": the sound of a media file. Speed is a matter of rates: the host delivers the file at a virtual rate,
// and its samples are played at the project's.
#include <algorithm>
#include <cstring>

#include "zenlay/effects/definitions.h"
#include "zenlay/media/extra_controls.h"
#include "zenlay/media/media_handles.h"
#include "zenlay/media/sound_time.h"
#include "zenlay/media/video_picture.h"

namespace zenlay {

namespace {

enum AudioFileTrack { trackPosition, trackSpeed };
enum AudioFileCheck { checkLoop, checkSynchronize, checkReference };

struct AudioFileData {
  MediaReference media;
  uint8_t reserved[12];
};
static_assert(sizeof(AudioFileData) == 280);

struct AudioFileState {
  BlockSequence sequence;
  int64_t next;  // sample behind the last block, at `rate`
  int32_t rate;
  bool followedFails;       // the followed object's file could not be opened; asked again when playback starts anew
  MediaReference followed;  // of another file than the object's own
  char failed[sizeof(MediaReference::file)];
};

/// The file to play and how to read it.
struct Source {
  MediaHandle handle;
  HostFileInfo info;
  PositionUnit unit;
  int64_t length;  // of what looping repeats, in seconds as part / whole; whole = 0: the sound itself
};

MediaHandle openFollowed(EffectDefinition* effect, AudioFileState* state, const char* file, HostFileInfo* info) {
  MediaReference& own = extraData<AudioFileData>(effect).media;
  own.file[sizeof own.file - 1] = 0;
  if (strcmp(file, own.file) == 0) return effect->services->openMedia(&own, openAudio, info);
  if (state->followedFails && strcmp(file, state->failed) == 0) return nullptr;
  if (strcmp(file, state->followed.file) != 0) {
    state->followed = {};
    strcpy(state->followed.file, file);
  }
  MediaHandle handle = effect->services->openMedia(&state->followed, uint32_t{openAudio} | mediaQuiet, info);
  state->followedFails = !handle;
  if (!handle) strcpy(state->failed, file);
  return handle;
}

/// The frames of the followed video: as its object found them, else as the file tells.
PositionUnit videoUnit(const VideoData& video, const HostFileInfo& file, const EffectProcessInfo* info) {
  if (video.rate > 0 && video.scale > 0) return {1, video.scale, video.rate};
  if (file.rate > 0 && file.scale > 0) return {1, file.scale, file.rate};
  return {1, info->scale, info->rate};
}

/// Reads `count` sample frames from `at` on. Past the end of what is there, looping goes on from the range's beginning;
/// what is missing is silence. The sample behind the last one.
struct Range {
  int64_t first, last;  // `last` exclusive
  int64_t total;        // samples of the file, which may end before the range does
  bool loop;
};
int64_t readRange(const EffectDefinition* effect, MediaHandle handle, const Range& range, int64_t at, int16_t* to,
                  int count, int channels) {
  int done = 0;
  while (done < count && at >= range.first && at < range.last) {
    int wanted = static_cast<int>(std::min<int64_t>(count - done, range.last - at));
    int16_t* place = to + static_cast<ptrdiff_t>(done) * channels;
    int got = wanted;
    if (at >= range.total) {
      std::fill_n(place, static_cast<size_t>(wanted) * channels, int16_t{0});
    } else {
      wanted = static_cast<int>(std::min<int64_t>(wanted, range.total - at));
      got = at + wanted > INT32_MAX
                ? 0
                : effect->host_functions->readAudioSamples(handle, static_cast<int32_t>(at), wanted, place);
    }
    bool again = range.loop && (got < wanted || at + got == range.last);
    if (got <= 0 && (!again || at == range.first)) break;
    done += std::max(got, 0);
    at = again ? range.first : at + got;
    if (got < wanted && !again) break;
  }
  std::fill_n(to + static_cast<ptrdiff_t>(done) * channels, static_cast<size_t>(count - done) * channels, int16_t{0});
  return range.loop ? at : at + count - done;
}

/// trunc(project rate * 100000 / speed + 0.5).
int32_t virtualRate(int rate, int speed) {
  return static_cast<int32_t>((int64_t{rate} * normalTimeSpeed * 2 + speed) / (2 * int64_t{speed}));
}

/// The sample at which the block begins: the one behind the last block where playback went on, else as the time says.
int64_t firstSample(AudioFileState* state, bool follows, int64_t timed, const Range& range, int32_t rate,
                    const AudioBlock& block) {
  if (!follows || state->rate <= 0) return timed;
  int64_t next = state->rate == rate ? state->next : (state->next * rate + state->rate / 2) / state->rate;
  return hasStrayed(block, next, timed, rate, range.loop ? range.last - range.first : 0) ? timed : next;
}

int play(EffectDefinition* effect, EffectProcessInfo* info, AudioFileState* state, const Source& source,
         ObjectRef player, bool follows) {
  const FrameProcessInfo& host = info->host;
  AudioBlock& block = *info->audio;
  size_t samples = static_cast<size_t>(host.sampleCount) * host.channelCount;
  SoundTime time = soundTimeOf(effect, info, player, source.unit);
  int32_t rate = time.speed >= minSoundSpeed ? virtualRate(block.rate, time.speed) : 0;
  int64_t total = rate > 0 ? effect->host_functions->setAudioSampleRate(source.handle, rate, host.channelCount) : 0;
  Range range{0, total, total, time.loop};
  if (time.ranged) {
    range.first = positionSample(time.rangeFirst, source.unit, rate);
    range.last = positionSample(time.rangeLast, source.unit, rate);
  } else if (time.loop && source.length > 0) {
    range.last = source.length * source.unit.part * rate / source.unit.whole;
  }
  if (source.length == 0) range.last = std::min(range.last, total);
  if (total <= 0 || range.last <= range.first) {
    state->rate = 0;
    std::fill_n(block.samples, samples, int16_t{0});
    return 1;
  }
  int64_t at = firstSample(state, follows, soundSample(time, info, source.unit, rate), range, rate, block);
  if (range.loop) at = wrapSample(at, range.first, range.last);
  state->next = readRange(effect, source.handle, range, at, block.samples, host.sampleCount, host.channelCount);
  state->rate = rate;
  return 1;
}

int processAudioFile(EffectDefinition* effect, EffectProcessInfo* info) {
  const EffectServiceTable* services = effect->services;
  bool created = false;
  auto* state =
      static_cast<AudioFileState*>(services->workMemory(effect->object_ref, sizeof(AudioFileState), &created));
  if (!state) return 0;
  bool follows = continues(&state->sequence, *info->audio) && !created;
  if (!follows) state->followedFails = false;
  ObjectRef followed =
      effect->check[checkSynchronize] ? services->companion(effect->object_ref, videoFileMedia.name) : ObjectRef{0};
  ObjectData data{};
  if (!followed || !services->getObjectData(followed, &data) || !data.extraData) {
    Source own{nullptr, {}, hundredthsOfASecond, 0};
    own.handle = services->openMedia(&extraData<AudioFileData>(effect).media, openAudio, &own.info);
    return own.handle ? play(effect, info, state, own, effect->object_ref, follows) : 0;
  }
  const VideoData& video = *static_cast<const VideoData*>(data.extraData);
  char file[sizeof video.media.file];
  memcpy(file, video.media.file, sizeof file);
  file[sizeof file - 1] = 0;
  Source source{};
  source.handle = *file ? openFollowed(effect, state, file, &source.info) : nullptr;
  if (!source.handle) return 0;
  source.unit = videoUnit(video, source.info, info);
  source.length = video.frameCount > 0 ? video.frameCount : source.info.frameCount;
  return play(effect, info, state, source, followed, follows);
}

constexpr ExtraControl controls[] = {
    {checkReference, extraSound, offsetof(AudioFileData, media)},
};

int handleMessage(void*, uint32_t message, intptr_t wparam, intptr_t lparam, EditHandle edit,
                  EffectDefinition* effect) {
  if (isObjectEvent(message, wparam, lparam, objectDivided)) {
    continueSound(effect, edit, false);
    return 1;
  }
  if (!asksForFileCheck(message, wparam, lparam))
    return operateControls(effect, controls, std::size(controls), message, wparam, lparam);
  constexpr uint32_t flags = uint32_t{openAudio} | mediaQuiet | mediaExistence;
  return effect->services->openMedia(&extraData<AudioFileData>(effect).media, flags, nullptr) != nullptr;
}

// The position in hundredths of a second.
constexpr TrackColumns tracks({
    {"Playback position", 0, 0, 800000, 100, 0, 800000},
    {"vPlay", 1000, 100, 20000, 10, 100, 8000},
});
constexpr CheckColumns checks({
    {"Loop playback", 0},
    {"Sync with video files", 1},
    {"Reference file", checkButton},
});
constexpr ExdataField fields[] = {
    {exdataString, sizeof(MediaReference::file), "file"},
    {exdataReserved, 20, nullptr},
};

}  // namespace

constinit EffectDefinition audioFileMedia = defineEffect({
    .flag = effectMedia | effectAudio,
    .name = "Audio file",
    .tracks = tracks,
    .checks = checks,
    .proc = processAudioFile,
    .window_proc = handleMessage,
    .show_controls = showRows<controls>,
    .exdata_size = sizeof(AudioFileData),
    .exdata_fields = fields,
});

}  // namespace zenlay
