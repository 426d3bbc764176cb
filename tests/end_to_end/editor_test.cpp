#include "tests/end_to_end/editor_on_display.h"

namespace cinora::test {
namespace {

TEST_F(EditorOnDisplay, AFilmIsOpenedSavedExportedAndLeft) {
  folder.write("film.zlo",
               "[zenlay]\nwidth=64\nheight=48\nrate=25\nscale=1\nlength=10\naudio_rate=44100\naudio_ch=2\n"
               "[0]\nstart=1\nend=10\nlayer=1\noverlay=1\ncamera=0\n[0.0]\n_name=Graphic\nSize=20\ntype=2\n"
               "color=ffffff\n[0.1]\n_name=Standard drawing\n");
  open({folder / "film.zlo"});
  std::string project = folder / "work.cnp", film = folder / "work.mp4";
  ASSERT_NO_FATAL_FAILURE(takeAll({
      {.window = "film.zlo", .keys = "Right"},
      {.window = "film.zlo", .keys = "ctrl+shift+s", .shows = "Save As"},
      {.window = "Save As", .keys = "ctrl+a"},
      {.window = "Save As", .keys = "Return", .text = project, .shows = "work.cnp", .written = project},
      {.window = "work.cnp", .keys = "ctrl+e", .shows = "Export Film"},
      {.window = "Export Film", .keys = "Return", .written = film},
      {.window = "work.cnp", .keys = "ctrl+q"},
  }));
  ASSERT_NO_FATAL_FAILURE(expectQuit());
  std::vector<std::string> frames = decodeFilm(film, "gray", 64 * 48);
  ASSERT_EQ(frames.size(), 10u);
  EXPECT_GT(static_cast<uint8_t>(frames[4][24 * 64 + 32]), 225);
  EXPECT_LT(static_cast<uint8_t>(frames[4][4 * 64 + 4]), 20);
}

}  // namespace
}  // namespace cinora::test
