// The choice of the theme, kept in the settings.
#pragma once

#include <QMenu>

#include "cinora/host/settings.h"

namespace cinora::desktop {

/// Takes the stored theme. The settings must outlive the menu, which `parent` owns.
QMenu* createThemeMenu(Settings&, QWidget* parent);

}  // namespace cinora::desktop
