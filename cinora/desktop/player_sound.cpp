#include "cinora/desktop/player_sound.h"

#include <QAudioDevice>
#include <QAudioSink>
#include <QMediaDevices>

namespace cinora::desktop {
namespace {

constexpr qint64 bufferedMicroseconds = 200000;
constexpr int patience = 500;  // ms after which a device that plays nothing is done without

}  // namespace

PlayerSound::PlayerSound(Host& host) : host_(host) {}
PlayerSound::~PlayerSound() { stop(); }

bool PlayerSound::makeBlock(int frame) {
  const ClipFormat& format = host_.edit.format;
  size_t most = static_cast<size_t>(int64_t{format.audioRate} * format.scale / format.rate + 2) * format.audioChannels;
  block_.resize(most);
  int count = hostFunctions.getAudioFiltered(host_.editHandle(), frame, block_.data());
  blockBytes_ = qint64{count} * format.audioChannels * 2;
  written_ = 0;
  return count > 0;
}

void PlayerSound::start(int firstFrame, int lastFrame) {
  stop();
  if (!makeBlock(firstFrame)) return;
  QAudioDevice output = QMediaDevices::defaultAudioOutput();
  format_.setSampleRate(host_.edit.format.audioRate);
  format_.setChannelCount(host_.edit.format.audioChannels);
  format_.setSampleFormat(QAudioFormat::Int16);
  if (output.isNull() || !output.isFormatSupported(format_)) return;
  sink_ = std::make_unique<QAudioSink>(output, format_);
  sink_->setBufferSize(format_.bytesForDuration(bufferedMicroseconds));
  device_ = sink_->start();
  if (!device_ || sink_->error() != QAudio::NoError) return stop();
  next_ = firstFrame + 1;
  last_ = lastFrame;
  lastHeard_ = 0;
  sinceHeard_.start();
  feed();
}

void PlayerSound::stop() {
  if (sink_) sink_->stop();
  sink_.reset();
  device_ = nullptr;
}

void PlayerSound::feed() {
  while (device_) {
    if (written_ == blockBytes_ && (next_ > last_ || !makeBlock(next_++))) return;
    qint64 room = std::min<qint64>(sink_->bytesFree(), blockBytes_ - written_);
    qint64 taken = room > 0 ? device_->write(reinterpret_cast<const char*>(block_.data()) + written_, room) : 0;
    if (taken < 1) return;
    written_ += taken;
  }
}

std::optional<int64_t> PlayerSound::heard() {
  if (!device_) return {};
  qint64 waiting = format_.durationForBytes(static_cast<qint32>(sink_->bufferSize() - sink_->bytesFree()));
  int64_t now = std::max<int64_t>(0, sink_->processedUSecs() - waiting) * 1000;
  if (now > lastHeard_) {
    lastHeard_ = now;
    sinceHeard_.start();
  }
  if (sinceHeard_.elapsed() <= patience) return lastHeard_;
  stop();
  return {};
}

}  // namespace cinora::desktop
