#include "cinora/sound_reader.h"

#include <algorithm>
#include <numeric>

extern "C" {
#include <libavutil/opt.h>
}

namespace cinora {
namespace {

constexpr int filterTaps = 64;      // input samples under the filter, more when the rate falls
constexpr int chunk = 4096;         // input samples per call
constexpr int maxPhases = 1 << 10;  // of exact ratios; others are interpolated between
AvResampler makeResampler(int from, int to, int channels, int64_t phases) {
  AVChannelLayout layout{};
  av_channel_layout_default(&layout, channels);
  SwrContext* made = nullptr;
  int result = swr_alloc_set_opts2(&made, &layout, AV_SAMPLE_FMT_S16, to, &layout, AV_SAMPLE_FMT_FLT, from, 0, nullptr);
  AvResampler resampler(made);
  av_channel_layout_uninit(&layout);
  if (result < 0) return nullptr;
  av_opt_set_sample_fmt(made, "internal_sample_fmt", AV_SAMPLE_FMT_FLTP, 0);
  av_opt_set_int(made, "filter_size", filterTaps, 0);
  av_opt_set_int(made, "phase_shift", 10, 0);
  av_opt_set_int(made, "exact_rational", 1, 0);
  av_opt_set_int(made, "linear_interp", phases > maxPhases, 0);
  av_opt_set_double(made, "cutoff", 0.98, 0);
  if (swr_init(made) < 0) return nullptr;
  return resampler;
}

}  // namespace

bool SoundReader::open(const std::string& path, std::string& error) {
  av_log_set_level(AV_LOG_QUIET);
  std::string url = mediaUrl(path, error);
  return !url.empty() && decoder_.open(url, error);
}

int64_t SoundReader::setOutput(int rate, int channels) {
  if (rate == rate_ && channels == channels_) return total_;
  if (rate < 1 || rate > maxSoundRate || channels < 1) return 0;
  int own = facts().rate;
  int64_t common = std::gcd(own, rate);
  rate_ = rate;
  channels_ = channels;
  unitIn_ = own / common;
  unitOut_ = rate / common;
  decoder_.setChannels(channels);
  resampler_.reset();
  window_.clear();
  windowFirst_ = INT64_MAX;  // nothing lies in it
  total_ = av_rescale_rnd(decoder_.length(), rate, own, AV_ROUND_DOWN);
  return total_;
}

/// Makes the resampler start at a place where both rates meet, so that its phases are always the same, far enough ahead
/// that its filter has only heard the file.
bool SoundReader::align(int64_t first) {
  int own = facts().rate;
  resampler_ = makeResampler(own, rate_, channels_, unitOut_);
  if (!resampler_) return false;
  int64_t heard = 2 * filterTaps * std::max<int64_t>(1, (own + rate_ - 1) / rate_);
  int64_t ahead = heard * rate_ / own + 2;
  int64_t unit = std::max<int64_t>((first - ahead) / unitOut_, 0);
  consumed_ = unit * unitIn_;
  produced_ = unit * unitOut_;
  window_.clear();
  windowFirst_ = first;
  return true;
}

/// Resamples a chunk more; what lies before the window is passed over.
bool SoundReader::produce() {
  input_.resize(static_cast<size_t>(chunk) * channels_);
  decoder_.read(consumed_, chunk, input_.data());
  consumed_ += chunk;
  auto* in = reinterpret_cast<const uint8_t*>(input_.data());
  int room = swr_get_out_samples(resampler_.get(), chunk);
  output_.resize(static_cast<size_t>(std::max(room, 1)) * channels_);
  auto* out = reinterpret_cast<uint8_t*>(output_.data());
  int made = swr_convert(resampler_.get(), &out, room, &in, chunk);
  if (made < 0) return false;
  int64_t passed = std::clamp<int64_t>(windowEnd() - produced_, 0, made);
  window_.insert(window_.end(), output_.begin() + passed * channels_,
                 output_.begin() + static_cast<int64_t>(made) * channels_);
  produced_ += made;
  return true;
}

int SoundReader::read(int64_t first, int count, int16_t* out) {
  if (first < 0 || first >= total_ || count < 1) return 0;
  count = static_cast<int>(std::min<int64_t>(count, total_ - first));
  if (unitIn_ == unitOut_) {
    decoder_.read(first, count, out);
    return count;
  }
  int64_t second = rate_;
  bool near = resampler_ && first >= windowFirst_ && first <= windowEnd() + second;
  if (!near && !align(first)) return 0;
  if (first - windowFirst_ > second) {
    int64_t dropped = std::min(first - second / 4, windowEnd()) - windowFirst_;
    window_.erase(window_.begin(), window_.begin() + dropped * channels_);
    windowFirst_ += dropped;
  }
  while (windowEnd() < first + count)
    if (!produce()) return 0;
  std::copy_n(window_.begin() + (first - windowFirst_) * channels_, static_cast<int64_t>(count) * channels_, out);
  return count;
}

}  // namespace cinora
