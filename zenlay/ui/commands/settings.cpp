// Commands that the settings window carries out itself.
#include "zenlay/ui/commands/table.h"
#include "zenlay/ui/settings/window.h"

namespace zenlay::commands {
namespace {

constexpr Row rows[] = {
    {commandApplySettings, [](const Call& call) { return applySettings(call.parameter); }, needsCurrent},
    {commandReloadSettings,
     [](const Call&) {
       relayoutSettings();
       return 0;
     },
     needsCurrent | anyTime},
    {commandPushButton, [](const Call& call) { return pushButton(numberOf(call)); }, needsCurrent},
    {commandSelectSection, [](const Call& call) { return selectSection(numberOf(call)); }, needsCurrent},
    {commandJumpToStart, [](const Call& call) { return jumpToStart(numberOf(call)); }, needsCurrent},
    {commandJumpToEnd, [](const Call& call) { return jumpToEnd(numberOf(call)); }, needsCurrent},
    {commandDropDownChanged, [](const Call& call) { return dropDownChanged(numberOf(call)); }, needsCurrent},
    {commandSetFile,
     [](const Call& call) {
       const char* path = reinterpret_cast<const char*>(call.parameter);
       return path ? setEffectFile(call.slot, path) : 0;
     },
     needsCurrent, showsTimeline},
    {commandCheckChanged, [](const Call& call) { return checkChanged(numberOf(call)); }, needsCurrent},
    {commandColorPicked, [](const Call& call) { return colorPicked(call.parameter); }, needsNothing},
    {commandRestoreDefaults, [](const Call& call) { return restoreDefaults(numberOf(call)); }, needsCurrent},
    {commandTrackChanged, [](const Call&) { return trackChanged(); }, needsCurrent},
    {commandEffectMenu,
     [](const Call&) {
       openAddEffectMenu();
       return 0;
     },
     needsCurrent | leadsOn},
    {commandRefreshHeader,
     [](const Call&) {
       refreshSettingsHeader();
       return 0;
     },
     needsCurrent | anyTime},
};

}  // namespace

const std::span<const Row> settingsCommands = rows;

}  // namespace zenlay::commands
