#include "cinora/sound/sound_decoder.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <new>
#include <string_view>

namespace cinora {
namespace {

constexpr int maxChannels = 64;
constexpr int maxFailures = 1000;   // packets in a row that cannot be decoded
constexpr int maxSeekFailures = 3;  // in a row; from then on the file is read from its beginning
constexpr int prerollSeconds = 1;   // decoded ahead of what is wanted
constexpr int segmentSeconds = 10;
constexpr int seekSeconds[] = {0, 5, 30};  // farther back, until the container comes out early enough
constexpr int forwardSeconds = 2;          // nearer than this is decoded up to, not sought
constexpr int keptParts = 8;               // an eighth of a second behind what was read last stays
constexpr int maxGapSeconds = 10;          // between frames; longer ones are taken for damaged times

/// Codecs whose frames all have the same number of samples: a time rounded to milliseconds still tells which one it is.
constexpr AVCodecID evenCodecs[] = {AV_CODEC_ID_AAC, AV_CODEC_ID_MP3,  AV_CODEC_ID_MP2,
                                    AV_CODEC_ID_AC3, AV_CODEC_ID_EAC3, AV_CODEC_ID_OPUS};

/// Containers that find a place by counting bytes, which tells no time unless the samples are stored plainly.
constexpr const char* byteContainers[] = {"wav", "w64", "aiff", "au", "caf", "voc"};

bool tellsTimes(const AVFormatContext* container, AVCodecID codec) {
  auto is = [&](const char* name) { return std::string_view(container->iformat->name) == name; };
  bool counts = std::any_of(std::begin(byteContainers), std::end(byteContainers), is);
  return !counts || av_get_exact_bits_per_sample(codec) >= 8;
}

/// Bytes of a sample frame that is stored as 16-bit samples are held; 0 for anything else.
int plainBytes(const AVFormatContext* container, const AVCodecParameters& codec) {
  bool plain = std::endian::native == std::endian::little && codec.codec_id == AV_CODEC_ID_PCM_S16LE &&
               codec.block_align == 2 * codec.ch_layout.nb_channels;
  std::string_view name = container->iformat->name;
  return plain && (name == "wav" || name == "w64") ? codec.block_align : 0;
}

bool isLossless(AVCodecID codec) {
  const AVCodecDescriptor* about = avcodec_descriptor_get(codec);
  return about && about->props & AV_CODEC_PROP_LOSSLESS && !(about->props & AV_CODEC_PROP_LOSSY);
}

/// Cover pictures are no film.
const AVStream* pictureStream(AVFormatContext* container) {
  int best = av_find_best_stream(container, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (best < 0 || container->streams[best]->disposition & AV_DISPOSITION_ATTACHED_PIC) return nullptr;
  return container->streams[best];
}

int64_t inSamples(int64_t time, AVRational base, int rate) { return av_rescale_q(time, base, AVRational{1, rate}); }

}  // namespace

bool SoundDecoder::open(const std::string& url, std::string& error) {
  packet_.reset(av_packet_alloc());
  frame_.reset(av_frame_alloc());
  if (!packet_ || !frame_) throw std::bad_alloc();
  if (!reader_.open(url, error)) return false;
  error = "There is no sound in it that can be read";
  AVFormatContext* container = reader_.container();
  int stream = av_find_best_stream(container, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
  if (stream < 0 || !reader_.select(stream) || !openCodec()) return false;
  while (!ended_ && !nextFrame()) {
  }
  if (ended_ || frame_->sample_rate <= 0 || frame_->ch_layout.nb_channels < 1 ||
      frame_->ch_layout.nb_channels > maxChannels)
    return false;
  const AVStream& sound = *reader_.selected();
  const AVCodecTag* const tables[] = {avformat_get_riff_audio_tags(), nullptr};
  facts_.rate = frame_->sample_rate;
  facts_.channels = frame_->ch_layout.nb_channels;
  facts_.tag =
      sound.codecpar->codec_tag ? sound.codecpar->codec_tag : av_codec_get_tag(tables, sound.codecpar->codec_id);
  if (sound.duration > 0)
    facts_.samples = inSamples(sound.duration, sound.time_base, facts_.rate);
  else if (container->duration > 0)
    facts_.samples = inSamples(container->duration, AVRational{1, AV_TIME_BASE}, facts_.rate);
  findOrigin();
  findGrid();
  plainBytes_ = timesExact_ && origin_ == 0 ? plainBytes(container, *sound.codecpar) : 0;
  return restart();
}

/// The packets tell whether samples lie in the file as their numbers say.
void SoundDecoder::followPlain(const AVPacket& packet) {
  if (plainBytes_ == 0) return;
  int64_t sample = inSamples(packet.pts, reader_.selected()->time_base, facts_.rate);
  int64_t offset = packet.pos - sample * plainBytes_;
  if (plainOffset_ < 0) plainOffset_ = offset;
  if (packet.pos < 0 || packet.pts < 0 || offset != plainOffset_) plainBytes_ = 0;
}

int64_t SoundDecoder::plainOffset() const { return plainBytes_ > 0 && length_ >= 0 ? plainOffset_ : -1; }

bool SoundDecoder::openCodec() {
  const AVCodecParameters* parameters = reader_.parameters();
  const AVCodec* decoder = avcodec_find_decoder(parameters->codec_id);
  codec_.reset(decoder ? avcodec_alloc_context3(decoder) : nullptr);
  if (!codec_ || avcodec_parameters_to_context(codec_.get(), parameters) < 0) return false;
  codec_->pkt_timebase = reader_.selected()->time_base;
  codec_->thread_count = 1;
  return avcodec_open2(codec_.get(), decoder, nullptr) >= 0;
}

void SoundDecoder::findOrigin() {
  const AVStream* pictures = pictureStream(reader_.container());
  if (pictures && pictures->start_time != AV_NOPTS_VALUE) {
    origin_ = inSamples(pictures->start_time, pictures->time_base, facts_.rate);
  } else if (frame_->best_effort_timestamp != AV_NOPTS_VALUE) {
    origin_ = inSamples(frame_->best_effort_timestamp, reader_.selected()->time_base, facts_.rate);
  }
  if (!pictures) return;
  facts_.videoRate = pictures->avg_frame_rate.num;
  facts_.videoScale = pictures->avg_frame_rate.den;
  facts_.videoFrames = static_cast<int32_t>(std::min<int64_t>(pictures->nb_frames, INT32_MAX));
}

/// Looks at the first frames, which the decoder has begun to deliver.
void SoundDecoder::findGrid() {
  AVCodecID codec = reader_.parameters()->codec_id;
  AVRational base = reader_.selected()->time_base;
  timesExact_ = base.num == 1 && base.den % facts_.rate == 0;
  bool even = std::find(std::begin(evenCodecs), std::end(evenCodecs), codec) != std::end(evenCodecs);
  if (!timesExact_ && even) {
    int64_t at = placeOf(*frame_) + frame_->nb_samples;  // the first frame may have lost its beginning
    if (nextFrame()) {
      grid_ = frame_->nb_samples;
      gridAt_ = at;
    }
  }
  seekable_ = (timesExact_ || grid_ > 0) && tellsTimes(reader_.container(), codec);
  segmented_ = seekable_ && !isLossless(codec);
}

/// To the beginning. Where times tell all, that is no farther than a seek; opening the file anew takes longer.
bool SoundDecoder::restart() {
  if (held_) av_packet_unref(packet_.get());
  held_ = waiting_ = ended_ = placed_ = sought_ = false;
  const AVStream* stream = reader_.selected();
  int64_t begin = stream->start_time == AV_NOPTS_VALUE ? 0 : stream->start_time;
  bool sought = seekable_ && !segmented_ && timesExact_ && reader_.seek(begin);
  return (sought || reader_.restart()) && openCodec();
}

void SoundDecoder::setChannels(int channels) {
  if (channels == channels_) return;
  channels_ = channels;
  window_.clear();
  windowFirst_ = INT64_MAX;  // nothing lies in it
}

/// The first sample of the frame by its time; the one behind the last frame where that has no say.
int64_t SoundDecoder::placeOf(const AVFrame& frame) const {
  if (frame.best_effort_timestamp == AV_NOPTS_VALUE) return placed_ ? next_ : 0;
  int64_t at = inSamples(frame.best_effort_timestamp, reader_.selected()->time_base, facts_.rate) - origin_;
  if (grid_ > 0 && (placed_ || sought_)) {
    int64_t off = at - gridAt_;
    at = gridAt_ + (off >= 0 ? off + grid_ / 2 : off - grid_ / 2) / grid_ * grid_;
  }
  if (!placed_) return at;
  int64_t apart = std::abs(at - next_);
  bool rounded = !timesExact_ && apart < (grid_ > 0 ? grid_ : facts_.rate / 10);
  return rounded || apart > int64_t{maxGapSeconds} * facts_.rate ? next_ : at;
}

/// The next frame into `frame_`. False at the end.
bool SoundDecoder::nextFrame() {
  for (int failures = 0; !ended_;) {
    int result = avcodec_receive_frame(codec_.get(), frame_.get());
    if (result == 0) {
      if (frame_->nb_samples > 0) return true;
    } else if (result == AVERROR(EAGAIN)) {
      bool more = held_ || reader_.next(packet_.get());
      held_ = false;
      if (more) followPlain(*packet_);
      avcodec_send_packet(codec_.get(), more ? packet_.get() : nullptr);  // a refused packet is a gap
      if (more) av_packet_unref(packet_.get());
    } else {
      ended_ = result == AVERROR_EOF || ++failures > maxFailures;
    }
  }
  return false;
}

/// What lies before the window's end is passed over, a gap before it becomes silence.
void SoundDecoder::append(int64_t at, const float* samples, int64_t count) {
  int64_t end = windowEnd();
  if (at + count <= end) return;
  if (at > end) {
    window_.resize(window_.size() + static_cast<size_t>(at - end) * channels_);
    end = at;
  }
  window_.insert(window_.end(), samples + (end - at) * channels_, samples + count * channels_);
}

/// Decodes a frame more, or a second of the silence before it; false at the end.
bool SoundDecoder::decodeMore() {
  if (windowEnd() >= segmentEnd_ && !ended_) position(windowEnd());
  if (!waiting_) {
    if (!nextFrame()) return false;
    next_ = placeOf(*frame_) + frame_->nb_samples;
    placed_ = true;
  }
  const int64_t at = next_ - frame_->nb_samples, silent = windowEnd() + facts_.rate;
  waiting_ = at > silent && silent < segmentEnd_;
  if (waiting_) {
    window_.resize(window_.size() + static_cast<size_t>(facts_.rate) * channels_);
    return true;
  }
  size_t samples = static_cast<size_t>(frame_->nb_samples) * channels_;
  if (at == windowEnd() && next_ <= segmentEnd_) {
    window_.resize(window_.size() + samples);
    mixer_.mix(*frame_, channels_, window_.data() + window_.size() - samples);
  } else if (next_ > windowEnd()) {
    mixed_.resize(samples);
    mixer_.mix(*frame_, channels_, mixed_.data());
    append(std::min(at, segmentEnd_), mixed_.data(), std::clamp<int64_t>(segmentEnd_ - at, 0, frame_->nb_samples));
  }
  return true;
}

/// Brings the first packet at or behind `time` into `packet_`, wherever the container came out before it.
bool SoundDecoder::seekBefore(int64_t time) {
  AVRational base = reader_.selected()->time_base;
  for (int back : seekSeconds) {
    if (!reader_.seek(time - av_rescale_q(back, AVRational{1, 1}, base))) continue;
    bool early = false;
    while (reader_.next(packet_.get())) {
      if (packet_->pts == AV_NOPTS_VALUE) break;
      if (packet_->pts >= time) {
        held_ = early || packet_->pts == time;
        if (held_) return true;
        break;
      }
      early = true;
      av_packet_unref(packet_.get());
    }
    av_packet_unref(packet_.get());
  }
  return false;
}

/// Nearer, the decoder begins with the file.
bool SoundDecoder::farBehindBeginning(int64_t sample) const {
  return sample > int64_t{prerollSeconds + 1} * facts_.rate;
}

/// Starts the decoder anew so far ahead of the sample that it delivers it whole. False when there is no telling where.
bool SoundDecoder::decodeFrom(int64_t sample) {
  if (!seekable_ || !farBehindBeginning(sample)) return false;
  int64_t from = sample - int64_t{prerollSeconds} * facts_.rate;
  if (held_) av_packet_unref(packet_.get());
  held_ = waiting_ = ended_ = placed_ = false;
  sought_ = true;
  AVRational base = reader_.selected()->time_base;
  // The first frame is passed over: a new decoder may cut it off as it would the beginning of the file.
  return seekBefore(av_rescale_q(from + origin_, AVRational{1, facts_.rate}, base)) && openCodec() && nextFrame();
}

/// Gets ready to decode `sample` next. A window that does not end there is begun anew.
void SoundDecoder::position(int64_t sample) {
  if (windowFirst_ > sample || windowEnd() != sample) {
    window_.clear();
    windowFirst_ = sample;
  }
  int64_t segment = int64_t{segmentSeconds} * facts_.rate;
  int64_t from = segmented_ ? sample / segment * segment : sample;
  bool sought = decodeFrom(from);
  if (sought) seekFailures_ = 0;
  if (!sought && farBehindBeginning(from)) seekFailures_++;
  if (seekFailures_ >= maxSeekFailures) seekable_ = segmented_ = false;
  segmentEnd_ = segmented_ ? (sample / segment + 1) * segment : INT64_MAX;
  if (!sought && !restart()) ended_ = true;
}

int64_t SoundDecoder::length() {
  if (length_ >= 0) return length_;
  auto decodeAll = [this] {
    while (nextFrame()) {
      next_ = placeOf(*frame_) + frame_->nb_samples;
      placed_ = true;
    }
    return placed_;
  };
  bool found = false;
  int64_t from = facts_.samples - facts_.rate;
  for (int tries = 0; !found && tries < 3; tries++, from /= 2)  // the container may have told too much
    found = decodeFrom(from) && decodeAll();
  if (!found && restart()) found = decodeAll();
  length_ = found ? std::max<int64_t>(next_, 0) : 0;
  windowFirst_ = INT64_MAX;
  return length_;
}

template <class Sample, class Convert>
void SoundDecoder::readAs(int64_t first, int count, Sample* out, Convert convert) {
  int64_t begin = std::max<int64_t>(first, 0), end = first + count;
  if (windowFirst_ > begin || begin > windowEnd() + int64_t{forwardSeconds} * facts_.rate) position(begin);
  int64_t kept = facts_.rate / keptParts;
  if (begin - windowFirst_ > 2 * kept) {
    int64_t dropped = std::min(begin - kept, windowEnd()) - windowFirst_;
    window_.erase(window_.begin(), window_.begin() + dropped * channels_);
    windowFirst_ += dropped;
  }
  while (windowEnd() < end && decodeMore()) {
  }
  int64_t last = std::clamp(windowEnd(), begin, std::max(end, begin));
  auto at = [&](int64_t sample) { return out + std::clamp<int64_t>(sample - first, 0, count) * channels_; };
  std::fill(out, at(begin), Sample{});
  const float* from = window_.data() + (begin - windowFirst_) * channels_;
  std::transform(from, from + (last - begin) * channels_, at(begin), convert);
  std::fill(at(last), at(end), Sample{});
}

void SoundDecoder::read(int64_t first, int count, float* out) {
  readAs(first, count, out, [](float value) { return value; });
}

void SoundDecoder::read(int64_t first, int count, int16_t* out) {
  readAs(first, count, out, [](float value) { return toSample(value); });
}

}  // namespace cinora
