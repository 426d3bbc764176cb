// The user's preferences, kept in the host's per-filter settings store.
#pragma once

#include <cstdint>

#include "zenlay/model/records.h"

namespace zenlay {

/// Field names are the keys of the store.
struct Preferences {
  int32_t small_layer, w, h, config_x, config_y;
  GridSettings grid;  // the live settings; each scene keeps a copy
  int32_t object_range, camera_gui, config_move, object_snap, auto_scroll, sync_play_cursor;
  int32_t auto_save, auto_save_num, auto_save_time, fast_preview, group_open, saturation;
  int32_t divide_mode, divide_group, add_pt_mode, pair_move, path_modify;
  int32_t edit_time_type, config_time_type;
  int32_t new_w, new_h, new_hz, new_fmt;
  char new_fps[256];
  int32_t zoom;
};

extern Preferences preferences;

inline constexpr int layerSizes = 3, timeUnits = 2;
inline constexpr int maxBackups = 1000, maxBackupMinutes = 10000;

void resetPreferences();  // the defaults
void readPreferences();   // from the store; every value is then within its range
void writePreferences();

}  // namespace zenlay
