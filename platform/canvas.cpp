#include "platform/canvas.h"

#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <unordered_map>

#include "platform/backend.h"

namespace platform {

struct Canvas {
  uint32_t* pixels;
  Size device;
  double scale;    // device pixels a logical pixel
  Window* window;  // null: in memory, and the pixels are its own
  Rect clip;       // in device pixels, within the surface
  Rect touched{};  // in device pixels
};

namespace {

constexpr int maxSide = 32767;
constexpr size_t maxMasks = 8192;
constexpr size_t maxMaskBytes = 32 << 20;

std::array<Color, colorDarkEdge + 1> systemColors = {0x2F3338, 0xDADDE0, 0x80878E, 0x24272B, 0xE4E6E8,
                                                     0x3D7EBF, 0xFFFFFF, 0x4A5057, 0x1C1F22};

/// Text and icons as they were rendered, by what and how large.
struct MaskCache {
  std::unordered_map<std::string, CoverageMask> masks;
  size_t bytes = 0;
};
MaskCache cache;

Rect surface(const Canvas& c) { return {0, 0, c.device.width, c.device.height}; }

/// Where the logical coordinate begins. Limited, so that lengths stay within int.
int deviceAt(const Canvas& c, int64_t logical) {
  constexpr int64_t limit = 1 << 24;
  logical = std::clamp(logical, -limit, limit);
  return c.scale == 1 ? static_cast<int>(logical) : static_cast<int>(std::floor(logical * c.scale + 0.5));
}

Rect deviceRect(const Canvas& c, const Rect& r) {
  int x = deviceAt(c, r.x), y = deviceAt(c, r.y);
  return {x, y, deviceAt(c, static_cast<int64_t>(r.x) + r.width) - x,
          deviceAt(c, static_cast<int64_t>(r.y) + r.height) - y};
}

uint32_t stored(const Canvas& c, Color color) { return c.window ? color | 0xFF000000 : color; }
uint32_t* pixelAt(Canvas& c, int x, int y) { return c.pixels + static_cast<size_t>(y) * c.device.width + x; }

void touch(Canvas& c, const Rect& r) {
  if (!c.window) return;
  if (isEmpty(c.touched)) {
    c.touched = r;
    if (desktopBackend().canvasTouched) desktopBackend().canvasTouched(c.window);
    return;
  }
  int right = std::max(c.touched.x + c.touched.width, r.x + r.width);
  int bottom = std::max(c.touched.y + c.touched.height, r.y + r.height);
  c.touched.x = std::min(c.touched.x, r.x);
  c.touched.y = std::min(c.touched.y, r.y);
  c.touched.width = right - c.touched.x;
  c.touched.height = bottom - c.touched.y;
}

/// The part of a device rectangle that is to be drawn; noted as touched.
Rect begin(Canvas& c, const Rect& device) {
  Rect r = intersect(device, c.clip);
  if (!isEmpty(r)) touch(c, r);
  return r;
}

void fillDevice(Canvas& c, const Rect& device, Color color) {
  Rect r = begin(c, device);
  for (int y = r.y; y < r.y + r.height; y++) std::fill_n(pixelAt(c, r.x, y), std::max(r.width, 0), stored(c, color));
}

/// Calls `draw` with the device rectangles of the line's logical pixels, runs of them where it is solid.
template <typename Draw>
void walkLine(const Canvas& c, Point from, Point to, LineStyle style, Draw draw) {
  int dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y);
  int stepX = from.x < to.x ? 1 : -1, stepY = from.y < to.y ? 1 : -1;
  bool straight = dx == 0 || dy == 0;
  if (straight && style == lineSolid) {
    int x = stepX < 0 && dx ? to.x + 1 : from.x, y = stepY < 0 && dy ? to.y + 1 : from.y;
    if (dx || dy) draw(deviceRect(c, {x, y, dx ? dx : 1, dy ? dy : 1}));
    return;
  }
  int error = dx - dy;
  for (Point at = from; at.x != to.x || at.y != to.y;) {
    if (style == lineSolid || ((at.x + at.y) & 1) == 0) draw(deviceRect(c, {at.x, at.y, 1, 1}));
    int twice = 2 * error;
    if (twice > -dy) error -= dy, at.x += stepX;
    if (twice < dx) error += dx, at.y += stepY;
  }
}

/// The line cut to what the clip can show, so that a long one takes no time. Straight lines only.
bool cutLine(const Canvas& c, Point& from, Point& to) {
  if (from.x != to.x && from.y != to.y) return true;
  int left = static_cast<int>(c.clip.x / c.scale) - 2, top = static_cast<int>(c.clip.y / c.scale) - 2;
  int right = static_cast<int>((c.clip.x + c.clip.width) / c.scale) + 2;
  int bottom = static_cast<int>((c.clip.y + c.clip.height) / c.scale) + 2;
  for (Point* p : {&from, &to}) *p = {std::clamp(p->x, left, right), std::clamp(p->y, top, bottom)};
  return !isEmpty(c.clip);
}

uint32_t blend(uint32_t under, Color over, unsigned alpha) {
  alpha += alpha >> 7;  // 0..256
  uint32_t redBlue = under & 0xFF00FF, green = under & 0xFF00;
  redBlue += (((over & 0xFF00FF) - redBlue) * alpha) >> 8;
  green += (((over & 0xFF00) - green) * alpha) >> 8;
  return (under & 0xFF000000) | (redBlue & 0xFF00FF) | (green & 0xFF00);
}

void drawMask(Canvas& c, const CoverageMask& mask, Point device, const Rect& limit, Color color) {
  Point corner{device.x + mask.left, device.y + mask.top};
  Rect r = begin(c, intersect({corner.x, corner.y, mask.width, mask.height}, limit));
  for (int y = r.y; y < r.y + r.height; y++) {
    const uint8_t* coverage = mask.rows.data() + static_cast<size_t>(y - corner.y) * mask.width + (r.x - corner.x);
    uint32_t* out = pixelAt(c, r.x, y);
    for (int x = 0; x < r.width; x++)
      if (coverage[x]) out[x] = blend(out[x], color, coverage[x]);
  }
}

/// The mask under that key, made by `render` the first time.
template <typename Render>
const CoverageMask& maskOf(std::string key, Render render) {
  auto found = cache.masks.find(key);
  if (found != cache.masks.end()) return found->second;
  if (cache.masks.size() >= maxMasks || cache.bytes >= maxMaskBytes) forgetMasks();
  const CoverageMask& mask = cache.masks[std::move(key)] = render();
  cache.bytes += mask.rows.size();
  return mask;
}

std::string keyOf(char kind, int variant, double scale, const char* name) {
  std::string key(1, kind);
  key.append(reinterpret_cast<const char*>(&variant), sizeof variant);
  key.append(reinterpret_cast<const char*>(&scale), sizeof scale);
  return key.append(name);
}

}  // namespace

Canvas* createMemoryCanvas(int width, int height) {
  if (width < 1 || width > maxSide || height < 1 || height > maxSide) return nullptr;
  auto* pixels = static_cast<uint32_t*>(std::calloc(static_cast<size_t>(width) * height, sizeof(uint32_t)));
  return pixels ? new Canvas{pixels, {width, height}, 1, nullptr, {0, 0, width, height}} : nullptr;
}

Canvas* wrapCanvas(Window* window, uint32_t* pixels, Size device, double scale) {
  return new Canvas{pixels, device, scale, window, {0, 0, device.width, device.height}};
}

void rewrapCanvas(Canvas* canvas, uint32_t* pixels, Size device, double scale) {
  *canvas = {pixels, device, scale, canvas->window, {0, 0, device.width, device.height}};
}

void releaseCanvas(Canvas* canvas) {
  if (canvas && !canvas->window) std::free(canvas->pixels);
  delete canvas;
}

uint32_t* canvasPixels(Canvas* canvas) { return canvas && !canvas->window ? canvas->pixels : nullptr; }

Canvas* windowCanvas(Window* window) {
  return windowLives(window) && desktopBackend().windowCanvas ? desktopBackend().windowCanvas(window) : nullptr;
}

Rect takeTouched(Canvas* canvas) {
  Rect touched = canvas->touched;
  canvas->touched = {};
  return touched;
}

void setClip(Canvas* canvas, Rect clip) {
  if (canvas) canvas->clip = intersect(deviceRect(*canvas, clip), surface(*canvas));
}

void clearClip(Canvas* canvas) {
  if (canvas) canvas->clip = surface(*canvas);
}

void fillRect(Canvas* canvas, Rect r, Color color) {
  if (canvas) fillDevice(*canvas, deviceRect(*canvas, r), color);
}

void fillGradient(Canvas* canvas, Rect logical, Color left, Color right) {
  if (!canvas) return;
  Rect whole = deviceRect(*canvas, logical);
  Rect r = begin(*canvas, whole);
  if (isEmpty(r)) return;
  int last = std::max(whole.width - 1, 1);
  auto channel = [&](int from, int to, int column) {
    int64_t scaled = static_cast<int64_t>(to - from) * column;
    return from + static_cast<int>((2 * std::abs(scaled) + last) / (2 * last)) * (scaled < 0 ? -1 : 1);
  };
  uint32_t* first = pixelAt(*canvas, r.x, r.y);
  for (int x = 0; x < r.width; x++) {
    int column = r.x + x - whole.x;
    first[x] =
        stored(*canvas, rgb(channel(redOf(left), redOf(right), column), channel(greenOf(left), greenOf(right), column),
                            channel(blueOf(left), blueOf(right), column)));
  }
  for (int y = 1; y < r.height; y++) std::copy_n(first, r.width, pixelAt(*canvas, r.x, r.y + y));
}

void fillPolygon(Canvas* canvas, const Point* corners, int count, Color color) {
  if (!canvas || count < 1) return;
  Point low = corners[0], high = corners[0];
  for (int i = 1; i < count; i++) {
    low = {std::min(low.x, corners[i].x), std::min(low.y, corners[i].y)};
    high = {std::max(high.x, corners[i].x), std::max(high.y, corners[i].y)};
  }
  // Corners go to the middles of the outermost device pixels, so that the shape fills its rectangle at any scale.
  Rect box = deviceRect(*canvas, {low.x, low.y, high.x - low.x + 1, high.y - low.y + 1});
  auto place = [](int at, int low, int high, int start, int length) {
    return high == low ? start : start + static_cast<double>(at - low) * (length - 1) / (high - low);
  };
  int bottom = std::min(box.y + box.height, canvas->clip.y + canvas->clip.height);
  for (int y = std::max(box.y, canvas->clip.y); y < bottom; y++) {
    double left = INT_MAX, right = INT_MIN;
    for (int i = 0; i < count; i++) {
      const Point &a = corners[i], &b = corners[(i + 1) % count];
      double ay = place(a.y, low.y, high.y, box.y, box.height), by = place(b.y, low.y, high.y, box.y, box.height);
      double ax = place(a.x, low.x, high.x, box.x, box.width), bx = place(b.x, low.x, high.x, box.x, box.width);
      if (low.y == high.y) ay = by = y;
      if (y < std::min(ay, by) || y > std::max(ay, by)) continue;
      double x = ay == by ? ax : ax + (bx - ax) * (y - ay) / (by - ay);
      left = std::min(left, ay == by ? std::min(ax, bx) : x);
      right = std::max(right, ay == by ? std::max(ax, bx) : x);
    }
    if (left > right) continue;
    int from = static_cast<int>(std::floor(left + 0.5)), to = static_cast<int>(std::floor(right + 0.5));
    if (low.x == high.x) from = box.x, to = box.x + box.width - 1;
    fillDevice(*canvas, {from, y, to - from + 1, 1}, color);
  }
}

void drawLine(Canvas* canvas, Point from, Point to, Color color, LineStyle style) {
  if (!canvas || !cutLine(*canvas, from, to)) return;
  walkLine(*canvas, from, to, style, [&](const Rect& device) { fillDevice(*canvas, device, color); });
}

void drawFrame(Canvas* canvas, Rect r, Color color, LineStyle style) {
  if (!canvas || isEmpty(r)) return;
  int right = r.x + r.width - 1, bottom = r.y + r.height - 1;
  drawLine(canvas, {r.x, r.y}, {right + 1, r.y}, color, style);
  if (r.height > 1) drawLine(canvas, {r.x, bottom}, {right + 1, bottom}, color, style);
  drawLine(canvas, {r.x, r.y + 1}, {r.x, std::max(bottom, r.y + 1)}, color, style);
  if (r.width > 1) drawLine(canvas, {right, r.y + 1}, {right, std::max(bottom, r.y + 1)}, color, style);
}

void xorLine(Canvas* canvas, Point from, Point to, Color color) {
  if (!canvas || !cutLine(*canvas, from, to)) return;
  walkLine(*canvas, from, to, lineSolid, [&](const Rect& device) {
    Rect r = begin(*canvas, device);
    for (int y = r.y; y < r.y + r.height; y++)
      for (int x = r.x; x < r.x + r.width; x++) *pixelAt(*canvas, x, y) ^= color;
  });
}

void drawEdge(Canvas* canvas, Rect r, EdgeStyle style) {
  Color light = systemColor(colorLightEdge), dark = systemColor(colorDarkEdge);
  if (style == edgeEtched) {
    drawFrame(canvas, {r.x + 1, r.y + 1, r.width - 1, r.height - 1}, light);
    drawFrame(canvas, {r.x, r.y, r.width - 1, r.height - 1}, dark);
    return;
  }
  if (style == edgeRaised) std::swap(light, dark);
  fillRect(canvas, {r.x, r.y, r.width, 1}, dark);
  fillRect(canvas, {r.x, r.y, 1, r.height}, dark);
  fillRect(canvas, {r.x, r.y + r.height - 1, r.width, 1}, light);
  fillRect(canvas, {r.x + r.width - 1, r.y, 1, r.height}, light);
}

void drawText(Canvas* canvas, Point at, Rect clip, const char* text, Color color, TextFont font) {
  if (!canvas || !text || !*text || !desktopBackend().renderText) return;
  Canvas& c = *canvas;
  Rect limit = intersect(deviceRect(c, clip), c.clip);
  Point device{deviceAt(c, at.x), deviceAt(c, at.y)};
  if (isEmpty(limit) || device.x >= limit.x + limit.width) return;
  const CoverageMask& mask =
      maskOf(keyOf('t', font, c.scale, text), [&] { return desktopBackend().renderText(text, font, c.scale); });
  drawMask(c, mask, device, limit, color);
}

Size textSize(const char* text, TextFont font) {
  if (!text) return {};
  if (desktopBackend().textSize) return desktopBackend().textSize(text, font);
  int characters = 0;
  for (const char* p = text; *p; p++) characters += (*p & 0xC0) != 0x80;
  return {6 * characters, 13};
}

void drawPixels(Canvas* canvas, Rect logical, const uint32_t* pixels, int width, int height, int rowPixels) {
  if (!canvas || width < 1 || height < 1) return;
  Rect whole = deviceRect(*canvas, logical);
  Rect r = begin(*canvas, whole);
  auto source = [](int at, int start, int length, int count) {
    return static_cast<int>((2 * static_cast<int64_t>(at - start) + 1) * count / (2 * static_cast<int64_t>(length)));
  };
  for (int y = r.y; y < r.y + r.height; y++) {
    const uint32_t* row = pixels + static_cast<size_t>(source(y, whole.y, whole.height, height)) * rowPixels;
    uint32_t* out = pixelAt(*canvas, r.x, y);
    for (int x = 0; x < r.width; x++) {
      uint32_t pixel = row[source(r.x + x, whole.x, whole.width, width)];
      out[x] = blend(out[x], pixel & 0xFFFFFF, pixel >> 24);
    }
  }
}

void drawIcon(Canvas* canvas, Rect r, const char* icon, Color color) {
  if (!canvas || !icon || !*icon || !desktopBackend().renderIcon) return;
  Rect device = deviceRect(*canvas, r);
  if (isEmpty(intersect(device, canvas->clip))) return;
  const CoverageMask& mask = maskOf(keyOf('i', device.width, device.height, icon),
                                    [&] { return desktopBackend().renderIcon(icon, sizeOf(device)); });
  drawMask(*canvas, mask, {device.x, device.y}, device, color);
}

Color systemColor(SystemColor index) { return systemColors[index]; }
void setSystemColor(SystemColor index, Color color) { systemColors[index] = color; }

void forgetMasks() { cache = {}; }

}  // namespace platform
