// The editor's JSON as text for people.
#pragma once

#include <string>

namespace cinora {

/// Throw Failure when the JSON is not what the editor's queries give.
std::string describeProject(const std::string& json);
/// One line an effect, or with `details` everything about each.
std::string describeEffects(const std::string& json, bool details);
size_t countEntries(const std::string& json);  // of an array

}  // namespace cinora
