#include "zenlay/host/preferences.h"

#include <algorithm>
#include <cstring>

#include "zenlay/host/environment.h"

namespace zenlay {

Preferences preferences;

namespace {

/// What a stored number becomes that is none of those allowed.
struct Range {
  int32_t min = INT32_MIN, max = INT32_MAX;  // the nearest of these
  int32_t choices = 0;                       // the rest of a division by so many
  bool positive = false;                     // the default
};
constexpr Range oneOf(int32_t choices) { return {.choices = choices}; }
constexpr Range positive{.positive = true};

int32_t allowed(int32_t value, const Range& range, int32_t fallback) {
  if (range.positive && value < 1) return fallback;
  if (range.choices > 0) return (value % range.choices + range.choices) % range.choices;
  return std::clamp(value, range.min, range.max);
}

struct PreferenceRow {
  const char* key;
  int32_t Preferences::*value;
  int32_t fallback;
  Range range = {};
};

struct GridRow {
  const char* key;
  int32_t GridSettings::*value;
  int32_t fallback;
};

constexpr PreferenceRow rows[] = {
    {"small_layer", &Preferences::small_layer, 0, oneOf(layerSizes)},
    {"w", &Preferences::w, 0},
    {"h", &Preferences::h, 0},
    {"config_x", &Preferences::config_x, 0},
    {"config_y", &Preferences::config_y, 0},
    {"object_range", &Preferences::object_range, 1},
    {"camera_gui", &Preferences::camera_gui, 1},
    {"config_move", &Preferences::config_move, 1},
    {"object_snap", &Preferences::object_snap, 1},
    {"auto_scroll", &Preferences::auto_scroll, 1},
    {"sync_play_cursor", &Preferences::sync_play_cursor, 0},
    {"auto_save", &Preferences::auto_save, 1},
    {"auto_save_num", &Preferences::auto_save_num, 10, {.min = 0, .max = maxBackups}},
    {"auto_save_time", &Preferences::auto_save_time, 5, {.min = 1, .max = maxBackupMinutes}},
    {"fast_preview", &Preferences::fast_preview, 0},
    {"group_open", &Preferences::group_open, 1},
    {"saturation", &Preferences::saturation, 1},
    {"divide_mode", &Preferences::divide_mode, 1},
    {"divide_group", &Preferences::divide_group, 1},
    {"add_pt_mode", &Preferences::add_pt_mode, 0},
    {"pair_move", &Preferences::pair_move, 1},
    {"path_modify", &Preferences::path_modify, 1},
    {"edit_time_type", &Preferences::edit_time_type, 1, oneOf(timeUnits)},
    {"config_time_type", &Preferences::config_time_type, 0, oneOf(timeUnits)},
    {"new_w", &Preferences::new_w, 640, positive},
    {"new_h", &Preferences::new_h, 480, positive},
    {"new_hz", &Preferences::new_hz, 44100, positive},
    {"new_fmt", &Preferences::new_fmt, 0},
    {"zoom", &Preferences::zoom, 14},
};

constexpr GridRow gridRows[] = {
    {"grid", &GridSettings::grid, 0},
    {"grid2d", &GridSettings::grid2d, 0},
    {"grid2d_w", &GridSettings::grid2d_w, 50},
    {"grid2d_h", &GridSettings::grid2d_h, 50},
    {"grid3d", &GridSettings::grid3d, 1},
    {"grid3d_size", &GridSettings::grid3d_size, 200},
    {"grid3d_num", &GridSettings::grid3d_num, 10},
    {"grid_base", &GridSettings::grid_base, 1},
    {"grid_time", &GridSettings::grid_time, 4},
    {"grid_tempo", &GridSettings::grid_tempo, 1000000},
    {"out_of_area", &GridSettings::out_of_area, 0},
    {"out_of_scale", &GridSettings::out_of_scale, 18},
};

constexpr char newFps[] = "new_fps";
constexpr char newFpsDefault[] = "30";

}  // namespace

void resetPreferences() {
  preferences = {};
  for (const PreferenceRow& row : rows) preferences.*row.value = row.fallback;
  for (const GridRow& row : gridRows) preferences.grid.*row.value = row.fallback;
  memcpy(preferences.new_fps, newFpsDefault, sizeof newFpsDefault);
}

void readPreferences() {
  const HostFunctionTable* host = environment.hostFunctions;
  HostFilterRecord* filter = environment.mainFilter;
  for (const PreferenceRow& row : rows)
    preferences.*row.value = allowed(host->readIntSetting(filter, row.key, row.fallback), row.range, row.fallback);
  for (const GridRow& row : gridRows) preferences.grid.*row.value = host->readIntSetting(filter, row.key, row.fallback);
  host->readStringSetting(filter, newFps, preferences.new_fps, newFpsDefault);
  if (!*preferences.new_fps) memcpy(preferences.new_fps, newFpsDefault, sizeof newFpsDefault);
}

void writePreferences() {
  const HostFunctionTable* host = environment.hostFunctions;
  HostFilterRecord* filter = environment.mainFilter;
  for (const PreferenceRow& row : rows) host->writeIntSetting(filter, row.key, preferences.*row.value);
  for (const GridRow& row : gridRows) host->writeIntSetting(filter, row.key, preferences.grid.*row.value);
  host->writeStringSetting(filter, newFps, preferences.new_fps);
}

}  // namespace zenlay
