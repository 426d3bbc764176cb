#include "cinora/media/media_index.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "cinora/media/packet_reader.h"

namespace cinora {
namespace {

struct PacketFacts {
  int64_t pts, dts, position;
  int size;
  bool key, shown;
  bool bidirectional;  // shown before the reference picture stored ahead of it
};

constexpr int maxPackets = INT_MAX / 2;

/// VP8 stores pictures that only later ones refer to as packets of their own; bit 4 of the first byte says "show".
bool isShown(const AVPacket& packet, AVCodecID codec) {
  if (packet.flags & AV_PKT_FLAG_DISCARD) return false;
  return codec != AV_CODEC_ID_VP8 || packet.size == 0 || (packet.data[0] & 0x10);
}

/// How the MPEG codecs mark B pictures: behind the start code 00 00 01 `code`, the bits `mask` of byte `offset` are
/// `value`.
struct PictureHeader {
  AVCodecID codec;
  uint8_t code;
  int offset;
  uint8_t mask, value;
};
constexpr PictureHeader pictureHeaders[] = {
    {AV_CODEC_ID_MPEG1VIDEO, 0x00, 1, 0x38, 3 << 3},
    {AV_CODEC_ID_MPEG2VIDEO, 0x00, 1, 0x38, 3 << 3},
    {AV_CODEC_ID_MPEG4, 0xB6, 0, 0xC0, 2 << 6},
};

const PictureHeader* headerOf(AVCodecID codec) {
  for (const PictureHeader& row : pictureHeaders)
    if (row.codec == codec) return &row;
  return nullptr;
}

bool isBidirectional(const AVPacket& packet, const PictureHeader* header) {
  for (int i = 0; header && i + 4 + header->offset < packet.size; i++)
    if (packet.data[i] == 0 && packet.data[i + 1] == 0 && packet.data[i + 2] == 1 && packet.data[i + 3] == header->code)
      return (packet.data[i + 4 + header->offset] & header->mask) == header->value;
  return false;
}

std::vector<PacketFacts> readPackets(PacketReader& reader) {
  std::vector<PacketFacts> packets;
  AVCodecID codec = reader.parameters()->codec_id;
  const PictureHeader* header = headerOf(codec);
  AvPacket packet(av_packet_alloc());
  while (packet && static_cast<int>(packets.size()) < maxPackets && reader.next(packet.get())) {
    packets.push_back({packet->pts, packet->dts, packet->pos, packet->size, (packet->flags & AV_PKT_FLAG_KEY) != 0,
                       isShown(*packet, codec), isBidirectional(*packet, header)});
    av_packet_unref(packet.get());
  }
  return packets;
}

/// Where presentation times lack but decoding times are complete: a B picture is shown at once, any other when the next
/// one that is no B picture comes, and the n-th picture shown has the n-th decoding time.
void deducePresentationTimes(AVCodecID codec, std::vector<PacketFacts>& packets, MediaIndex& index) {
  auto lacksTime = [](const PacketFacts& p) { return p.pts == AV_NOPTS_VALUE; };
  if (!headerOf(codec) || std::none_of(packets.begin(), packets.end(), lacksTime)) return;
  for (size_t i = 0; i < packets.size(); i++)
    if (packets[i].dts == AV_NOPTS_VALUE || (i > 0 && packets[i].dts <= packets[i - 1].dts)) return;
  size_t shown = 0;
  PacketFacts* waiting = nullptr;
  auto show = [&](PacketFacts* picture) {
    if (picture) picture->pts = packets[shown++].dts;
  };
  for (PacketFacts& packet : packets) {
    if (packet.bidirectional) {
      show(&packet);
    } else {
      show(waiting);
      waiting = &packet;
    }
  }
  show(waiting);
  for (const PacketFacts& packet : packets) {
    index.decodingTimes.push_back(packet.dts);
    index.presentationTimes.push_back(packet.pts);
  }
}

/// Fills `times` and `packetOf`; leaves them empty when a picture lacks a time or two share one.
void orderPictures(const std::vector<PacketFacts>& packets, MediaIndex& index) {
  for (size_t i = 0; i < packets.size(); i++) {
    if (!packets[i].shown) continue;
    index.packetOf.push_back(static_cast<int>(i));
  }
  index.pictureCount = static_cast<int>(index.packetOf.size());
  auto time = [&](int packet) { return packets[packet].pts; };
  std::stable_sort(index.packetOf.begin(), index.packetOf.end(), [&](int a, int b) { return time(a) < time(b); });
  for (int packet : index.packetOf) {
    if (time(packet) == AV_NOPTS_VALUE || (!index.times.empty() && index.times.back() == time(packet))) {
      index.times.clear();
      index.packetOf.clear();
      return;
    }
    index.times.push_back(time(packet));
  }
}

/// A key picture that is not shown itself (cut off by an edit list) stands before the first one shown behind it.
void listKeys(const std::vector<PacketFacts>& packets, MediaIndex& index) {
  if (index.times.empty()) return;
  for (int packet = 0; packet < static_cast<int>(packets.size()); packet++) {
    const PacketFacts& facts = packets[packet];
    if (packet != 0 && (!facts.key || facts.pts == AV_NOPTS_VALUE)) continue;
    auto behind = std::lower_bound(index.times.begin(), index.times.end(), facts.pts);
    index.keys.push_back({static_cast<int>(behind - index.times.begin()), packet,
                          facts.dts == AV_NOPTS_VALUE ? facts.pts : facts.dts, facts.position, facts.size});
  }
  std::stable_sort(index.keys.begin(), index.keys.end(),
                   [](const auto& a, const auto& b) { return a.picture < b.picture; });
}

bool usable(AVRational rate) { return rate.num > 0 && rate.den > 0; }

/// Ticks of the time base per frame.
double stepOf(AVRational rate, AVRational base) { return av_q2d(av_inv_q(rate)) / av_q2d(base); }

/// Whether picture i is nearest to place i of an even grid, for all i.
bool evenlySpaced(const std::vector<int64_t>& times, double step) {
  for (size_t i = 0; i < times.size(); i++)
    if (std::abs(static_cast<double>(times[i] - times[0]) - step * static_cast<double>(i)) >= step / 2) return false;
  return true;
}

void mapFrames(MediaIndex& index, double step) {
  double length = static_cast<double>(index.times.back() - index.times.front()) / step;
  index.frameCount = static_cast<int>(std::lround(length)) + 1;
  index.pictureOf.resize(index.frameCount);
  int picture = 0;
  for (int frame = 0; frame < index.frameCount; frame++) {
    // Half a tick of leave, because times are rounded to ticks.
    double time = static_cast<double>(index.times.front()) + step * frame + 0.5;
    while (picture + 1 < index.pictureCount && static_cast<double>(index.times[picture + 1]) <= time) picture++;
    index.pictureOf[frame] = picture;
  }
}

constexpr AVRational defaultRate = {25, 1};

/// The declared rate under which the pictures are evenly spaced; else the average rate, and a map from frames.
void chooseRate(const AVStream& stream, MediaIndex& index) {
  const AVRational declared[] = {stream.avg_frame_rate, stream.r_frame_rate};
  AVRational rate = {0, 1};
  index.frameCount = index.pictureCount;
  for (AVRational candidate : declared)
    if (!usable(rate) && usable(candidate) &&
        (index.times.empty() || evenlySpaced(index.times, stepOf(candidate, stream.time_base))))
      rate = candidate;
  if (!usable(rate) && index.times.size() > 1) {
    int64_t span = index.times.back() - index.times.front();
    av_reduce(&rate.num, &rate.den, (static_cast<int64_t>(index.times.size()) - 1) * stream.time_base.den,
              span * stream.time_base.num, INT_MAX);
    if (!usable(rate)) rate = defaultRate;
    double step = stepOf(rate, stream.time_base);
    double frames = static_cast<double>(span) / step;
    // Times so far apart that no rate fits them: the pictures as they come.
    if (!evenlySpaced(index.times, step) && frames < 2.0 * index.pictureCount) mapFrames(index, step);
  }
  if (!usable(rate)) rate = defaultRate;
  index.rate = rate.num;
  index.scale = rate.den;
}

}  // namespace

int MediaIndex::pictureAtTime(int64_t time) const {
  auto found = std::lower_bound(times.begin(), times.end(), time);
  return found != times.end() && *found == time ? static_cast<int>(found - times.begin()) : -1;
}

int64_t MediaIndex::timeOf(int64_t pts, int64_t dts) const {
  if (decodingTimes.empty()) return pts;
  auto found = std::lower_bound(decodingTimes.begin(), decodingTimes.end(), dts);
  return found != decodingTimes.end() && *found == dts ? presentationTimes[found - decodingTimes.begin()]
                                                       : AV_NOPTS_VALUE;
}

int MediaIndex::keyFor(int picture) const {
  auto after = std::upper_bound(keys.begin(), keys.end(), picture,
                                [](int wanted, const KeyPicture& key) { return wanted < key.picture; });
  int key = static_cast<int>(after - keys.begin()) - 1;
  while (key > 0 && keys[key].packet > packetOf[picture]) key--;
  return std::max(key, 0);
}

MediaIndex buildMediaIndex(PacketReader& reader) {
  MediaIndex index;
  std::vector<PacketFacts> packets = readPackets(reader);
  deducePresentationTimes(reader.parameters()->codec_id, packets, index);
  orderPictures(packets, index);
  listKeys(packets, index);
  chooseRate(*reader.selected(), index);
  return index;
}

}  // namespace cinora
