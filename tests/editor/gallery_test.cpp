// The whole editor as pictures to look at: out/screenshots/.
#include <gtest/gtest.h>

#include <QDockWidget>
#include <QScrollArea>

#include "cinora/desktop/export_dialog.h"
#include "platform/qt/qt_desktop.h"
#include "tests/editor/editor_stage.h"
#include "tests/support/qt/events.h"

namespace cinora::test {
namespace {

bool inDock(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget())
    if (qobject_cast<const QDockWidget*>(widget)) return true;
  return false;
}

/// Every control of the host's own lies inside the window and has the room its text needs.
void expectNothingCutOff(QWidget& window) {
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->window() != &window || inDock(widget)) continue;
    if (!qobject_cast<QAbstractButton*>(widget) && !qobject_cast<QComboBox*>(widget) &&
        !qobject_cast<QLineEdit*>(widget))
      continue;
    QRect place(widget->mapTo(&window, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(window.rect().contains(place)) << widget->accessibleName().toStdString();
    EXPECT_GE(widget->width(), std::min(widget->minimumSizeHint().width(), widget->maximumWidth()));
  }
}

struct Look {
  QSize size;
  platform::qt::Theme theme;
  const char* ending;
};
const Look looks[] = {{{1280, 800}, platform::qt::themeDark, "_1280"},
                      {{1920, 1080}, platform::qt::themeDark, "_1920"},
                      {{1280, 800}, platform::qt::themeLight, "_1280_light"}};

/// Opens the settings of the layer's object beside the picture.
QScrollArea* showSettings(EditorStage& stage, int layer) {
  auto* timeline = stage.window().findChild<QDockWidget*>("Zenlay");
  QTest::mouseDClick(timeline->widget(), Qt::LeftButton, {}, QPoint(90, 42 + 31 * layer + 18));
  stage.settle();
  return stage.window().findChild<QScrollArea*>();
}

TEST(Gallery, TheEditorInSizesAndThemes) {
  for (const Look& look : looks) {
    platform::qt::setTheme(look.theme);
    EditorStage stage(look.size);
    const std::string ending = look.ending;
    stage.settle();
    platform::test::savePicture(stage.window().grab().toImage(), "editor_empty" + ending);
    expectNothingCutOff(stage.window());
    stage.window().openFile(SOURCE_DIR "/examples/first_film.zlo");
    stage.window().goTo(100);
    stage.settle();
    stage.trigger(ActionId::selectionFirst);
    stage.window().goTo(160);
    stage.settle();
    stage.trigger(ActionId::selectionLast);
    auto* timeline = stage.window().findChild<QDockWidget*>("Zenlay");
    ASSERT_TRUE(timeline);
    auto* settings = showSettings(stage, 2);
    ASSERT_TRUE(settings);
    EXPECT_TRUE(settings->isVisible());
    platform::test::savePicture(stage.window().grab().toImage(), "editor" + ending);
    platform::test::savePicture(timeline->grab().toImage(), "timeline" + ending);
    expectNothingCutOff(stage.window());
    desktop::ExportDialog dialog(stage.host(), "film.cnp", &stage.window());
    dialog.show();
    stage.settle();
    platform::test::savePicture(dialog.grab().toImage(), "editor_export" + ending);
    expectNothingCutOff(dialog);
  }
  platform::qt::setTheme(platform::qt::themeDark);
}

/// Lists and buttons, movement, and as many effects as an object holds.
TEST(Gallery, TheSettingsInBothThemes) {
  EditorStage stage({1280, 800});
  const std::vector<std::vector<const char*>> objects = {
      {"Text", "Blur", "Add border", "Standard drawing"},
      {"Video file", "Standard drawing\nX=-100.0,250.0,1\nY=0.0,20.0,1\nZoom%=100.00,300.00,3"},
      {"Graphic", "Blur", "Glow", "Light", "Shadow", "Vibration", "Mirror", "Mosaic", "Clipping", "Rotation", "Mask",
       "Standard drawing"}};
  std::string film = "[zenlay]\nwidth=640\nheight=480\nrate=30\nscale=1\nlength=100\naudio_rate=44100\naudio_ch=2\n";
  for (size_t i = 0; i < objects.size(); i++) {
    std::string n = std::to_string(i);
    film += "[" + n + "]\nstart=1\nend=100\noverlay=1\nlayer=" + std::to_string(i + 1) + "\n";
    for (size_t e = 0; e < objects[i].size(); e++)
      film += "[" + n + "." + std::to_string(e) + "]\n_name=" + objects[i][e] + "\n";
  }
  stage.folder.write("looks.zlo", film);
  for (platform::qt::Theme theme : {platform::qt::themeLight, platform::qt::themeDark}) {
    platform::qt::setTheme(theme);
    stage.window().openFile(stage.folder / "looks.zlo");
    stage.settle();
    for (int layer : {0, 1, 2}) {
      QScrollArea* settings = showSettings(stage, layer);
      ASSERT_TRUE(settings);
      platform::test::savePicture(
          settings->widget()->grab().toImage(),
          "settings_" + std::to_string(layer + 1) + (theme == platform::qt::themeDark ? "_dark" : "_light"));
    }
  }
}

}  // namespace
}  // namespace cinora::test
