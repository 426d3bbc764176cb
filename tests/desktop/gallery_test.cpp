// The icons in both themes, also as a picture to look at: out/screenshots/.
#include <gtest/gtest.h>

#include <QPainter>

#include "platform/canvas.h"
#include "platform/icons.h"
#include "platform/qt/qt_desktop.h"
#include "tests/support/qt/events.h"

namespace platform {
namespace {

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
