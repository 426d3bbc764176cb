// The look of controls: flat faces with thin borders on top of Qt's own Fusion.
#pragma once

class QStyle;

namespace platform::qt {

QStyle* createStyle();

}  // namespace platform::qt
