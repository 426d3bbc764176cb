// "Text": a text in one font, with inline control sequences.
#include "zenlay/effects/definitions.h"

namespace zenlay {

namespace {

enum TextTrack { trackSize, trackDisplaySpeed };
enum TextCheck { checkIndividual, checkMotionCoordinate, checkScroll, checkBold, checkItalic };

struct TextData {
  uint8_t type;        // decoration
  uint8_t autoadjust;  // 1 = the object lasts as long as the display
  uint8_t soft;
  uint8_t monospace;
  uint8_t align;     // 0..17
  int8_t spacing_x;  // pixels
  int8_t spacing_y;
  uint8_t precision;  // 1 = drawn at double size and reduced
  uint8_t color[3];   // red, green, blue
  uint8_t reserved;
  uint8_t color2[3];  // shadow or border
  uint8_t reserved2;
  char font[32];
  char16_t text[1024];
};
static_assert(sizeof(TextData) == 2096);

constexpr TrackColumns tracks({
    {"Size", 34, 1, 1000, 0, 1, 256},
    {"vDisplay", 0, 0, 8000, 10, 0, 1000},
});
constexpr CheckColumns checks({
    {"1char1obj", 0},
    {"Show on motion coordinate", 0},
    {"Automatic scrolling", 0},
    {"B", checkToggle},
    {"I", checkToggle},
});
constexpr ExdataField fields[] = {
    {exdataInteger, sizeof(TextData::type), "type"},
    {exdataInteger, sizeof(TextData::autoadjust), "autoadjust"},
    {exdataInteger, sizeof(TextData::soft), "soft"},
    {exdataInteger, sizeof(TextData::monospace), "monospace"},
    {exdataInteger, sizeof(TextData::align), "align"},
    {exdataInteger, sizeof(TextData::spacing_x), "spacing_x"},
    {exdataInteger, sizeof(TextData::spacing_y), "spacing_y"},
    {exdataInteger, sizeof(TextData::precision), "precision"},
    {exdataBytes, sizeof(TextData::color), "color"},
    {exdataReserved, sizeof(TextData::reserved), nullptr},
    {exdataBytes, sizeof(TextData::color2), "color2"},
    {exdataReserved, sizeof(TextData::reserved2), nullptr},
    {exdataString, sizeof(TextData::font), "font"},
    {exdataBytes, sizeof(TextData::text), "text"},
};
constexpr TextData defaults = {
    .type = 0,
    .autoadjust = 0,
    .soft = 1,
    .monospace = 0,
    .align = 0,
    .spacing_x = 0,
    .spacing_y = 0,
    .precision = 1,
    .color = {255, 255, 255},
    .reserved = 0,
    .color2 = {0, 0, 0},
    .reserved2 = 0,
    .font = "MS UI Gothic",
    .text = {},
};

}  // namespace

constinit EffectDefinition textMedia = defineEffect({
    .flag = effectMedia,
    .name = "Text",
    .tracks = tracks,
    .checks = checks,
    .exdata_size = sizeof(TextData),
    .exdata_default = &defaults,
    .exdata_fields = fields,
});

}  // namespace zenlay
