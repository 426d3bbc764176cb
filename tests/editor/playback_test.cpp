// Moving through the film: frames, the seek bar, typed times, playback and what plug-ins are told of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QSpinBox>

#include "cinora/desktop/time_code.h"
#include "tests/editor/editor_stage.h"

namespace cinora::test {
namespace {

using desktop::frameOfTimeCode;
using desktop::timeCode;

TEST(TimeCode, ReadsWhatItWrites) {
  ClipFormat pal{64, 48, 25, 1, 44100, 2}, ntsc{64, 48, 30000, 1001, 44100, 2};
  EXPECT_EQ(timeCode(0, pal), "00:00:00.00");
  EXPECT_EQ(timeCode(26, pal), "00:00:01.04");
  EXPECT_EQ(timeCode(25 * 3661, pal), "01:01:01.00");
  EXPECT_EQ(timeCode(1, ntsc), "00:00:00.03");  // 100 * 1001 / 30000 = 3.34
  for (const ClipFormat& format : {pal, ntsc})
    for (int frame = 0; frame < 100000; frame += 37) ASSERT_EQ(frameOfTimeCode(timeCode(frame, format), format), frame);
  struct Row {
    const char* text;
    std::optional<int> frame;
  };
  for (const Row& row : {Row{"2", 50},
                         {"1:00", 1500},
                         {"0:00:01,2", 30},
                         {" 5.04 ", 126},
                         {"", {}},
                         {"x", {}},
                         {"1:2:3:4", {}},
                         {"-1", {}},
                         {"1.234", {}},
                         {"9999999", 800000}})
    EXPECT_EQ(frameOfTimeCode(row.text, pal), row.frame) << row.text;
}

struct Playback : testing::Test {
  static inline std::vector<std::pair<int, int>> notices;
  EditorStage stage;

  Playback() {
    stage.folder.write("film.zlo", squareFilm(50, 20));
    stage.window().openFile(stage.folder / "film.zlo");
    notices.clear();
    for (const auto& filter : stage.host().plugins.filters())
      if (filter->record->name == std::string("Playback window"))
        platform::sendMessage(filter->window, zenlay::messageCommand, 900,
                              reinterpret_cast<intptr_t>(+[](int32_t frame, int32_t flags) {
                                notices.emplace_back(frame, flags);
                                return 1;
                              }));
  }
  int frame() { return stage.host().edit.currentFrame; }
  desktop::Player& player() { return stage.window().player(); }
  /// First and last column of the square, beside the handles drawn in the middle row.
  std::pair<int, int> square() {
    std::pair<int, int> found{64, -1};
    for (int x = 0; x < 64; x++)
      if (stage.colourAt(x, 18).lightness() > 128) found = {std::min(found.first, x), x};
    return found;
  }
};

TEST_F(Playback, StepsAndJumpsStayInsideTheFilm) {
  stage.trigger(ActionId::frameBack);
  EXPECT_EQ(frame(), 0);
  stage.trigger(ActionId::frameForward);
  EXPECT_EQ(frame(), 1);
  stage.trigger(ActionId::toEnd);
  EXPECT_EQ(frame(), 49);
  stage.trigger(ActionId::frameForward);
  EXPECT_EQ(frame(), 49);
  stage.trigger(ActionId::toStart);
  EXPECT_EQ(frame(), 0);
  QTest::keyClick(&stage.window().preview(), Qt::Key_Right);
  stage.settle();
  EXPECT_EQ(frame(), 1);
}

TEST_F(Playback, TheSeekBarAndTheBoxesGoWhereTheySay) {
  desktop::SeekBar& bar = stage.window().seekBar();
  for (int wanted : {0, 1, 24, 48, 49}) {
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(qRound(bar.xOf(wanted)), 5));
    stage.settle();
    EXPECT_EQ(frame(), wanted);
    EXPECT_EQ(bar.state().frame, wanted);
  }
  auto* time = stage.window().transport().findChildren<QLineEdit*>()[0];
  time->setFocus();
  time->selectAll();
  QTest::keyClicks(time, "0.48");
  QTest::keyClick(time, Qt::Key_Return);
  EXPECT_EQ(frame(), 12);
  stage.settle();
  auto* box = stage.window().transport().findChild<QSpinBox*>();
  EXPECT_EQ(box->value(), 13);
  box->setValue(30);
  EXPECT_EQ(frame(), 29);
  time->selectAll();
  QTest::keyClicks(time, "99");
  QTest::keyClick(time, Qt::Key_Return);
  EXPECT_EQ(frame(), 49);
}

TEST_F(Playback, TheSelectionIsSetFromWhereTheFilmStands) {
  stage.window().goTo(10);
  stage.trigger(ActionId::selectionFirst);
  stage.window().goTo(20);
  stage.settle();
  stage.trigger(ActionId::selectionLast);
  EXPECT_EQ(stage.host().edit.selectionFirst, 10);
  EXPECT_EQ(stage.host().edit.selectionLast, 20);
  stage.window().goTo(5);
  stage.settle();
  stage.trigger(ActionId::selectionLast);  // before its begin
  EXPECT_EQ(stage.host().edit.selectionFirst, 5);
  EXPECT_EQ(stage.host().edit.selectionLast, 5);
  stage.trigger(ActionId::selectAll);
  EXPECT_EQ(stage.host().edit.selectionLast, 49);
}

// 25 frames a second: the clock says which frame it is, however many are passed over.
TEST_F(Playback, KeepsTheFilmsTime) {
  QElapsedTimer clock;
  stage.trigger(ActionId::play);
  clock.start();
  ASSERT_TRUE(player().playing());
  stage.wait([&] { return clock.elapsed() >= 500; });
  int due = static_cast<int>(clock.elapsed() * 25 / 1000);
  EXPECT_NEAR(player().frame(), due, 3);
  EXPECT_GE(player().framesShown(), 2);
  stage.trigger(ActionId::play);
  EXPECT_FALSE(player().playing());
  EXPECT_EQ(frame(), player().frame()) << "pausing stays where it was";
}

TEST_F(Playback, SlowFramesAreDroppedNotQueued) {
  QElapsedTimer clock;
  QTimer load;
  QObject::connect(&load, &QTimer::timeout, &load, [] { QTest::qSleep(90); });
  load.start(0);
  clock.start();
  stage.trigger(ActionId::play);
  stage.wait([&] { return clock.elapsed() >= 900; });
  EXPECT_NEAR(player().frame(), clock.elapsed() * 25 / 1000, 6);
  EXPECT_LT(player().framesShown(), player().frame());
  player().stop();
}

TEST_F(Playback, EndsAndTellsThePlugins) {
  stage.window().goTo(46);
  stage.settle();
  notices.clear();
  stage.trigger(ActionId::play);
  ASSERT_TRUE(stage.wait([&] { return !player().playing(); }));
  EXPECT_EQ(frame(), 46) << "a playback that ends by itself leaves the cursor";
  ASSERT_GE(notices.size(), 5u);
  EXPECT_EQ(notices[0], std::pair(46, 4));
  EXPECT_EQ(notices[1], std::pair(46, 1));
  EXPECT_EQ(notices[2], std::pair(46, 2));
  EXPECT_EQ(notices[notices.size() - 2].second, 8);
  EXPECT_EQ(notices.back().second, 0);
  for (size_t i = 1; i + 2 < notices.size(); i++) EXPECT_EQ(notices[i].second, i % 2 ? 1 : 2);
}

TEST_F(Playback, LoopsOverTheSelection) {
  hostFunctions.setSelection(stage.host().editHandle(), 3, 6);
  stage.trigger(ActionId::loop);
  stage.trigger(ActionId::playSelection);
  stage.wait([&] { return player().framesShown() >= 8; });
  EXPECT_TRUE(player().playing());
  for (auto [shown, flags] : notices) {
    if (flags == 2) {
      EXPECT_THAT(shown, testing::AllOf(testing::Ge(3), testing::Le(6)));
    }
  }
  stage.window().openFile(stage.folder / "film.zlo");
  EXPECT_FALSE(player().playing());
}

// Fitted into the widget, at 100 %, and after the wheel the point under the mouse stays.
TEST_F(Playback, PicturePointsFollowTheZoom) {
  desktop::Preview& preview = stage.window().preview();
  preview.setZoom(1);
  QPointF centre = preview.pictureRect().center();
  EXPECT_EQ(preview.pictureRect().size(), QSizeF(64, 48));
  EXPECT_EQ(preview.pictureAt(preview.pictureRect().topLeft()), QPoint(0, 0));
  EXPECT_EQ(preview.pictureAt(preview.pictureRect().bottomRight() - QPointF(0.5, 0.5)), QPoint(63, 47));
  EXPECT_EQ(preview.pictureAt(preview.pictureRect().topLeft() - QPointF(1, 1)), QPoint(-1, -1));
  QPointF at = centre + QPointF(11, -7);
  QPoint before = preview.pictureAt(at);
  preview.zoomBy(4, at);
  EXPECT_EQ(preview.zoom(), 4);
  EXPECT_LE((preview.pictureAt(at) - before).manhattanLength(), 1);
  preview.setZoom(0);
  EXPECT_GT(preview.scale(), 1);
}

// The arrow keys move what was taken hold of on the picture; otherwise they step through the film.
TEST_F(Playback, ArrowKeysGoToThePictureFirst) {
  desktop::Preview& preview = stage.window().preview();
  QPoint centre = preview.pictureRect().center().toPoint();
  auto press = [&](Qt::Key key) {
    QTest::keyClick(&preview, key);
    stage.settle();
  };
  preview.setFocus();
  press(Qt::Key_Right);
  EXPECT_EQ(frame(), 1);
  QTest::mouseDClick(&preview, Qt::LeftButton, {}, centre);
  stage.settle();
  QTest::mouseClick(&preview, Qt::LeftButton, {}, centre);
  press(Qt::Key_Right);
  EXPECT_EQ(frame(), 1);
  EXPECT_EQ(square(), std::pair(23, 42));
  stage.trigger(ActionId::undo);
  EXPECT_EQ(square(), std::pair(22, 41));
}

TEST_F(Playback, ManyChangesAreOnePicture) {
  int64_t key = stage.window().preview().picture().cacheKey();
  for (int i = 1; i < 40; i++) hostFunctions.setCurrentFrame(stage.host().editHandle(), i);
  EXPECT_EQ(stage.window().preview().picture().cacheKey(), key) << "nothing is drawn before the events are through";
  stage.settle();
  EXPECT_NE(stage.window().preview().picture().cacheKey(), key);
  EXPECT_EQ(stage.window().seekBar().state().frame, 39);
}

}  // namespace
}  // namespace cinora::test
