// The editor's JSON as text for people.
#pragma once

#include <string>
#include <vector>

namespace cinora {

/// Throw Failure when the JSON is not what the editor's queries give.
/// Values in the units the editor shows, which the scales of the effects' tracks tell.
std::string describeProject(const std::string& projectJson, const std::string& effectsJson);
/// The entries of an array of texts.
std::vector<std::string> textsOf(const std::string& json);
/// One line an effect, or with `details` everything about each.
std::string describeEffects(const std::string& json, bool details);
size_t countEntries(const std::string& json);  // of an array

}  // namespace cinora
