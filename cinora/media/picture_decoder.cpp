#include "cinora/media/picture_decoder.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <string_view>
#include <thread>
#include <utility>

namespace cinora {
namespace {

constexpr int maxThreads = 4;  // each holds pictures of its own
constexpr int64_t maxPixels = int64_t{1} << 27;
constexpr int64_t recentBytes = 48 << 20;
constexpr int64_t maxRecent = 32;
constexpr int maxFailures = 1000;  // in a row, before a stream counts as over
constexpr int maxStepsBack = 3;    // key pictures further back that are tried when a seek or a picture fails

int64_t bytesOf(const AVFrame& frame) {
  int64_t bytes = 1;
  for (const AVBufferRef* buffer : frame.buf)
    if (buffer) bytes += static_cast<int64_t>(buffer->size);
  return bytes;
}

/// VP8 and VP9 carry alpha as a second stream within, which only libvpx decodes. Null when there is none.
const AVCodec* alphaDecoderFor(const AVStream& stream) {
  AVCodecID id = stream.codecpar->codec_id;
  const AVDictionaryEntry* mode = av_dict_get(stream.metadata, "alpha_mode", nullptr, 0);
  const char* name = id == AV_CODEC_ID_VP9 ? "libvpx-vp9" : id == AV_CODEC_ID_VP8 ? "libvpx" : nullptr;
  return name && mode && std::string_view(mode->value) == "1" ? avcodec_find_decoder_by_name(name) : nullptr;
}

}  // namespace

bool hasAlphaChannel(AVPixelFormat format) {
  const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(format);
  return d && (d->flags & AV_PIX_FMT_FLAG_ALPHA) && !(d->flags & AV_PIX_FMT_FLAG_PAL);
}

bool PictureDecoder::openCodec(bool wantAlpha) {
  const AVStream& stream = *reader_.selected();
  const AVCodecParameters& parameters = *reader_.parameters();
  const AVCodec* alphaDecoder = alphaDecoderFor(stream);
  hasAlpha_ = alphaDecoder || hasAlphaChannel(static_cast<AVPixelFormat>(parameters.format));
  const AVCodec* decoder = alphaDecoder && wantAlpha ? alphaDecoder : avcodec_find_decoder(parameters.codec_id);
  codec_.reset(decoder ? avcodec_alloc_context3(decoder) : nullptr);
  if (!codec_ || avcodec_parameters_to_context(codec_.get(), &parameters) < 0) return false;
  codec_->pkt_timebase = stream.time_base;
  codec_->max_pixels = maxPixels;
  codec_->thread_count = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, maxThreads);
  return avcodec_open2(codec_.get(), decoder, nullptr) >= 0;
}

bool PictureDecoder::open(PacketReader reader, bool wantAlpha) {
  reader_ = std::move(reader);
  packet_.reset(av_packet_alloc());
  if (!packet_ || !openCodec(wantAlpha)) return false;
  index_ = buildMediaIndex(reader_);
  return index_.frameCount > 0;
}

bool PictureDecoder::nextPacket() {
  if (!reader_.next(packet_.get())) return false;
  packet_->pts = index_.timeOf(packet_->pts, packet_->dts);
  return true;
}

/// Reads on to the key picture's packet and holds it. False when the container came out behind it.
bool PictureDecoder::seekTo(int key) {
  const MediaIndex::KeyPicture& wanted = index_.keys[key];
  if (!reader_.seek(wanted.timestamp)) return false;
  int at = -1;  // the packet's number, known from the first one on whose time is in the index
  while (at <= wanted.packet && nextPacket()) {
    if (at >= 0) {
      at++;
    } else if (int picture = index_.pictureAtTime(packet_->pts); picture >= 0) {
      at = index_.packetOf[picture];
    } else if (packet_->dts == wanted.timestamp || packet_->pts == wanted.timestamp) {
      at = wanted.packet;  // a key picture that is not shown
    }
    if (at == wanted.packet) {
      // Containers with a broken index of their own mislabel what they seek to.
      heldPacket_ = packet_->pos == wanted.position && packet_->size == wanted.size;
      if (!heldPacket_) av_packet_unref(packet_.get());
      return heldPacket_;
    }
    av_packet_unref(packet_.get());
  }
  return false;
}

/// Gets ready to decode from the key picture `stepsBack` before the one that reaches `picture`.
bool PictureDecoder::positionFor(int picture, int stepsBack) {
  ahead_ = {};
  lastNumber_ = unprovenKey_ = -1;
  falseKey_ = false;
  draining_ = ended_ = positioned_ = false;
  if (heldPacket_) av_packet_unref(packet_.get());
  heldPacket_ = false;
  avcodec_flush_buffers(codec_.get());
  if (!index_.times.empty()) {
    int key = std::max(index_.keyFor(picture) - stepsBack, 0);
    for (int tries = 0; tries <= maxStepsBack && key >= 0 && !positioned_; tries++, key--) {
      positioned_ = seekTo(key);
      if (positioned_ && index_.keys[key].packet != 0) unprovenKey_ = index_.keys[key].picture;
    }
  }
  if (!positioned_) positioned_ = reader_.restart();
  return positioned_;
}

/// Whether the current frame is also the answer for `picture`: pictures that could not be decoded repeat their
/// neighbour.
bool PictureDecoder::holds(int picture) const {
  if (!current_.frame) return false;
  auto [low, high] = std::minmax(current_.number, currentFor_);
  if (picture >= low && picture <= high) return true;
  if (picture < low) return false;
  if (ahead_.frame) return picture < ahead_.number;
  return ended_ && current_.number == lastNumber_;
}

/// Whether decoding on reaches the picture without passing a nearer key picture.
bool PictureDecoder::reachable(int picture) const {
  if (!ahead_.frame && (!positioned_ || ended_)) return false;
  int from = ahead_.frame ? ahead_.number : lastNumber_ + 1;
  if (from > picture) return false;
  return index_.times.empty() || index_.keys[index_.keyFor(picture)].picture <= from;
}

/// Gives the decoder one more packet, or the end. False when it has had that already.
bool PictureDecoder::feed() {
  if (draining_) return false;
  if (heldPacket_ || nextPacket()) {
    heldPacket_ = false;
    avcodec_send_packet(codec_.get(), packet_.get());  // a refused packet is a picture that lacks
    av_packet_unref(packet_.get());
    return true;
  }
  draining_ = true;
  avcodec_send_packet(codec_.get(), nullptr);
  return true;
}

/// Files whose own index lacks an end call every picture behind it a key picture. One that is none is struck off.
bool PictureDecoder::isFalseKey(const Decoded& decoded) {
  if (decoded.number < unprovenKey_ || unprovenKey_ < 0) return false;
  int kind = decoded.frame->pict_type;
  falseKey_ = decoded.number == unprovenKey_ && (kind == AV_PICTURE_TYPE_P || kind == AV_PICTURE_TYPE_B);
  if (falseKey_) {
    std::erase_if(index_.keys, [&](const auto& key) { return key.packet != 0 && key.picture == unprovenKey_; });
    positioned_ = false;
    ended_ = true;
  }
  unprovenKey_ = -1;
  return falseKey_;
}

PictureDecoder::Decoded PictureDecoder::next() {
  if (ahead_.frame) return std::exchange(ahead_, {});
  Decoded decoded{AvFrame(av_frame_alloc()), -1};
  if (!decoded.frame) throw std::bad_alloc();
  int failures = 0;
  while (!ended_) {
    int result = avcodec_receive_frame(codec_.get(), decoded.frame.get());
    if (result == AVERROR(EAGAIN)) {
      ended_ = !feed();
    } else if (result < 0) {  // the end, or a damaged picture: go on behind it
      ended_ = result == AVERROR_EOF || ++failures > maxFailures;
    } else {
      int number = lastNumber_ + 1;
      if (!index_.times.empty()) number = index_.pictureAtTime(decoded.frame->pts);
      if (number <= lastNumber_ || number >= index_.pictureCount) continue;  // no picture of the index
      lastNumber_ = decoded.number = number;
      if (isFalseKey(decoded)) return {};
      return decoded;
    }
  }
  return {};
}

void PictureDecoder::remember(Decoded&& decoded) {
  if (recentLimit_ == 0) return;
  if (recent_.size() >= recentLimit_) recent_.pop_front();
  recent_.push_back(std::move(decoded));
}

/// The last picture up to `picture` that can be decoded from here; what lies behind it is kept in `ahead_`.
PictureDecoder::Decoded PictureDecoder::decodeUpTo(int picture) {
  Decoded best;
  if (current_.frame && current_.number <= picture) best = std::move(current_);
  while (best.number < picture) {
    Decoded decoded = next();
    if (!decoded.frame) break;
    if (decoded.number > picture) {
      ahead_ = std::move(decoded);
      break;
    }
    if (best.frame) remember(std::move(best));
    best = std::move(decoded);
  }
  return best;
}

const AVFrame* PictureDecoder::picture(int number) {
  if (holds(number)) {
    currentFor_ = number;
    return current_.frame.get();
  }
  auto kept = std::find_if(recent_.begin(), recent_.end(), [&](const Decoded& d) { return d.number == number; });
  if (kept != recent_.end()) return kept->frame.get();

  bool backward = current_.frame && number < currentFor_;
  recentLimit_ =
      backward ? static_cast<size_t>(std::clamp<int64_t>(recentBytes / bytesOf(*current_.frame), 1, maxRecent)) : 0;
  recent_.clear();
  Decoded found;
  bool onTheWay = reachable(number);
  if (onTheWay) found = decodeUpTo(number);
  if (!onTheWay || falseKey_) {
    current_ = {};
    found = {};
    for (int back = 0; !found.frame && back <= maxStepsBack && positionFor(number, back);) {
      found = decodeUpTo(number);
      if (falseKey_) {
        found = {};
      } else if (index_.times.empty() || index_.keyFor(number) <= back++) {
        break;
      }
    }
  }
  if (!found.frame) found = next();  // nothing good up to here: the first good one behind
  current_ = std::move(found);
  currentFor_ = number;
  return current_.frame.get();
}

}  // namespace cinora
