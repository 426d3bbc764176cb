#include "cinora/host/frame_renderer.h"

#include <algorithm>
#include <cstring>

#include "cinora/host/media_files.h"
#include "cinora/support/failure.h"

namespace cinora {
namespace {

using zenlay::FramePixel;

constexpr int scratchImages = 2;  // first image of getFrameBeforeFilter

Background shown = blackBackground;  // of the frame being made

struct ShownBracket {
  explicit ShownBracket(Background background) { shown = background; }
  ~ShownBracket() { shown = blackBackground; }
};

/// The clip's own picture. A film that gives none is told of once; what it leaves is background.
bool readClip(Host& host, int frame, FramePixel* rows) {
  zenlay::HostEdit& edit = host.edit;
  if (frame >= edit.mediaFrames) return false;
  if (readMediaFrame(host, *edit.media, frame, rows)) return true;
  edit.mediaFrames = 0;
  host.addMessage(edit.name + ": its pictures cannot be read");
  return false;
}

void fillFrame(Host& host, FramePixel* rows, Background background) {
  const ClipFormat& format = host.edit.format;
  FramePixel colour{background, 0, 0};
  host.pool.forRows(format.height, [&](int first, int last) {
    FramePixel* top = rows + static_cast<size_t>(first) * host.limits.rowPixels;
    std::fill_n(top, format.width, colour);
    for (int y = first + 1; y < last; y++)
      memcpy(rows + static_cast<size_t>(y) * host.limits.rowPixels, top, format.width * sizeof(FramePixel));
  });
}

/// Runs the filters up to `stop` (null: all) on image `firstImage`, with the next one as scratch.
RenderedFrame runFilters(Host& host, int frame, Background background, int firstImage,
                         const zenlay::HostFilterRecord* stop) {
  const ClipFormat& format = host.edit.format;
  FramePixel* images[] = {host.image(firstImage), host.image(firstImage + 1)};
  if (!readClip(host, frame, images[0])) fillFrame(host, images[0], background);

  zenlay::FrameProcessInfo info{};
  info.frame = images[0];
  info.scratch = images[1];
  info.width = info.originalWidth = format.width;
  info.height = info.originalHeight = format.height;
  info.maxWidth = host.limits.maxWidth;
  info.maxHeight = host.limits.maxHeight;
  info.frameNumber = frame;
  info.frameCount = host.edit.frameCount;
  info.edit = host.editHandle();
  info.pixelBytes = sizeof(FramePixel);
  info.lineBytes = host.limits.rowPixels * static_cast<int>(sizeof(FramePixel));
  for (const auto& filter : host.plugins.filters()) {
    zenlay::HostFilterRecord* record = filter->record;
    if (record == stop) break;
    if (!filter->active || !record->process || (record->flags & filterAudio)) continue;
    record->process(record, &info);
    bool known = std::find(images, images + 2, info.frame) != images + 2;
    if (!known || info.width < 1 || info.width > host.limits.maxWidth || info.height < 1 ||
        info.height > host.limits.maxHeight)
      throw Failure(std::string("filter \"") + record->name + "\" left frame " + std::to_string(frame + 1) +
                    " in a shape that cannot be used");
  }
  return {info.frame, host.limits.rowPixels, info.width, info.height};
}

}  // namespace

RenderedFrame renderFrame(Host& host, int frame, Background background) {
  ShownBracket bracket(background);
  return runFilters(host, frame, background, 0, nullptr);
}

FramePixel* frameBefore(Host& host, const zenlay::HostFilterRecord* stop, int frame) {
  static bool running = false;
  if (running || !host.edit.open || frame < 0 || frame >= host.edit.frameCount) return nullptr;
  running = true;
  FramePixel* rows = nullptr;
  try {
    rows = const_cast<FramePixel*>(runFilters(host, frame, shown, scratchImages, stop).rows);
  } catch (const Failure& failure) {
    host.addMessage(failure.what());
  }
  running = false;
  return rows;
}

void separateAlpha(const FramePixel* overBlack, const FramePixel* overWhite, zenlay::ObjectPixel* out, int n) {
  for (int i = 0; i < n; i++) {
    const FramePixel& b = overBlack[i];
    int alpha = std::clamp(zenlay::fullAlpha - (overWhite[i].y - b.y), 0, zenlay::fullAlpha);
    if (alpha == 0) {
      out[i] = {0, 0, 0, 0};
    } else if (alpha == zenlay::fullAlpha) {
      out[i] = {b.y, b.cb, b.cr, zenlay::fullAlpha};
    } else {
      auto whole = [alpha](int part, int low, int high) {
        int doubled = part * 2 * zenlay::fullAlpha + (part < 0 ? -alpha : alpha);
        return static_cast<int16_t>(std::clamp(doubled / (2 * alpha), low, high));
      };
      out[i] = {whole(b.y, 0, zenlay::whiteLuma), whole(b.cb, -zenlay::chromaLimit, zenlay::chromaLimit),
                whole(b.cr, -zenlay::chromaLimit, zenlay::chromaLimit), static_cast<int16_t>(alpha)};
    }
  }
}

}  // namespace cinora
