// The pieces of which a picture of the timeline is made; redraw.cpp decides which of them are drawn.
#pragma once

#include <string>
#include <vector>

#include "platform/canvas.h"
#include "zenlay/ui/timeline/colors.h"

namespace zenlay {

struct GridLine {
  int x;
  platform::Color color;
};

/// What all rows of one drawing pass have in common.
struct Painting {
  platform::Canvas* canvas;
  RowColors colors;
  std::vector<GridLine> gridLines;  // of the beat grid
  int sceneEnd;                     // x
  int textHeight;
};
Painting beginPainting(platform::Canvas*);

void paintRow(const Painting&, int layer);
void paintObject(const Painting&, int object);
void paintRuler(const Painting&);
void paintHeaderBox(const Painting&);

/// Of a second, at the clip's frame rate, cut off; 0 without a clip.
int64_t hundredthsOf(int frames);
/// "%02d:%02d:%02d.%02d": hours, minutes, seconds and hundredths at the clip's frame rate.
std::string timeText(int frame);

}  // namespace zenlay
