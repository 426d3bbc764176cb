#include "cinora/export/sound_encoder.h"

#include <algorithm>
#include <iterator>
#include <string_view>

extern "C" {
#include <libavutil/opt.h>
}

#include "cinora/support/failure.h"

namespace cinora {
namespace {

/// The user's words for codecs, the encoder that does each best and what it is asked for.
struct CodecRow {
  const char* word;
  const char* encoder;
  int bitRate;  // per channel; 0: lossless, or its quality
  int quality;  // -1: none
  int rate;     // samples per second; 0: as the film's, where the encoder takes it
};
constexpr CodecRow codecTable[] = {
    {"aac", "aac", 96000, -1, 0},
    {"opus", "libopus", 80000, -1, 48000},  // in which its delay is counted, whatever it is given
    {"vorbis", "libvorbis", 0, 6, 0},
    {"flac", "flac", 0, -1, 0},
    {"pcm", "pcm_s16le", 0, -1, 0},
    {"mp3", "libmp3lame", 96000, -1, 0},
    {"ac3", "ac3", 96000, -1, 0},
    {"alac", "alac", 0, -1, 0},
};
constexpr int plainFrame = 1024;  // of encoders that take any number of samples

const AVCodec* findSoundEncoder(const std::string& word, const CodecRow** row) {
  auto found = std::find_if(std::begin(codecTable), std::end(codecTable), [&](auto& r) { return word == r.word; });
  *row = found == std::end(codecTable) ? nullptr : found;
  const AVCodec* encoder = avcodec_find_encoder_by_name(*row ? found->encoder : word.c_str());
  if (!encoder || encoder->type != AVMEDIA_TYPE_AUDIO)
    throw WrongUsage("there is no encoder \"" + word + "\" for sound");
  return encoder;
}

/// The rate itself, else the lowest above it, else the highest.
int chooseRate(const AVCodec* encoder, int wanted) {
  const int* rates = encoder->supported_samplerates;
  if (!rates) return wanted;
  int above = 0, highest = 0;
  for (; *rates; rates++) {
    highest = std::max(highest, *rates);
    if (*rates >= wanted && (above == 0 || *rates < above)) above = *rates;
  }
  return above ? above : highest;
}

/// 16 bits where the encoder takes them, as the film's sound has.
AVSampleFormat chooseFormat(const AVCodec* encoder) {
  const AVSampleFormat* formats = encoder->sample_fmts;
  if (!formats) return AV_SAMPLE_FMT_S16;
  for (const AVSampleFormat* f = formats; *f != AV_SAMPLE_FMT_NONE; f++)
    if (*f == AV_SAMPLE_FMT_S16 || *f == AV_SAMPLE_FMT_S16P) return *f;
  return formats[0];
}

AvCodec openSoundEncoder(const AVCodec* encoder, const CodecRow* row, int rate, int channels, int flags) {
  AvCodec codec(avcodec_alloc_context3(encoder));
  if (!codec) throw Failure("out of memory");
  codec->sample_rate = chooseRate(encoder, row && row->rate > 0 ? row->rate : rate);
  codec->sample_fmt = chooseFormat(encoder);
  av_channel_layout_default(&codec->ch_layout, channels);
  codec->time_base = {1, codec->sample_rate};
  codec->flags |= flags;
  codec->strict_std_compliance = FF_COMPLIANCE_NORMAL;
  if (row && row->bitRate > 0) codec->bit_rate = int64_t{row->bitRate} * channels;
  if (encoder->id == AV_CODEC_ID_MP3) av_opt_set_int(codec->priv_data, "reservoir", 0, 0);  // any packet stands alone
  if (row && row->quality >= 0) {
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = row->quality * FF_QP2LAMBDA;
  }
  int result = avcodec_open2(codec.get(), encoder, nullptr);
  if (result < 0) throw Failure(std::string("encoder ") + encoder->name + " cannot be opened: " + ffmpegError(result));
  return codec;
}

AvResampler makeConverter(AVCodecContext* codec, int rate) {
  SwrContext* made = nullptr;
  int result = swr_alloc_set_opts2(&made, &codec->ch_layout, codec->sample_fmt, codec->sample_rate, &codec->ch_layout,
                                   AV_SAMPLE_FMT_S16, rate, 0, nullptr);
  AvResampler converter(made);
  if (result >= 0 && rate != codec->sample_rate) {
    av_opt_set_sample_fmt(made, "internal_sample_fmt", AV_SAMPLE_FMT_FLTP, 0);
    av_opt_set_int(made, "filter_size", 64, 0);
    av_opt_set_int(made, "exact_rational", 1, 0);
  }
  if (result < 0 || swr_init(made) < 0) throw Failure("the sound cannot be converted for the encoder");
  return converter;
}

}  // namespace

SoundEncoder::SoundEncoder(Container& container, const std::string& word, int rate, int channels)
    : container_(container), converted_(av_frame_alloc()) {
  if (!converted_) throw Failure("out of memory");
  const CodecRow* row;
  const AVCodec* encoder = findSoundEncoder(word, &row);
  container_.checkHolds(encoder);
  codec_ = openSoundEncoder(encoder, row, rate, channels, container_.encoderFlags());
  stream_ = container_.addStream(codec_.get());
  converter_ = makeConverter(codec_.get(), rate);
  bool planar = av_sample_fmt_is_planar(codec_->sample_fmt);
  planes_.resize(planar ? channels : 1);
  sampleBytes_ = av_get_bytes_per_sample(codec_->sample_fmt) * (planar ? 1 : channels);
}

/// Appends what the converter makes of the samples (null: what it still holds) to what waits.
void SoundEncoder::convert(const int16_t* samples, int count) {
  int room = swr_get_out_samples(converter_.get(), count);
  if (room <= 0) return;
  uint8_t* out[AV_NUM_DATA_POINTERS] = {};
  for (size_t i = 0; i < planes_.size(); i++) {
    planes_[i].resize(static_cast<size_t>(waiting_ + room) * sampleBytes_);
    out[i] = planes_[i].data() + static_cast<size_t>(waiting_) * sampleBytes_;
  }
  auto* in = reinterpret_cast<const uint8_t*>(samples);
  int made = swr_convert(converter_.get(), out, room, samples ? &in : nullptr, count);
  container_.check(made, "cannot be encoded");
  waiting_ += made;
}

/// Gives the encoder every whole frame that waits, and the rest when it is the last.
void SoundEncoder::encodeFull(bool last) {
  int size = codec_->frame_size > 0 ? codec_->frame_size : plainFrame;
  int done = 0;
  while (waiting_ - done >= size || (last && done < waiting_)) {
    int count = std::min(size, waiting_ - done);
    AVFrame* frame = converted_.get();
    av_frame_unref(frame);
    frame->nb_samples = count;
    frame->format = codec_->sample_fmt;
    frame->sample_rate = codec_->sample_rate;
    av_channel_layout_copy(&frame->ch_layout, &codec_->ch_layout);
    if (av_frame_get_buffer(frame, 0) < 0) throw Failure("out of memory");
    for (size_t i = 0; i < planes_.size(); i++)
      std::copy_n(planes_[i].begin() + static_cast<ptrdiff_t>(done) * sampleBytes_,
                  static_cast<size_t>(count) * sampleBytes_, frame->extended_data[i]);
    frame->pts = position_;
    container_.encode(codec_.get(), stream_, frame, 0);
    position_ += count;
    done += count;
  }
  for (auto& plane : planes_) plane.erase(plane.begin(), plane.begin() + static_cast<ptrdiff_t>(done) * sampleBytes_);
  waiting_ -= done;
}

void SoundEncoder::write(const int16_t* samples, int count) {
  if (count <= 0) return;
  convert(samples, count);
  encodeFull(false);
}

void SoundEncoder::finish() {
  convert(nullptr, 0);
  encodeFull(true);
  container_.encode(codec_.get(), stream_, nullptr, 0);
}

}  // namespace cinora
