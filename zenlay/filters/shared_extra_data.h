// Extra-data layouts that several effects share, each with its field table.
#pragma once

#include "zenlay/effects/effect_definition.h"

namespace zenlay {

/// Control objects with a range.
struct LayerRange {
  int32_t range;  // layers governed below its own, 0 = all
  uint8_t reserved[16];
};
static_assert(sizeof(LayerRange) == 20);
inline constexpr ExdataField layerRangeFields[] = {
    {exdataInteger, sizeof(LayerRange::range), "range"},
    {exdataReserved, sizeof(LayerRange::reserved), nullptr},
};

/// Drawing effects.
struct BlendChoice {
  int32_t blend;  // BlendMode
};
static_assert(sizeof(BlendChoice) == 4);
inline constexpr ExdataField blendChoiceFields[] = {
    {exdataInteger, sizeof(BlendChoice::blend), "blend"},
};

/// Effects whose only choice is an item of their list.
struct ListChoice {
  int32_t type;  // index into the list
};
static_assert(sizeof(ListChoice) == 4);
inline constexpr ExdataField listChoiceFields[] = {
    {exdataInteger, sizeof(ListChoice::type), "type"},
};

/// Effects with one colour.
struct ColorChoice {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
};
static_assert(sizeof(ColorChoice) == 4);
inline constexpr ExdataField colorChoiceFields[] = {
    {exdataBytes, sizeof(ColorChoice::color), "color"},
    {exdataReserved, sizeof(ColorChoice::reserved), nullptr},
};
inline constexpr ColorChoice whiteColor = {{255, 255, 255}, 0};

/// Effects that paint with a colour or a picture; black without a file by default.
struct PatternChoice {
  uint8_t color[3];  // red, green, blue
  uint8_t reserved;
  char file[256];  // pattern picture
};
static_assert(sizeof(PatternChoice) == 260);
inline constexpr ExdataField patternChoiceFields[] = {
    {exdataBytes, sizeof(PatternChoice::color), "color"},
    {exdataReserved, sizeof(PatternChoice::reserved), nullptr},
    {exdataString, sizeof(PatternChoice::file), "file"},
};

/// Keys on a colour picked from the picture.
struct KeyColor {
  int16_t color_yc[3];  // Y, Cb, Cr
  uint8_t reserved[2];
  int32_t status;  // 1 = a colour was picked
};
static_assert(sizeof(KeyColor) == 12);
inline constexpr ExdataField keyColorFields[] = {
    {exdataBytes, sizeof(KeyColor::color_yc), "color_yc"},
    {exdataReserved, sizeof(KeyColor::reserved), nullptr},
    {exdataInteger, sizeof(KeyColor::status), "status"},
};

}  // namespace zenlay
