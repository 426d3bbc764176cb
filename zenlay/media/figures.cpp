#include "zenlay/media/figures.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/paths.h"
#include "zenlay/host/environment.h"
#include "zenlay/media/polygon_figures.h"
#include "zenlay/render/convert.h"

namespace zenlay {

namespace {

constexpr int cornerCounts[builtInFigures] = {0, 0, 0, 3, 5, 6, 10};
constexpr char figureFolder[] = "figure/";
constexpr char figureExtension[] = ".png";
constexpr char temporaryBuffer[] = "tempbuffer";
constexpr int lastScene = 49;
constexpr int aspectUnit = 1000;
constexpr int64_t edgeBand = 8;                    // a circle's edge band, in squared half pixels per S
constexpr int transparentCorners = 2 * fullAlpha;  // below it a picture's surroundings count as transparent

constinit std::vector<std::string> names;
constinit std::string dropDown;
constinit std::vector<int64_t> columnSquares;  // of a circle: x squared by column; kept so that drawing allocates once

/// A request within its limits.
struct FigureShape {
  int size, lineWidth;
  int width, height;
  int64_t aspect;
  ObjectPixel colour;
};

bool shapeOf(const FigureRequest& request, const EffectProcessInfo& info, FigureShape* shape) {
  if (request.size < 1 || request.lineWidth < 1) return false;
  shape->size = std::min(request.size, maxFigureSide);
  shape->lineWidth = request.lineWidth > maxFigureSide ? 0 : request.lineWidth;
  shape->aspect = std::clamp(request.aspect, -aspectUnit, aspectUnit);
  int64_t width = shape->size, height = shape->size;
  if (shape->aspect < 0) height = height * (aspectUnit + shape->aspect) / aspectUnit;
  if (shape->aspect > 0) width = width * (aspectUnit - shape->aspect) / aspectUnit;
  if (width == 0 || height == 0) return false;
  shape->width = static_cast<int>(std::min<int64_t>(width, info.maxWidth));
  shape->height = static_cast<int>(std::min<int64_t>(height, info.maxHeight));
  shape->colour = toYcbcr(request.color[0], request.color[1], request.color[2]);
  return true;
}

ObjectPixel* rowOf(const EffectProcessInfo* info, int y) {
  return info->objectImage + static_cast<ptrdiff_t>(y) * info->bufferLine;
}

void setSize(EffectProcessInfo* info, int width, int height) {
  info->objectWidth = width;
  info->objectHeight = height;
  info->opaqueImage = 0;
}

int32_t objectAspect(const FigureShape& shape) { return static_cast<int32_t>(shape.aspect * zoomOne / aspectUnit); }

bool outlined(const FigureShape& shape) { return shape.lineWidth > 0 && 2 * shape.lineWidth < shape.size; }

/// A rectangle without transparent pixels, delivered without alpha where the next slot takes that.
int fillRectangle(EffectDefinition* effect, EffectProcessInfo* info, int width, int height, ObjectPixel colour) {
  setSize(info, width, height);
  bool opaque = info->host.flags & processTakesOpaque;
  FramePixel plain{colour.y, colour.cb, colour.cr};
  overRows(effect->host_functions, height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      if (opaque)
        std::fill_n(reinterpret_cast<FramePixel*>(rowOf(info, y)), width, plain);
      else
        std::fill_n(rowOf(info, y), width, colour);
    }
  });
  info->opaqueImage = opaque;
  return 1;
}

int drawSquare(EffectDefinition* effect, EffectProcessInfo* info, const FigureShape& shape) {
  if (!outlined(shape)) return fillRectangle(effect, info, shape.width, shape.height, shape.colour);
  setSize(info, shape.width, shape.height);
  ObjectPixel clear = shape.colour;
  clear.a = 0;
  int border = std::min(shape.lineWidth, shape.width);
  overRows(effect->host_functions, shape.height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      ObjectPixel* row = rowOf(info, y);
      bool edge = y < shape.lineWidth || y >= shape.height - shape.lineWidth;
      std::fill_n(row, shape.width, edge ? shape.colour : clear);
      std::fill_n(row, border, shape.colour);
      std::fill_n(row + shape.width - border, border, shape.colour);
    }
  });
  return 1;
}

/// The edges of a disc or ring in squared units of half a pixel on the size x size grid.
struct CircleEdges {
  int64_t outer, outerBand;  // S squared and the width of its soft edge
  int64_t inner, innerBand;
  bool ring;

  int16_t alpha(int64_t distance) const {
    int64_t q = outer - distance;
    if (q < 1) return 0;
    int64_t a = q < outerBand ? q * fullAlpha / outerBand : fullAlpha;
    if (ring) {
      int64_t r = distance - inner + innerBand;
      if (r < 0) return 0;
      if (r < innerBand) a = a * r / innerBand;
    }
    return static_cast<int16_t>(a);
  }
};

CircleEdges circleEdges(const FigureShape& shape) {
  int64_t s = shape.size, w = shape.width, h = shape.height;
  int64_t d = std::max<int64_t>(s - 2 * int64_t{shape.lineWidth} - 1, 0);
  CircleEdges edges;
  edges.outer = s * s;
  edges.outerBand = edgeBand * s * s / w * s / h;
  edges.inner = d * d;
  edges.innerBand = edgeBand * s * d / w * s / h;
  edges.ring = shape.lineWidth > 0 && d > 0;
  return edges;
}

int drawCircle(EffectDefinition* effect, EffectProcessInfo* info, const FigureShape& shape) {
  setSize(info, shape.width, shape.height);
  CircleEdges edges = circleEdges(shape);
  columnSquares.resize(static_cast<size_t>(shape.width));
  for (int i = 0; i < shape.width; i++) {
    int64_t x = (2 * int64_t{i} - shape.width + 1) * shape.size / shape.width;
    columnSquares[static_cast<size_t>(i)] = x * x;
  }
  overRows(effect->host_functions, shape.height, [&](int first, int last) {
    ObjectPixel pixel = shape.colour;
    for (int j = first; j < last; j++) {
      int64_t y = (2 * int64_t{j} - shape.height + 1) * shape.size / shape.height;
      ObjectPixel* row = rowOf(info, j);
      for (int i = 0; i < shape.width; i++) {
        pixel.a = edges.alpha(columnSquares[static_cast<size_t>(i)] + y * y);
        row[i] = pixel;
      }
    }
  });
  return 1;
}

int drawPolygonFigure(EffectDefinition* effect, EffectProcessInfo* info, const FigureShape& shape, int type) {
  int side = std::min({shape.size, info->maxWidth, info->maxHeight});
  setSize(info, side, side);
  FigurePolygon figure = regularFigure(cornerCounts[type], type == figureStar, side, shape.lineWidth);
  overRows(effect->host_functions, side, [&](int first, int last) {
    fillFigureRows(figure, info->objectImage, info->bufferLine, side, first, last, shape.colour);
  });
  info->aspect = objectAspect(shape);
  return 1;
}

int drawBuiltIn(EffectDefinition* effect, EffectProcessInfo* info, const FigureShape& shape, int type) {
  switch (type) {
    case figureBackground:
      return fillRectangle(effect, info, std::min(info->host.width, info->maxWidth),
                           std::min(info->host.height, info->maxHeight), shape.colour);
    case figureCircle:
      return drawCircle(effect, info, shape);
    case figureSquare:
      return drawSquare(effect, info, shape);
    default:
      return type > figureSquare && type < builtInFigures ? drawPolygonFigure(effect, info, shape, type) : 0;
  }
}

int loadScene(EffectDefinition* effect, EffectProcessInfo* info, const char* number) {
  long scene = std::clamp(strtol(number, nullptr, 10), 0L, lastScene + 1L);
  return takeScene(effect, info, static_cast<int>(scene), info->absoluteFrame, info->subFrame);
}

int loadFigurePicture(EffectDefinition* effect, EffectProcessInfo* info, const char* name) {
  if (name[0] == ':') return loadScene(effect, info, name + 1);
  bool chosen = name[0] == '*';
  const char* chosenPath = name + 1;
  if (chosen && strcmp(chosenPath, temporaryBuffer) == 0) return 0;  // the scripts' picture: there is none yet
  std::string path = chosen ? chosenPath : environment.pluginDirectory + figureFolder + name + figureExtension;
  int32_t width, height;
  if (!effect->services->loadImage(info->objectImage, path.c_str(), &width, &height, nullptr, 0)) return 0;
  setSize(info, width, height);
  return width > 0 && height > 0;
}

/// Every pixel takes the colour; the alpha stays where the surroundings are transparent, else it is the luma.
void recolour(EffectDefinition* effect, EffectProcessInfo* info, ObjectPixel colour) {
  int width = info->objectWidth, height = info->objectHeight;
  const ObjectPixel *top = rowOf(info, 0), *bottom = rowOf(info, height - 1);
  bool keepAlpha = top[0].a + top[width - 1].a + bottom[0].a + bottom[width - 1].a < transparentCorners;
  overRows(effect->host_functions, height, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      ObjectPixel* row = rowOf(info, y);
      for (int x = 0; x < width; x++) {
        int16_t a = keepAlpha ? row[x].a : static_cast<int16_t>(std::clamp<int>(row[x].y, 0, fullAlpha));
        row[x] = {colour.y, colour.cb, colour.cr, a};
      }
    }
  });
}

int drawNamed(EffectDefinition* effect, EffectProcessInfo* info, const FigureShape& shape,
              const FigureRequest& request) {
  if (!loadFigurePicture(effect, info, request.name)) return 0;
  if (request.colourise) recolour(effect, info, shape.colour);
  int64_t fitted = int64_t{shape.size} * zoomOne / std::max(info->objectWidth, info->objectHeight);
  info->zoom = static_cast<int32_t>(fitted);
  info->aspect = objectAspect(shape);
  return 1;
}

}  // namespace

int takeScene(EffectDefinition* effect, EffectProcessInfo* info, int scene, int frame, int subFrame) {
  if (scene < 1 || scene > lastScene) return 0;
  int32_t width, height, lineBytes;
  bool alpha;
  const void* picture =
      effect->services->renderScene(info, scene, frame, subFrame, &width, &height, &lineBytes, &alpha);
  if (!picture) return 0;
  setSize(info, std::min(width, info->maxWidth), std::min(height, info->maxHeight));
  overRows(effect->host_functions, info->objectHeight, [&](int first, int last) {
    for (int y = first; y < last; y++) {
      const uint8_t* from = static_cast<const uint8_t*>(picture) + static_cast<ptrdiff_t>(y) * lineBytes;
      if (alpha)
        memcpy(rowOf(info, y), from, static_cast<size_t>(info->objectWidth) * sizeof(ObjectPixel));
      else
        frameToObjectRow(rowOf(info, y), reinterpret_cast<const FramePixel*>(from), info->objectWidth);
    }
  });
  return 1;
}

void buildFigureList(const char* pluginDirectory) {
  names.clear();
  const char* item = figureList;
  for (int i = 0; i < builtInFigures; i++, item += names.back().size() + 1) names.emplace_back(item);
  std::string folder = std::string(pluginDirectory) + figureFolder;
  for (const std::string& file : platform::filesMatching(folder, "*.png")) {
    if (figureCount() == maxFigures) break;
    names.emplace_back(platform::withoutExtension(file));
  }
  dropDown.clear();
  for (const std::string& name : names) dropDown.append(name.c_str(), name.size() + 1);
  dropDown.append(item, strlen(item) + 1);
}

void freeFigureList() {
  names.clear();
  names.shrink_to_fit();
  dropDown.clear();
  columnSquares.clear();
  columnSquares.shrink_to_fit();
}

int figureCount() { return static_cast<int>(names.size()); }

const char* figureName(int index) {
  return index >= 0 && index < figureCount() ? names[static_cast<size_t>(index)].c_str() : "";
}

const char* figureDropDown() { return dropDown.empty() ? figureList : dropDown.c_str(); }

int drawFigure(EffectDefinition* effect, EffectProcessInfo* info, const FigureRequest* request) {
  FigureShape shape;
  if (!shapeOf(*request, *info, &shape)) return 0;
  if (request->name && request->name[0]) return drawNamed(effect, info, shape, *request);
  return drawBuiltIn(effect, info, shape, request->type);
}

}  // namespace zenlay
