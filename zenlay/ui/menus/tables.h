// The rows of the context menus. Submenus without rows are filled from the effect list, the aliases and the templates.
#pragma once

#include <span>

#include "zenlay/ui/menus/menus.h"

namespace zenlay {

inline constexpr char textNewObject[] = "New media object";
inline constexpr char textNewFilterObject[] = "Add Filter object";
inline constexpr char textNewFilterEffect[] = "New filter effect";
inline constexpr char textAddEffect[] = "Add a filter effect";
inline constexpr char textBasicEffect[] = "Basic effect";
inline constexpr char textCameraControl[] = "Camera control";

std::span<const platform::MenuRow> menuRows(ContextMenu);

}  // namespace zenlay
