// A dialog with every control in both themes, and the icons, as pictures to look at: out/screenshots/ in the build.
#include <gtest/gtest.h>

#include <QPainter>

#include "platform/canvas.h"
#include "platform/icons.h"
#include "platform/qt/qt_desktop.h"
#include "tests/support/qt/events.h"

namespace platform {
namespace {

struct Row {
  ControlKind kind;
  Rect place;
  const char* text = "";
  uint32_t style = 0;
  int value = 0;
};
constexpr Row rows[] = {
    {controlIconButton, {10, 7, 15, 15}, "camera_on"},
    {controlIconButton, {30, 7, 15, 15}, "clip_on"},
    {controlLabel, {44, 7, 64, 18}, "1", controlRightAligned},
    {controlIconButton, {115, 7, 18, 18}, "jump_start"},
    {controlIconButton, {353, 7, 18, 18}, "jump_end"},
    {controlLabel, {378, 7, 64, 18}, "250"},
    {controlIconButton, {443, 7, 15, 15}, "change_source"},
    {controlIconButton, {463, 7, 15, 15}, "add"},
    {controlIconButton, {6, 28, 15, 15}, "fold_open"},
    {controlIconButton, {22, 28, 15, 15}, "handles_set"},
    {controlSeparator, {38, 34, 340, 2}},
    {controlCheckBox, {385, 29, 110, 14}, "Standard drawing", 0, 1},
    {controlTrackBar, {4, 47, 130, 25}, "", 0, 30},
    {controlSpinButton, {134, 50, 32, 18}},
    {controlEdit, {168, 53, 46, 16}, "-12.5", controlCentred | controlNumber | controlFlat},
    {controlButton, {214, 49, 60, 22}, "X"},
    {controlEdit, {274, 53, 46, 16}, "120.0", controlCentred | controlNumber | controlFlat},
    {controlSpinButton, {320, 50, 32, 18}},
    {controlTrackBar, {354, 47, 130, 25}, "", 0, 70},
    {controlTrackBar, {4, 72, 130, 25}, "", 0, 0},
    {controlSpinButton, {134, 75, 32, 18}},
    {controlEdit, {168, 78, 46, 16}, "100.00", controlCentred | controlNumber | controlFlat},
    {controlButton, {214, 74, 60, 22}, "Transparency"},
    {controlToggle, {11, 100, 19, 19}, "B", 0, 1},
    {controlToggle, {31, 100, 19, 19}, "I"},
    {controlButton, {60, 100, 155, 18}, "Choose a file"},
    {controlComboBox, {225, 100, 157, 20}, "", 0, 1},
    {controlCheckBox, {12, 124, 258, 16}, "Backward playback"},
    {controlCheckBox, {280, 124, 200, 16}, "Loop", 0, 1},
    {controlGroupBox, {10, 148, 230, 70}, "Time unit"},
    {controlRadioButton, {20, 168, 200, 18}, "Frame", controlGroupStart, 1},
    {controlRadioButton, {20, 190, 200, 18}, "Hour:minute:second"},
    {controlListBox, {252, 150, 130, 90}, "", 0, 2},
    {controlEdit, {10, 228, 120, 22}, "Заголовок 字幕 शीर्षक"},
    {controlEdit, {140, 228, 60, 22}, "1.50", controlNumber | controlRightAligned},
    {controlHorizontalScrollBar, {10, 260, 372, 13}, "", 0, 20},
    {controlVerticalScrollBar, {388, 150, 13, 123}, "", 0, 20},
    {controlLabel, {412, 150, 70, 18}, "Sunken", controlSunken | controlCentred},
    {controlButton, {412, 180, 70, 22}, "OK", controlDefault},
    {controlButton, {412, 208, 70, 22}, "Cancel"},
    {controlButton, {412, 236, 70, 22}, "Disabled"},
    {controlEdit, {206, 222, 40, 32}, "a\nb", controlMultiLine},
};

void drawCanvas(Window* window) {
  Canvas* c = windowCanvas(window);
  fillRect(c, {0, 0, 500, 400}, systemColor(colorFace));
  const Color bars[][2] = {{rgb(16, 32, 108), rgb(24, 48, 192)},
                           {rgb(16, 108, 16), rgb(24, 192, 24)},
                           {rgb(108, 16, 24), rgb(192, 24, 32)},
                           {rgb(16, 108, 108), rgb(24, 192, 192)}};
  for (int i = 0; i < 4; i++) {
    Rect bar{20 + 110 * i, 290, 100, 24};
    fillGradient(c, bar, bars[i][0], bars[i][1]);
    drawText(c, {bar.x + 5, 294}, bar, i == 1 ? "Größe 字幕 الوقت, cut off here" : "Video file", rgb(255, 255, 255));
  }
  drawFrame(c, {20, 290, 100, 24}, rgb(255, 255, 255), lineDotted);
  const Point mark[] = {{130, 285}, {134, 285}, {130, 289}};
  fillPolygon(c, mark, 3, rgb(64, 240, 64));
  drawEdge(c, {20, 320, 60, 20}, edgeEtched);
  drawEdge(c, {90, 320, 60, 20}, edgeSunken);
  drawEdge(c, {160, 320, 60, 20}, edgeRaised);
  drawText(c, {24, 323}, {20, 320, 60, 20}, "Root", systemColor(colorText), fontBold);
  drawText(c, {240, 325}, {0, 0, 500, 400}, "00:00:01.20", systemColor(colorText), fontSmall);
  drawLine(c, {310, 320}, {310, 340}, rgb(160, 160, 160), lineDotted);
  drawLine(c, {318, 320}, {318, 340}, rgb(100, 100, 100), lineDotted);
  xorLine(c, {380, 285}, {380, 345}, rgb(0, 255, 255));
  for (int i = 0; i < 6; i++) drawIcon(c, {400 + 16 * i, 322, 16, 16}, iconEye, systemColor(colorText));
}

TEST(Gallery, EveryControlInBothThemes) {
  static bool drawn;
  Window* window = createWindow(nullptr,
                                [](Window* w, uint32_t message, intptr_t, intptr_t, void*) -> intptr_t {
                                  if (message == messagePaint) drawCanvas(w), drawn = true;
                                  return 0;
                                },
                                nullptr, {"Gallery", "Gallery", {0, 0, 496, 350}});
  int id = 0;
  for (const Row& row : rows) {
    Window* control = createControl(window, row.kind, ++id, row.place, row.text, row.style);
    if (row.kind == controlIconButton) setControlIcon(control, row.text);
    const char* items[] = {"Normal", "Add", "Multiply", "Screen", "Overlay", "Darken", "Lighten", "Luminance"};
    setControlItems(control, items);
    setControlRange(control, 0, 100, 10);
    setControlValue(control, row.value);
    if (!strcmp(row.text, "Disabled")) enableWindow(control, false);
  }
  test::showActive(window);
  for (qt::Theme theme : {qt::themeLight, qt::themeDark}) {
    drawn = false;
    qt::setTheme(theme);
    test::settle();
    EXPECT_TRUE(drawn);
    test::savePicture(test::picture(window), theme == qt::themeDark ? "controls_dark" : "controls_light");
  }
  destroyWindow(window);
  test::settle();
}

TEST(Gallery, Icons) {
  const char* all[] = {iconJumpStart,  iconJumpEnd,       iconAdd,          iconChangeSource, iconFoldOpen,
                       iconFoldClosed, iconHandlesSet,    iconHandlesClear, iconCameraOn,     iconCameraOff,
                       iconClipOn,     iconClipOff,       iconPlay,         iconPause,        iconStop,
                       iconNextFrame,  iconPreviousFrame, iconZoomIn,       iconZoomOut,      iconFit,
                       iconScene,      iconAlpha,         iconLock,         iconEye,          iconUndo,
                       iconNew,        iconOpen,          iconSave,         iconExport,       iconImport,
                       iconSettings,   iconGrid,          iconSnap,         iconSpeaker,      iconPick};
  QImage sheet(7 * 80, 5 * 48, QImage::Format_RGB32);
  QPainter painter(&sheet);
  for (bool dark : {true, false}) {
    qt::setTheme(dark ? qt::themeDark : qt::themeLight);
    painter.fillRect(0, dark ? 0 : 120, sheet.width(), 120, QColor::fromRgb(systemColor(colorFace)));
    for (size_t i = 0; i < std::size(all); i++) {
      QIcon icon = qt::themedIcon(all[i]);
      QImage small = icon.pixmap(16, 16).toImage();
      int inked = 0;
      for (int y = 0; y < 16; y++)
        for (int x = 0; x < 16; x++) inked += qAlpha(small.pixel(x, y)) > 128;
      EXPECT_GT(inked, 10) << all[i];
      EXPECT_LT(inked, 200) << all[i];
      int x = static_cast<int>(i % 7) * 80, y = static_cast<int>(i / 7) * 24 + (dark ? 0 : 120);
      painter.drawImage(x + 4, y + 4, small);
      icon.paint(&painter, x + 30, y, 24, 24);
      icon.paint(&painter, x + 58, y + 4, 16, 16, Qt::AlignCenter, QIcon::Disabled);
    }
  }
  painter.end();
  qt::setTheme(qt::themeDark);
  test::savePicture(sheet.scaled(sheet.size() * 2, Qt::IgnoreAspectRatio, Qt::FastTransformation), "icons");
}

}  // namespace
}  // namespace platform
