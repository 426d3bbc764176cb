// Ten thousand things a user may do, in any order and at any moment: during drags, dialogs, exports and playback, too.
// The model stays sound, every film drawn, every dialog can be left, and what is saved is what is read.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <set>

#include "cinora/host/project.h"
#include "tests/editor/random_user.h"

namespace cinora::test {
namespace {

constexpr int events = 10000, checkEvery = 100, saveEvery = 1000, leaveEvery = 350;
constexpr int maxFilmFrames = 3000, maxFilmWidth = 480;  // larger ones are left, so that the time goes into events

/// 16-bit mono silence with a click now and then.
std::string wave(int samples) {
  auto number = [](uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; i++) text += static_cast<char>(value >> 8 * i);
    return text;
  };
  std::string data;
  for (int i = 0; i < samples; i++) data += number(i % 400 == 0 ? 20000 : 0, 2);
  auto size = static_cast<uint32_t>(data.size());
  return "RIFF" + number(36 + size, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) + number(8000, 4) +
         number(16000, 4) + number(2, 2) + number(16, 2) + "data" + number(size, 4) + data;
}

struct RandomWalk : testing::Test {
  std::filesystem::path before = std::filesystem::current_path();
  EditorStage stage{{1280, 800}, true};
  RandomUser user{stage, 20261};
  int count = 0, depth = 0, leaving = 0;
  const void* actedOn = nullptr;  // the menu or dialog in front when the latest act began
  bool open = true;
  std::string fault;

  void SetUp() override {
    std::filesystem::current_path(stage.folder.path());  // where an untitled film is saved
    QImage picture(24, 16, QImage::Format_ARGB32);
    picture.fill(QColor(200, 100, 50, 180));
    ASSERT_TRUE(picture.save(QString::fromStdString(stage.folder / "picture.png")));
    std::filesystem::copy_file(SOURCE_DIR "/examples/media/lights.mp4", stage.folder / "video.mp4");
    stage.folder.write("sound.wav", wave(8000));
    stage.folder.write("film.zlo", squareFilm(60, 20));
    stage.folder.write("small.zlo", squareFilm(10, 8, 3));
    stage.folder.write("soft.zla", "[vo.0]\r\n_name=Blur\r\n");
    stage.folder.write("chain.zla",
                       "[vo]\r\nlength=10\r\n[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n"
                       "[vo]\r\nlength=20\r\n[vo.0]\r\n_name=Graphic\r\n[vo.1]\r\n_name=Standard drawing\r\n");
    for (const char* name : {"garbage.png", "garbage.mp4", "garbage.zla", "garbage.zlo", "garbage.cnp", "text.txt"})
      stage.folder.write(name, "\x7fno file of this kind[0]\n=\n");
    stage.folder.write("empty.wav", "");
    std::filesystem::create_directory(stage.folder / "folder.png");
    stage.window().openFile(stage.folder / "film.zlo");
    for (const char* name : {"film.cnp", "film.zenlay_backup"}) saveProject(stage.host(), stage.folder / name);
  }
  void TearDown() override { std::filesystem::current_path(before); }

  void expect(bool holds, const std::string& what) {
    if (!holds && fault.empty()) fault = what;
  }

  void check() {
    std::string broken = askEditor(stage.host(), zenlay::queryFault, nullptr);
    expect(broken.empty(), broken);
    const zenlay::HostEdit& edit = stage.host().edit;
    if (!edit.open) return;
    expect(edit.currentFrame >= 0 && edit.currentFrame < edit.frameCount, "the cursor is outside the film");
    expect(
        edit.selectionFirst >= 0 && edit.selectionFirst <= edit.selectionLast && edit.selectionLast < edit.frameCount,
        "the selection is outside the film");
    if (!user.idle() || depth > 1) return;
    stage.window().refreshNow();
    expect(!stage.window().preview().picture().isNull(), "the film shows no picture");
    if (edit.frameCount > maxFilmFrames || edit.format.width > maxFilmWidth) user.openFilm();
  }

  /// What a project file keeps: places in the list instead of places in the table, and only the scenes and layers that
  /// hold objects.
  QByteArray project() {
    QJsonObject all = QJsonDocument::fromJson(askEditor(stage.host(), zenlay::queryProject, nullptr).c_str()).object();
    QJsonArray objects = all["objects"].toArray();
    std::map<int, int> places{{-1, -1}};
    for (qsizetype i = 0; i < objects.size(); i++) places[objects[i].toObject()["index"].toInt()] = static_cast<int>(i);
    std::set<std::pair<int, int>> holding;
    for (QJsonValueRef value : objects) {
      QJsonObject object = value.toObject();
      holding.insert({object["scene"].toInt(), object["layer"].toInt()});
      for (const char* key : {"index", "chain"}) object[key] = places[object[key].toInt()];
      value = object;
    }
    all["objects"] = objects;
    QJsonArray kept;
    for (const QJsonValue& value : all["scenes"].toArray()) {
      QJsonObject scene = value.toObject();
      int number = scene["index"].toInt();
      auto first = holding.lower_bound({number, 0});
      if (first == holding.end() || first->first != number) continue;
      QJsonArray layers;
      for (const QJsonValue& layer : scene["layers"].toArray())
        if (holding.contains({number, layer.toObject()["layer"].toInt()})) layers.append(layer);
      scene["layers"] = layers;
      kept.append(scene);
    }
    all["scenes"] = kept;
    return QJsonDocument(all).toJson();
  }
  static std::string difference(const QByteArray& a, const QByteArray& b) {
    qsizetype at = 0;
    while (at < a.size() && at < b.size() && a[at] == b[at]) at++;
    auto excerpt = [at](const QByteArray& text) {
      return text.mid(std::max<qsizetype>(at - 600, 0), 800).toStdString();
    };
    return excerpt(a) + "\n---- or ----\n" + excerpt(b);
  }

  void checkSaving() {
    if (!stage.host().edit.open || !user.idle() || depth > 1) return;
    std::string path = stage.folder / "checked.cnp";
    if (!stage.window().saveTo(path)) return expect(false, "the project cannot be saved");
    QByteArray saved = project();
    stage.window().openFile(path);
    QByteArray read = project();
    expect(read == saved, "what is read is not what was saved:\n" + difference(saved, read));
  }

  /// A timer of its own for every step: one whose work waits in a dialog does not fire there.
  void schedule() {
    auto* timer = new QTimer(qApp);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer] {
      timer->deleteLater();
      step();
    });
    timer->start(0);
  }

  void step() {
    bool over = count >= events || !fault.empty();
    if (over && depth == 0 && user.idle()) return QApplication::exit(1);
    schedule();
    if (!open) return;
    // The events a user's act sends are also handled inside it: only what it opened is then acted on.
    QWidget* top =
        QApplication::activePopupWidget() ? QApplication::activePopupWidget() : QApplication::activeModalWidget();
    if (depth > 0 && top == actedOn) return;
    const void* below = std::exchange(actedOn, top);
    depth++;
    if (over) {
      if (++leaving > 2000) fprintf(stderr, "%s\n%s", fault.c_str(), user.recently().c_str()), abort();
      user.leave();
    } else {
      count++;
      user.act();
      if (count % checkEvery == 0) check();
      if (count % saveEvery == 0) checkSaving();
      if (count % leaveEvery == 0 && user.idle() && depth == 1) stage.window().action(ActionId::quit)->trigger();
      expect(user.stuck().empty(), user.stuck());
    }
    depth--;
    actedOn = below;
  }
};

TEST_F(RandomWalk, TheEditorStaysSound) {
  schedule();
  int restarts = 0;
  while (QApplication::exec() == 0) {  // the user has left it, and comes back
    open = false;
    stage.restart();
    open = true;
    restarts++;
  }
  EXPECT_EQ(fault, "") << "after " << count << " events:\n" << user.recently();
  int entries = 0, commands = 0, dialogs = 0;
  for (const auto& [kind, times] : user.done()) {
    entries += kind.starts_with("entry ");
    commands += kind.starts_with("menu ");
    dialogs += kind.starts_with("dialog ");
    if (getenv("WALK_LOG")) printf("%6d %s\n", times, kind.c_str());
  }
  EXPECT_GT(entries, 40);  // well below what any walk reaches
  EXPECT_GT(commands, 40);
  EXPECT_GT(dialogs, 12);
  EXPECT_GT(restarts, 0);
}

}  // namespace
}  // namespace cinora::test
