#include "cinora/sound/sound_reader.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace cinora {

bool SoundReader::open(const std::string& path, std::string& error) {
  av_log_set_level(AV_LOG_QUIET);
  std::string url = mediaUrl(path, error);
  path_ = path;
  return !url.empty() && decoder_.open(url, error);
}

int64_t SoundReader::setOutput(int rate, int channels) {
  if (rate == rate_ && channels == channels_) return total_;
  if (rate < 1 || rate > maxSoundRate || channels < 1) return 0;
  int own = facts().rate;
  int64_t common = std::gcd(own, rate);
  turned_ = channels == channels_ && readUpTo_ >= 0;
  rate_ = rate;
  channels_ = channels;
  unitIn_ = own / common;
  unitOut_ = rate / common;
  decoder_.setChannels(channels);
  filter_.reset();
  total_ = av_rescale_rnd(decoder_.length(), rate, own, AV_ROUND_DOWN);
  return total_;
}

/// At the file's own rate.
void SoundReader::copy(int64_t first, int count, int16_t* out) {
  bool plain = channels_ == facts().channels && (plain_.opened() || decoder_.plainOffset() >= 0);
  if (plain && (plain_.opened() || plain_.open(path_, decoder_.plainOffset(), channels_)))
    plain_.read(first, count, out);
  else
    decoder_.read(first, count, out);
}

void SoundReader::resample(ResamplingPlace place, int count, int16_t* out) {
  if (!filter_) filter_ = ResamplingFilter::forRates(unitIn_, unitOut_);
  int reach = filter_->reach();
  int64_t begin = place.whole - reach + 1;
  size_t length = static_cast<size_t>(place.wholeAfter(count - 1) + reach + 1 - begin);
  input_.resize(length * channels_);
  planes_.resize(length * channels_);
  stretches_.resize(static_cast<size_t>(count));
  sums_.resize(static_cast<size_t>(count) * channels_);
  decoder_.read(begin, static_cast<int>(length), input_.data());
  for (int c = 0; c < channels_; c++)
    for (size_t i = 0; i < length; i++) planes_[c * length + i] = input_[i * channels_ + c];
  for (WeightedStretch& stretch : stretches_) {
    filter_->around(place, planes_.data() + (place.whole - reach + 1 - begin), stretch);
    place.advance();
  }
  weightedSums(stretches_.data(), count, 2 * reach, channels_, length, sums_.data());
  std::transform(sums_.begin(), sums_.end(), out, [](float sum) { return toSample(sum); });
}

int SoundReader::read(int64_t first, int count, int16_t* out) {
  if (first < 0 || first >= total_ || count < 1) return 0;
  count = static_cast<int>(std::min<int64_t>(count, total_ - first));
  double begin = placeOf(first), end = placeOf(first + count), before = readUpTo_;
  readUpTo_ = end;
  if (std::exchange(turned_, false) && before != begin && std::abs(before - begin) <= placeOf(1)) {
    resample(ResamplingPlace::between(before, end, count), count, out);
  } else if (unitIn_ == unitOut_) {
    copy(first, count, out);
  } else {
    resample(ResamplingPlace::atSample(first, unitIn_, unitOut_), count, out);
  }
  return count;
}

}  // namespace cinora
