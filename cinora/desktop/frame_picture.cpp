#include "cinora/desktop/frame_picture.h"

#include "cinora/host/frame_renderer.h"

namespace cinora::desktop {

QImage FramePictures::make(Host& host, int frame) {
  RenderedFrame rendered = renderFrame(host, frame);
  QSize size(rendered.width, rendered.height);
  if (!converter_ || size_ != size) {
    converter_.emplace(host.pool, AV_PIX_FMT_BGRA, size.width(), size.height(), true);
    size_ = size;
  }
  auto* picture = new AvFrame(converter_->convert(rendered.rows, rendered.rowPixels));
  const AVFrame& pixels = **picture;
  return QImage(
      pixels.data[0], pixels.width, pixels.height, pixels.linesize[0], QImage::Format_RGB32,
      [](void* owner) { delete static_cast<AvFrame*>(owner); }, picture);
}

}  // namespace cinora::desktop
