// The whole film as a bar: where it stands, what is selected, a place to go to by the mouse.
#pragma once

#include <QWidget>
#include <functional>

namespace cinora::desktop {

class SeekBar : public QWidget {
 public:
  explicit SeekBar(QWidget* parent = nullptr);

  struct State {
    int frames = 0;  // 0: nothing to seek in
    int frame = 0, first = 0, last = -1;
    bool operator==(const State&) const = default;
  };
  void setState(const State&);
  const State& state() const { return state_; }
  /// Middle of the frame's place on the bar.
  double xOf(int frame) const;
  int frameAt(double x) const;

  std::function<void(int frame)> sought;
  std::function<QString(int frame)> describe;  // for the tip under the mouse

  QSize sizeHint() const override { return {400, 18}; }
  QSize minimumSizeHint() const override { return {100, 18}; }

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;

 private:
  State state_;
};

}  // namespace cinora::desktop
