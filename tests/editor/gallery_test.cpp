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
    // The object of the third layer shows its settings beside the picture.
    auto* timeline = stage.window().findChild<QDockWidget*>("Zenlay");
    ASSERT_TRUE(timeline);
    QTest::mouseDClick(timeline->widget(), Qt::LeftButton, {}, QPoint(90, 42 + 31 * 2 + 18));
    stage.settle();
    auto* settings = stage.window().findChild<QScrollArea*>();
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

}  // namespace
}  // namespace cinora::test
