#include "cinora/desktop/player_sound.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>

namespace cinora::desktop {
namespace {

constexpr qint64 bufferedMicroseconds = 200000;
constexpr int patience = 500;  // ms after which a device that plays nothing is done without

}  // namespace

struct PlayerSound::Output {
  Output(const QAudioDevice& device, const QAudioFormat& format) : format(format), sink(device, format) {
    sink.setBufferSize(format.bytesForDuration(bufferedMicroseconds));
    stream = sink.start();
  }
  ~Output() { sink.stop(); }

  QAudioFormat format;
  QAudioSink sink;
  QIODevice* stream;
};

PlayerSound::PlayerSound(Host& host) : host_(host) {}
PlayerSound::~PlayerSound() = default;

bool PlayerSound::makeBlock(int frame) {
  const ClipFormat& format = host_.edit.format;
  size_t most = static_cast<size_t>(int64_t{format.audioRate} * format.scale / format.rate + 2) * format.audioChannels;
  block_.resize(most);
  int count = hostFunctions.getAudioFiltered(host_.editHandle(), frame, block_.data());
  blockBytes_ = int64_t{count} * format.audioChannels * 2;
  written_ = 0;
  return count > 0;
}

void PlayerSound::start(int firstFrame, int lastFrame) {
  stop();
  if (!makeBlock(firstFrame)) return;
  QAudioDevice device = QMediaDevices::defaultAudioOutput();
  QAudioFormat format;
  format.setSampleRate(host_.edit.format.audioRate);
  format.setChannelCount(host_.edit.format.audioChannels);
  format.setSampleFormat(QAudioFormat::Int16);
  if (device.isNull() || !device.isFormatSupported(format)) return;
  output_ = std::make_unique<Output>(device, format);
  if (!output_->stream || output_->sink.error() != QAudio::NoError) return stop();
  next_ = firstFrame + 1;
  last_ = lastFrame;
  lastHeard_ = 0;
  sinceHeard_.start();
  feed();
}

void PlayerSound::stop() { output_.reset(); }

void PlayerSound::feed() {
  while (output_) {
    if (written_ == blockBytes_ && (next_ > last_ || !makeBlock(next_++))) return;
    int64_t room = std::min<int64_t>(output_->sink.bytesFree(), blockBytes_ - written_);
    const char* waiting = reinterpret_cast<const char*>(block_.data()) + written_;
    int64_t taken = room > 0 ? output_->stream->write(waiting, room) : 0;
    if (taken < 1) return;
    written_ += taken;
  }
}

std::optional<int64_t> PlayerSound::heard() {
  if (!output_) return {};
  const QAudioSink& sink = output_->sink;
  int64_t waiting = output_->format.durationForBytes(static_cast<qint32>(sink.bufferSize() - sink.bytesFree()));
  int64_t now = std::max<int64_t>(0, sink.processedUSecs() - waiting) * 1000;
  if (now > lastHeard_) {
    lastHeard_ = now;
    sinceHeard_.start();
  }
  if (sinceHeard_.elapsed() <= patience) return lastHeard_;
  stop();
  return {};
}

}  // namespace cinora::desktop
