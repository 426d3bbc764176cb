// What the last object file read or written left out, for who drives the plug-in without a screen. The editor itself
// passes over such things in silence.
#pragma once

#include <string>

namespace zenlay {

/// "1 scene", "2 scenes".
std::string counted(int count, const char* noun);

/// Things of one kind that were left out: all counted, the first few told.
struct LeftOut {
  int count = 0;
  std::string told;
};

void leaveOut(LeftOut&, const std::string& what);
/// "2 objects left out: [3] ..., [7] ..."; empty when there are none.
std::string leftOutText(const LeftOut&, const char* noun);

/// One line without an end; empty when nothing was left out.
extern std::string leftOutNote;

}  // namespace zenlay
