#include "cinora/sound/channel_mixer.h"

#include <algorithm>
#include <vector>

extern "C" {
#include <libavutil/opt.h>
}

namespace cinora {
namespace {

/// Weights [output][input] of channels that are known by their number alone.
std::vector<double> matrixByNumber(int in, int out) {
  std::vector<double> matrix(static_cast<size_t>(in) * out, 0.0);
  for (int c = 0; c < std::max(in, out); c++) matrix[static_cast<size_t>(c % out) * in + c % in] = 1.0;
  for (int o = 0; o < out && in > 1; o++) {
    int inputs = (in - o + out - 1) / out;
    for (int i = 0; i < in; i++) matrix[static_cast<size_t>(o) * in + i] /= std::max(inputs, 1);
  }
  return matrix;
}

}  // namespace

bool ChannelMixer::prepare(const AVFrame& frame, int channels) {
  int own = frame.ch_layout.nb_channels;
  if (format_ == frame.format && inChannels_ == own && outChannels_ == channels) return mixer_ != nullptr;
  format_ = frame.format;
  inChannels_ = own;
  outChannels_ = channels;
  AVChannelLayout in{}, out{};
  av_channel_layout_default(&out, channels);
  bool known = frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE;
  if (own == channels || !known || av_channel_layout_copy(&in, &frame.ch_layout) < 0)
    av_channel_layout_default(&in, own);
  SwrContext* made = nullptr;
  auto format = static_cast<AVSampleFormat>(frame.format);
  constexpr int anyRate = 48000;
  int result = swr_alloc_set_opts2(&made, &out, AV_SAMPLE_FMT_FLT, anyRate, &in, format, anyRate, 0, nullptr);
  mixer_.reset(made);
  if (made) av_opt_set_double(made, "rematrix_maxval", 1.0, 0);  // sums of channels do not grow
  bool placeless = in.order != AV_CHANNEL_ORDER_NATIVE;
  if (result >= 0 && own != channels && (own == 1 || placeless)) {
    if (placeless) av_opt_set_chlayout(made, "in_chlayout", &in, 0);
    swr_set_matrix(made, matrixByNumber(own, channels).data(), own);
  }
  av_channel_layout_uninit(&in);
  av_channel_layout_uninit(&out);
  if (result < 0 || swr_init(made) < 0) mixer_.reset();
  return mixer_ != nullptr;
}

void ChannelMixer::mix(const AVFrame& frame, int channels, float* out) {
  int samples = frame.nb_samples;
  auto* bytes = reinterpret_cast<uint8_t*>(out);
  auto** in = const_cast<const uint8_t**>(frame.extended_data);
  if (!prepare(frame, channels) || swr_convert(mixer_.get(), &bytes, samples, in, samples) != samples)
    std::fill_n(out, static_cast<size_t>(samples) * channels, 0.0f);
}

}  // namespace cinora
