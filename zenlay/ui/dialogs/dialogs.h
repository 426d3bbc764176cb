// The plug-in's modal dialogs. Each returns false (or the stated value) when cancelled and leaves its arguments alone.
#pragma once

#include <span>
#include <string>

#include "platform/window.h"
#include "zenlay/effects/effect_services.h"

namespace zenlay {

struct NumberItem;

bool askLayerName(std::string& name);
/// Frames, or 0 when cancelled or nothing sensible was typed. `frames` is shown at first.
int askLength(const char* title, int frames);
enum TextBoxSize { textBoxWide, textBoxSmall };
/// One line of text, at most 259 bytes. An empty title is "Parameter Settings".
bool askText(const char* title, std::string& text, TextBoxSize);
/// "Parameter Settings" with a box for each number, at most 16; what is typed is limited to the item's range.
bool askNumbers(std::span<NumberItem>);
/// The scene chosen, or -1. `options` (SceneOption) may be null: no check boxes then.
int chooseScene(platform::Point screen, int current, bool withRoot, int* options);
/// Name, size and alpha flag of the current scene.
bool editSceneSettings();
/// 0xRRGGBB, or noColor when "Not Specified" was pressed.
inline constexpr int noColor = 0x1000000;
bool chooseColor(int& color);
/// Name and folder of a new alias; the alias file does not exist or the user agreed to overwrite it.
bool askAliasName(const char* title, std::string& name, std::string& folder);

bool editPreferences();
bool editGridSettings();
/// The new-project values into the preferences. `importing`: "Match imported file" can be chosen.
bool editNewProject(bool importing);

}  // namespace zenlay
