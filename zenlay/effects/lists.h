// Drop-down lists that several effects show: NUL-separated items ended by an empty one.
#pragma once

namespace zenlay {

/// The built-in figures in the order of `Figure`; the pictures of the figure folder come before the last item.
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
