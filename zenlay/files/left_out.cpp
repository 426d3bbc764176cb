#include "zenlay/files/left_out.h"

namespace zenlay {

std::string leftOutNote;

namespace {
constexpr int maxTold = 5;
}

std::string counted(int count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void leaveOut(LeftOut& things, const std::string& what) {
  if (++things.count > maxTold) return;
  if (!things.told.empty()) things.told += ", ";
  things.told += what;
}

std::string leftOutText(const LeftOut& things, const char* noun) {
  if (things.count == 0) return {};
  std::string text = counted(things.count, noun) + " left out: " + things.told;
  if (things.count > maxTold) text += " and " + std::to_string(things.count - maxTold) + " more";
  return text;
}

}  // namespace zenlay
