#include "zenlay/host/preferences.h"

#include "zenlay/host/environment.h"

namespace zenlay {

Preferences preferences;

namespace {

struct GridRow {
  const char* key;
  int32_t GridSettings::*value;
  int32_t fallback;
};

constexpr PreferenceRow rows[] = {
    {"small_layer", &Preferences::small_layer, 0},
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
    {"auto_save_num", &Preferences::auto_save_num, 10},
    {"auto_save_time", &Preferences::auto_save_time, 5},
    {"fast_preview", &Preferences::fast_preview, 0},
    {"group_open", &Preferences::group_open, 1},
    {"saturation", &Preferences::saturation, 1},
    {"divide_mode", &Preferences::divide_mode, 1},
    {"divide_group", &Preferences::divide_group, 1},
    {"add_pt_mode", &Preferences::add_pt_mode, 0},
    {"pair_move", &Preferences::pair_move, 1},
    {"path_modify", &Preferences::path_modify, 1},
    {"edit_time_type", &Preferences::edit_time_type, 1},
    {"config_time_type", &Preferences::config_time_type, 0},
    {"new_w", &Preferences::new_w, 640},
    {"new_h", &Preferences::new_h, 480},
    {"new_hz", &Preferences::new_hz, 44100},
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
  for (int i = 0; newFpsDefault[i]; i++) preferences.new_fps[i] = newFpsDefault[i];
}

void readPreferences() {
  const HostFunctionTable* host = environment.hostFunctions;
  HostFilterRecord* filter = environment.mainFilter;
  for (const PreferenceRow& row : rows) preferences.*row.value = host->readIntSetting(filter, row.key, row.fallback);
  for (const GridRow& row : gridRows) preferences.grid.*row.value = host->readIntSetting(filter, row.key, row.fallback);
  host->readStringSetting(filter, newFps, preferences.new_fps, newFpsDefault);
}

void writePreferences() {
  const HostFunctionTable* host = environment.hostFunctions;
  HostFilterRecord* filter = environment.mainFilter;
  for (const PreferenceRow& row : rows) host->writeIntSetting(filter, row.key, preferences.*row.value);
  for (const GridRow& row : gridRows) host->writeIntSetting(filter, row.key, preferences.grid.*row.value);
  host->writeStringSetting(filter, newFps, preferences.new_fps);
}

}  // namespace zenlay
