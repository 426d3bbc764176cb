#include "zenlay/render/time_control.h"

#include <algorithm>

#include "zenlay/effects/definitions.h"
#include "zenlay/effects/evaluation.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/slots.h"

namespace zenlay {

namespace {

enum { position, repeat, decimation, timeTracks };
enum { specifiedFrame };

void evaluate(int object, int frame, int subFrame, int32_t values[timeTracks]) {
  std::fill_n(values, timeTracks, 0);
  evaluateTracks(values, frame, subFrame, object, 0, trackOf(objects[object], 0, 0), timeTracks, &timeControl);
}

}  // namespace

int32_t controlledTime(const ObjectRecord* control, int frame, int subFrame, bool decimated) {
  int object = indexOf(control);
  FrameRange chain = chainRange(object);
  int64_t length = chain.last - chain.first;
  int32_t values[timeTracks];
  evaluate(object, frame, subFrame, values);
  if (!decimated) values[decimation] = 1;
  int64_t repeats = values[repeat], hold = int64_t{values[decimation]} * 100;
  if (values[repeat] > 1 || values[decimation] > 1) {
    int64_t time = subFrame + int64_t{frame - chain.first} * 100;
    if (values[decimation] > 1) time = time / hold * hold;
    if (repeats > 1) {
      time *= repeats;
      // The last of the repetitions shows its end, as t = L * 100 itself is kept.
      if (length > 0 && time > length * 100) time -= (time - 1) / (length * 100) * (length * 100);
      if (length == 0) time = 0;
    }
    int at = chain.first + static_cast<int>(time / 100);
    evaluate(sectionAt(object, at), at, static_cast<int>(time % 100), values);
  }
  bool frames = control->checks[checkOf(*control, 0, specifiedFrame)];
  int64_t shown = frames ? values[position] : int64_t{values[position]} * length / 100;
  shown = std::clamp(shown, int64_t{0}, length * 100);
  return static_cast<int32_t>(chain.first * 100 + shown);
}

}  // namespace zenlay
