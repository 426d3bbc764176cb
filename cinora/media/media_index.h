// Where every picture of a video stream lies: built once per file by reading its packets without decoding.
#pragma once

#include <cstdint>
#include <vector>

namespace cinora {

class PacketReader;

/// Pictures count from 0 in the order they are shown, packets in the order they are stored. Frames are what the film
/// sees: the pictures themselves when they are evenly spaced, otherwise even steps of the average rate.
struct MediaIndex {
  struct KeyPicture {
    int picture, packet;
    int64_t timestamp;  // to seek to: decoding time if the packet has one
    int64_t position;   // in the file, -1 when unknown
    int size;           // bytes
  };

  /// Presentation times, ascending, in the stream's time base. Empty when the stream does not give every picture a time
  /// of its own: the pictures are then only known by counting from the start.
  std::vector<int64_t> times;
  std::vector<int> packetOf;  // a picture's packet; as long as `times`
  /// Containers that store decoding times only: those of the packets, ascending, and the presentation times worked out
  /// from the kinds of pictures. Empty otherwise.
  std::vector<int64_t> decodingTimes, presentationTimes;
  std::vector<KeyPicture> keys;  // ascending; the first one is where the stream begins
  std::vector<int> pictureOf;    // a frame's picture; empty when they are the same
  int pictureCount = 0;
  int frameCount = 0;
  int32_t rate = 0, scale = 0;  // frames per second = rate / scale

  int picture(int frame) const { return pictureOf.empty() ? frame : pictureOf[frame]; }
  /// The picture shown at exactly that time; -1 when there is none.
  int pictureAtTime(int64_t time) const;
  /// The packet's presentation time.
  int64_t timeOf(int64_t pts, int64_t dts) const;
  /// The last key picture from which decoding reaches `picture`, as an index of `keys`.
  int keyFor(int picture) const;
};

/// Reads the packets from where the reader stands (the start) to the end.
MediaIndex buildMediaIndex(PacketReader&);

}  // namespace cinora
