// One session from an empty project to the film: files dropped, moved, split, set, undone, saved, opened again.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>

#include "tests/end_to_end/editor_on_display.h"

namespace cinora::test {
namespace {

constexpr int width = 320, height = 240;

struct Place {
  int x, y;
};
/// The main window's parts as it stands at first.
constexpr Place trackX{1281, 130};  // the box of track X of an object from a file
constexpr int timelineX = 64, rulerY = 705;
constexpr int framePixels = 5;  // after a picture of ten seconds was dropped
constexpr int rowPixels = 31;

/// In the middle of a frame and a layer, both from 1, on the timeline.
Place onTimeline(int frame, int layer) {
  return {timelineX + (frame - 1) * framePixels + 2, 737 + (layer - 1) * rowPixels};
}

struct Session : EditorOnDisplay {
  std::string project = folder / "work.cnp", again = folder / "again.cnp";

  void point(Place to) { xdotool({"mousemove", std::to_string(to.x), std::to_string(to.y)}); }
  void button(const char* action) { xdotool({action, "1"}); }
  void click(Place at) {
    point(at);
    button("click");
  }
  void drag(Place from, Place to) {
    point(from);
    button("mousedown");
    point({(from.x + to.x) / 2, (from.y + to.y) / 2});
    point(to);
    button("mouseup");
  }
  /// One drag of the file in this window; false when it came to nothing, as when no answer to it arrives.
  bool tryDrop(const std::string& window, Place to) {
    const size_t before = contentsOf(folder / "drags").size();
    auto told = [&](const char* word) { return contentsOf(folder / "drags").substr(before).ends_with(word); };
    xdotool({"mousemove", "--window", window, "20", "20", "mousedown", "1"});
    auto isTaken = [&] {
      to.y ^= 1;  // a resting pointer asks nobody
      point(to);
      return told("taken\n");
    };
    waitFor(isTaken, std::chrono::seconds(6));
    button("mouseup");
    waitFor([&] { return told("dropped\n") || told("left\n"); });
    return told("dropped\n");
  }
  void drop(const std::string& name, Place to) {
    std::string window;
    ASSERT_TRUE(waitFor([&] { return !(window = windowNamed("Drag " + name)).empty(); })) << name;
    bool dropped = false;
    for (int i = 0; i < 3 && !dropped; i++) dropped = tryDrop(window, to);
    ASSERT_TRUE(dropped) << name << contentsOf(folder / "drags");
  }

  std::string textOf(const std::string& path) {
    runCinora({"convert", path, folder / "as_text.zlo"});
    std::string text = contentsOf(folder / "as_text.zlo");
    std::erase(text, '\r');
    return text;
  }
  /// Saves until the project holds the text, or not.
  void expectSaved(const std::string& text, bool there = true) {
    bool saved = waitFor([&] {
      xdotool({"windowfocus", "--sync", windowNamed("work.cnp")});
      xdotool({"key", "ctrl+s"});
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      return (textOf(project).find(text) != std::string::npos) == there;
    });
    ASSERT_TRUE(saved) << text << (there ? "is not in\n" : "is in\n") << textOf(project);
  }

  void createProject();
  void dropFiles();
  void moveAndSplit();
  void setX();
  void blurAndUndo();
  void closeAndReopen();
};

void Session::createProject() {
  open({});
  const char* dialog = "Create a New Project";
  ASSERT_NO_FATAL_FAILURE(takeAll({
      {.window = "^Cinora$", .keys = "ctrl+n", .shows = dialog},
      {.window = dialog, .keys = "ctrl+a"},
      {.window = dialog, .keys = "Tab", .text = "320"},
      {.window = dialog, .keys = "ctrl+a"},
      {.window = dialog, .keys = "Tab", .text = "240"},
      {.window = dialog, .keys = "ctrl+a"},
      {.window = dialog, .keys = "Return", .text = "25", .shows = "Untitled"},
      {.window = "Untitled", .keys = "ctrl+s", .shows = "Save As"},
      {.window = "Save As", .keys = "ctrl+a"},
      {.window = "Save As", .keys = "Return", .text = project, .shows = "work.cnp", .written = project},
  }));
  EXPECT_THAT(textOf(project), testing::StartsWith("[zenlay]\nwidth=320\nheight=240\nrate=25\nscale=1\nlength=1\n"));
}

/// A picture over the whole scene of ten seconds and a frame, a film of a second above it.
void Session::dropFiles() {
  std::string picture = folder / "red.png", film = folder / "blue.mp4";
  auto make = [](std::vector<std::string> words) {
    words.insert(words.begin(), {"ffmpeg", "-v", "error", "-f", "lavfi", "-i"});
    ASSERT_EQ(runProgram(words).status, 0);
  };
  make({"color=red:s=200x100", "-frames:v", "1", picture});
  make({"color=blue:s=320x240:r=25", "-frames:v", "25", "-pix_fmt", "yuv420p", film});
  others.insert(others.begin(), start({BINARY_DIR "/bin/drag_source", "1620", picture, film}, "drags"));
  ASSERT_NO_FATAL_FAILURE(drop("red.png", {timelineX, onTimeline(1, 1).y}));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[0]\nstart=1\nend=251\nlayer=1\n"));
  ASSERT_NO_FATAL_FAILURE(drop("blue.mp4", onTimeline(101, 2)));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[1]\nstart=101\nend=125\nlayer=2\n"));
}

void Session::moveAndSplit() {
  drag(onTimeline(112, 2), onTimeline(152, 3));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[1]\nstart=141\nend=165\nlayer=3\n"));
  click({onTimeline(61, 1).x, rulerY});
  click(onTimeline(40, 1));
  ASSERT_NO_FATAL_FAILURE(take({.window = "work.cnp", .keys = "s"}));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[0]\nstart=1\nend=60\nlayer=1\n"));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[1]\nstart=61\nend=251\nlayer=1\n"));
}

void Session::setX() {
  click(trackX);
  ASSERT_NO_FATAL_FAILURE(take({.window = "work.cnp", .keys = "ctrl+a"}));
  ASSERT_NO_FATAL_FAILURE(take({.window = "work.cnp", .keys = "Return", .text = "80"}));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[1.1]\n_name=Standard drawing\nX=80.0\n"));
  EXPECT_NE(textOf(project).find("[0.1]\n_name=Standard drawing\nX=0.0\n"), std::string::npos);
}

void Session::blurAndUndo() {
  auto windows = [&] {
    std::string found = xdotool({"search", "--onlyvisible", "--class", "cinora"}).output;
    return std::count(found.begin(), found.end(), '\n');
  };
  ASSERT_NO_FATAL_FAILURE(take({.window = "work.cnp", .keys = "e"}));
  ASSERT_TRUE(waitFor([&] { return windows() == 2; }));
  xdotool({"key", "--delay", "20", "Down", "Down", "Down", "Return"});  // its third entry
  ASSERT_TRUE(waitFor([&] { return windows() == 1; }));
  ASSERT_NO_FATAL_FAILURE(expectSaved("[1.1]\n_name=Blur\n"));
  ASSERT_NO_FATAL_FAILURE(take({.window = "work.cnp", .keys = "ctrl+z"}));
  ASSERT_NO_FATAL_FAILURE(expectSaved("_name=Blur\n", false));
  EXPECT_NE(textOf(project).find("X=80.0\n"), std::string::npos) << "one step too many is undone";
}

/// What is saved under another name after the project was opened again is what was saved before.
void Session::closeAndReopen() {
  ASSERT_NO_FATAL_FAILURE(takeAll({
      {.window = "work.cnp", .keys = "ctrl+w", .shows = "^Cinora$"},
      {.window = "^Cinora$", .keys = "ctrl+o", .shows = "^Open$"},
      {.window = "^Open$", .keys = "ctrl+a"},
      {.window = "^Open$", .keys = "Return", .text = project, .shows = "work.cnp"},
      {.window = "work.cnp", .keys = "ctrl+shift+s", .shows = "Save As"},
      {.window = "Save As", .keys = "ctrl+a"},
      {.window = "Save As", .keys = "Return", .text = again, .shows = "again.cnp", .written = again},
  }));
  ASSERT_EQ(textOf(again), textOf(project));
}

/// Whether the pixel is the plain colour; the encoder's rounding, its coarser colours and the way there may change it.
bool isColor(const std::string& frame, Place at, int color) {
  for (int part = 0; part < 3; part++) {
    int value = static_cast<uint8_t>(frame[static_cast<size_t>((at.y * width + at.x) * 3 + part)]);
    if (std::abs(value - (color >> (16 - 8 * part) & 255)) > 24) return false;
  }
  return true;
}

TEST_F(Session, FromAnEmptyProjectToTheFilm) {
  ASSERT_NO_FATAL_FAILURE(createProject());
  ASSERT_NO_FATAL_FAILURE(dropFiles());
  ASSERT_NO_FATAL_FAILURE(moveAndSplit());
  ASSERT_NO_FATAL_FAILURE(setX());
  ASSERT_NO_FATAL_FAILURE(blurAndUndo());
  ASSERT_NO_FATAL_FAILURE(closeAndReopen());
  std::string film = folder / "again.mp4";
  ASSERT_NO_FATAL_FAILURE(takeAll({
      {.window = "again.cnp", .keys = "ctrl+e", .shows = "Export Film"},
      {.window = "Export Film", .keys = "Return", .written = film, .leaves = "^Exporting$"},
      {.window = "again.cnp", .keys = "ctrl+q"},
  }));
  ASSERT_NO_FATAL_FAILURE(expectQuit());
  open({again});  // the file as an argument
  ASSERT_NO_FATAL_FAILURE(take({.window = "again.cnp", .keys = "ctrl+q"}));
  ASSERT_NO_FATAL_FAILURE(expectQuit());

  constexpr int black = 0, red = 0xff0000, blue = 0x0000ff;
  const struct {
    size_t frame;  // from 0
    Place at;
    int color;
  } rows[] = {
      // the first part stands in the middle, 60 to 259 and 70 to 169
      {0, {64, 74}, red},
      {0, {256, 166}, red},
      {0, {56, 120}, black},
      {0, {264, 120}, black},
      {0, {160, 64}, black},
      {59, {64, 120}, red},
      // the second one 80 to the right, sharp
      {60, {64, 120}, black},
      {60, {136, 120}, black},
      {60, {144, 120}, red},
      {60, {319, 120}, red},
      // the film over all of it
      {139, {20, 20}, black},
      {140, {20, 20}, blue},
      {140, {200, 120}, blue},
      {164, {310, 230}, blue},
      {165, {20, 20}, black},
      {165, {200, 120}, red},
      {250, {144, 120}, red},
  };
  std::vector<std::string> frames = decodeFilm(film, "rgb24", width * height * 3);
  ASSERT_EQ(frames.size(), 251u);
  for (const auto& row : rows)
    EXPECT_TRUE(isColor(frames[row.frame], row.at, row.color))
        << "frame " << row.frame << " at " << row.at.x << ", " << row.at.y;
}

TEST_F(Session, AskedToEndItKeepsUnsavedWork) {
  const std::string object = "start=1\nend=100\noverlay=1\ncamera=0\nlayer=", drawn = "\n_name=Standard drawing\n";
  const std::string head = "[zenlay]\nwidth=64\nheight=48\nrate=25\nscale=1\nlength=100\n";
  folder.write("film.zlo", head + "[0]\n" + object + "1\n[0.0]\n_name=Graphic\nSize=11\n[0.1]" + drawn + "[1]\n" +
                               object + "2\n[1.0]\n_name=Graphic\nSize=3571\n[1.1]" + drawn);
  open({folder / "film.zlo"});
  ASSERT_TRUE(waitFor([&] { return !windowNamed("film.zlo").empty(); }));
  drag({timelineX + 20, onTimeline(1, 1).y}, {timelineX + 20, onTimeline(1, 3).y});
  auto title = [&] { return xdotool({"getwindowname", windowNamed("film.zlo")}).output; };
  ASSERT_TRUE(waitFor([&] { return title().starts_with("film.zlo*"); }));
  kill(editor, SIGTERM);
  int status = -1;
  ASSERT_TRUE(waitFor([&] { return waitpid(editor, &status, WNOHANG) == editor; }));
  editor = -1;
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(contentsOf(folder / "editor_errors"), "cinora: the unsaved work on film.zlo is kept as a backup\n");
  EXPECT_THAT(contentsOf(folder / "cinora/cinora.ini"), testing::HasSubstr("film.zlo"));
  const std::string backups = BINARY_DIR "/bin/backup/";
  std::string kept;
  for (const std::string& name : namesIn(backups))
    if (std::string text = textOf(backups + name); text.find("Size=3571\n") != text.npos) kept = text;
  EXPECT_THAT(kept, testing::StartsWith(head));
  EXPECT_THAT(kept, testing::HasSubstr("layer=3\n")) << "the state before";
}

}  // namespace
}  // namespace cinora::test
