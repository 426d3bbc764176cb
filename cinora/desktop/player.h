// Playback at the film's rate: what the clock asks for is shown, what came too late is passed over.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

#include "cinora/desktop/playback_filter.h"
#include "cinora/desktop/player_sound.h"
#include "cinora/host/host.h"

namespace cinora::desktop {

class Player {
 public:
  /// `show` makes and shows a frame; false ends the playback. `ended` is called after each end, with the frame shown
  /// last and whether it ended by itself.
  Player(Host&, const PlaybackFilter&, std::function<bool(int frame)> show,
         std::function<void(int frame, bool byItself)> ended, OpenSoundDevice = openSystemSound);

  /// Frames first..last, from `from` on, until the film's cursor is moved: it then stays where it was put.
  void play(int first, int last, int from);
  void stop() { end(false); }
  bool playing() const { return playing_; }
  int frame() const { return frame_; }
  void setLoop(bool loop) { loop_ = loop; }
  /// Of this playback, so far.
  int framesShown() const { return shown_; }

 private:
  void tick();
  int frameAt(int64_t now) const;
  int64_t passLength() const;
  bool showFrame(int frame);
  void end(bool byItself);
  int64_t elapsed();

  Host& host_;
  const PlaybackFilter& filter_;
  std::function<bool(int)> show_;
  std::function<void(int, bool)> ended_;
  PlayerSound sound_;
  QTimer timer_;
  QElapsedTimer clock_;
  int64_t clockStart_ = 0;  // ns of playback at which clock_ began
  bool onSound_ = false;    // the sound is the clock
  bool playing_ = false, loop_ = false;
  int first_ = 0, last_ = 0;  // of the range
  int start_ = 0;             // frame with which this pass began
  int64_t passStart_ = 0;     // ns of playback at which it did
  int frame_ = 0, shown_ = 0;
  int cursor_ = 0;  // of the film, which playing leaves alone
};

}  // namespace cinora::desktop
