// The built-in figures and the drop-down list that shows them.
#pragma once

namespace zenlay {

/// In the order of figureList.
enum Figure : int {
  figureBackground,
  figureCircle,
  figureSquare,
  figureTriangle,
  figurePentagon,
  figureHexagon,
  figureStar,
  builtInFigures
};

/// NUL-separated items ended by an empty one; the pictures of the figure folder come before the last item.
inline constexpr char figureList[] =
    "Background\0"
    "Circle\0"
    "Square\0"
    "Triangle\0"
    "Pentagon\0"
    "Hexagon\0"
    "Star\0"
    "(Select from file)\0";

}  // namespace zenlay
