// The editor's JSON as text for people.
#pragma once

#include <string>
#include <vector>

namespace cinora {

/// Throw Failure when the JSON is not what the editor's queries give.
/// Values in the units the editor shows, which the scales of the effects' tracks tell.
std::string describeProject(const std::string& projectJson, const std::string& effectsJson);
/// Every text kept in the extra data of the film's objects; the names of its media files are among them.
std::vector<std::string> textsOfProject(const std::string& projectJson);
/// One line an effect, or with `details` everything about each.
std::string describeEffects(const std::string& json, bool details);
size_t countEntries(const std::string& json);  // of an array

}  // namespace cinora
