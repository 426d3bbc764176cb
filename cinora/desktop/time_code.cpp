#include "cinora/desktop/time_code.h"

#include <QRegularExpression>

namespace cinora::desktop {

QString timeCode(int frame, const ClipFormat& format) {
  int64_t hundredths = format.rate > 0 ? int64_t{100} * frame * format.scale / format.rate : 0;
  return QString::asprintf("%02d:%02d:%02d.%02d", static_cast<int>(hundredths / 360000),
                           static_cast<int>(hundredths % 360000 / 6000), static_cast<int>(hundredths % 6000 / 100),
                           static_cast<int>(hundredths % 100));
}

std::optional<int> frameOfTimeCode(const QString& text, const ClipFormat& format) {
  static const QRegularExpression pattern("^(?:(?:(\\d{1,4}):)?(\\d{1,5}):)?(\\d{1,7})(?:[.,](\\d{1,2}))?$");
  QRegularExpressionMatch match = pattern.match(text.trimmed());
  if (!match.hasMatch() || format.rate < 1 || format.scale < 1) return {};
  int64_t seconds =
      match.captured(1).toLongLong() * 3600 + match.captured(2).toLongLong() * 60 + match.captured(3).toLongLong();
  int64_t hundredths = seconds * 100 + match.captured(4).leftJustified(2, '0').toLongLong();
  int64_t unit = int64_t{100} * format.scale;
  return static_cast<int>(std::min<int64_t>((hundredths * format.rate + unit - 1) / unit, maxFrameCount));
}

}  // namespace cinora::desktop
