#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QMediaDevices>
#include <QPointer>
#include <algorithm>
#include <vector>

#include "cinora/desktop/sound_device.h"
#include "cinora/support/av_handles.h"

namespace cinora::desktop {
namespace {

constexpr qint64 bufferedMicroseconds = 400000;  // a frame that takes as long to make leaves no gap
constexpr int converterSlack = 64;               // sample frames it may give more than the rates say

AVSampleFormat formatOf(QAudioFormat::SampleFormat format) {
  switch (format) {
    case QAudioFormat::UInt8:
      return AV_SAMPLE_FMT_U8;
    case QAudioFormat::Int16:
      return AV_SAMPLE_FMT_S16;
    case QAudioFormat::Int32:
      return AV_SAMPLE_FMT_S32;
    case QAudioFormat::Float:
      return AV_SAMPLE_FMT_FLT;
    default:
      return AV_SAMPLE_FMT_NONE;
  }
}

/// Null when there is no way from the one to the other.
AvResampler makeConverter(int rate, int channels, const QAudioFormat& to) {
  AVChannelLayout in{}, out{};
  av_channel_layout_default(&in, channels);
  av_channel_layout_default(&out, to.channelCount());
  SwrContext* made = nullptr;
  int result = swr_alloc_set_opts2(&made, &out, formatOf(to.sampleFormat()), to.sampleRate(), &in, AV_SAMPLE_FMT_S16,
                                   rate, 0, nullptr);
  AvResampler converter(made);
  av_channel_layout_uninit(&in);
  av_channel_layout_uninit(&out);
  if (result < 0 || swr_init(made) < 0) return nullptr;
  return converter;
}

class SystemSound : public SoundDevice {
 public:
  SystemSound(const QAudioDevice& device, const QAudioFormat& format, AvResampler converter, int rate)
      : format_(format), sink_(device, format), converter_(std::move(converter)), rate_(rate) {
    sink_.setBufferSize(format.bytesForDuration(bufferedMicroseconds));
    stream_ = sink_.start();
  }
  ~SystemSound() override { sink_.stop(); }
  bool works() const { return stream_ && sink_.error() == QAudio::NoError; }

  int64_t room() override {
    flush();
    if (!stream_ || !waiting_.empty()) return 0;
    int64_t frames = sink_.bytesFree() / format_.bytesPerFrame();
    return converter_ ? std::max<int64_t>(frames * rate_ / format_.sampleRate() - converterSlack, 0) : frames;
  }

  void write(const int16_t* samples, int64_t count) override {
    auto* in = reinterpret_cast<const uint8_t*>(samples);
    if (!converter_) {
      waiting_.assign(in, in + count * format_.bytesPerFrame());
    } else {
      int most = swr_get_out_samples(converter_.get(), static_cast<int>(count));
      waiting_.resize(static_cast<size_t>(std::max(most, 0)) * format_.bytesPerFrame());
      uint8_t* out = waiting_.data();
      int made = swr_convert(converter_.get(), &out, most, &in, static_cast<int>(count));
      waiting_.resize(static_cast<size_t>(std::max(made, 0)) * format_.bytesPerFrame());
    }
    flush();
  }

  int64_t heard() override {
    qint64 ahead = format_.durationForBytes(static_cast<qint32>(sink_.bufferSize() - sink_.bytesFree()));
    return std::max<qint64>(0, sink_.processedUSecs() - ahead) * rate_ / 1000000;
  }

 private:
  void flush() {
    if (!stream_) waiting_.clear();
    if (waiting_.empty()) return;
    qint64 taken = stream_->write(reinterpret_cast<const char*>(waiting_.data()), static_cast<qint64>(waiting_.size()));
    waiting_.erase(waiting_.begin(), waiting_.begin() + std::max<qint64>(taken, 0));
  }

  QAudioFormat format_;
  QAudioSink sink_;
  QPointer<QIODevice> stream_;  // goes with the device
  AvResampler converter_;       // null: the device takes the film's samples
  int rate_;                    // of the film
  std::vector<uint8_t> waiting_;
};

}  // namespace

std::unique_ptr<SoundDevice> openSystemSound(int rate, int channels) {
  QAudioDevice device = QMediaDevices::defaultAudioOutput();
  if (device.isNull()) return nullptr;
  QAudioFormat format;
  format.setSampleRate(rate);
  format.setChannelCount(channels);
  format.setSampleFormat(QAudioFormat::Int16);
  AvResampler converter;
  if (!device.isFormatSupported(format)) {
    format = device.preferredFormat();
    converter = format.isValid() ? makeConverter(rate, channels, format) : nullptr;
    if (!converter) return nullptr;
  }
  auto opened = std::make_unique<SystemSound>(device, format, std::move(converter), rate);
  return opened->works() ? std::move(opened) : nullptr;
}

}  // namespace cinora::desktop
