// Decodes the pictures of one video stream, any one of them exactly.
#pragma once

#include <deque>

#include "cinora/media/media_index.h"
#include "cinora/media/packet_reader.h"
#include "cinora/support/av_handles.h"

namespace cinora {

/// False for palettes: their transparency is a colour key, not an alpha channel.
bool hasAlphaChannel(AVPixelFormat);

class PictureDecoder {
 public:
  /// Takes the reader over, its stream selected, and reads it once through for the index. False when no decoder fits or
  /// there are no pictures.
  bool open(PacketReader, bool wantAlpha);
  const MediaIndex& index() const { return index_; }
  bool hasAlpha() const { return hasAlpha_; }
  /// The picture, or the last good one before it; before the first good one, that. Null when nothing can be decoded.
  /// The frame stays valid until the next call.
  const AVFrame* picture(int number);

 private:
  struct Decoded {
    AvFrame frame;
    int number = -1;
  };

  bool openCodec(bool wantAlpha);
  bool nextPacket();
  bool seekTo(int key);
  bool positionFor(int picture, int stepsBack);
  bool holds(int picture) const;
  bool reachable(int picture) const;
  bool feed();
  bool isFalseKey(const Decoded&);
  Decoded next();
  Decoded decodeUpTo(int picture);
  void remember(Decoded&&);

  PacketReader reader_;
  AvCodec codec_;
  AvPacket packet_;
  MediaIndex index_;

  bool hasAlpha_ = false;
  bool positioned_ = false, draining_ = false, ended_ = false;
  bool heldPacket_ = false;  // packet_ was read while seeking and is the next to decode
  int unprovenKey_ = -1;     // picture the position was taken at, until it turns out to be a key picture
  bool falseKey_ = false;    // it did not
  int lastNumber_ = -1;      // of the last picture decoded since the position was taken
  Decoded current_;          // shown for `currentFor_`
  int currentFor_ = -1;
  Decoded ahead_;  // decoded already, but later than what was asked for
  // While going backward: pictures decoded on the way, so that not every step decodes from the key picture again.
  std::deque<Decoded> recent_;
  size_t recentLimit_ = 0;
};

}  // namespace cinora
