// The colours of the colour dialog: hue, saturation and value, and the file that keeps the presets.
#pragma once

namespace zenlay {

/// Hue 0..360 degrees, saturation and value 0..1.
struct HueColor {
  double hue, saturation, value;
};
/// The hexcone model (Smith, "Color Gamut Transform Pairs", 1978). What a colour leaves open, the hue of a grey and hue
/// and saturation of black, comes from `before`.
HueColor hueOf(int rgb, const HueColor& before);
int rgbOf(const HueColor&);

inline constexpr int presetCount = 32;
int presetColor(int preset);
/// Changes the preset and writes it to the file beside the module. False when it cannot be written: the preset is
/// changed until the program ends.
bool savePreset(int preset, int rgb);

}  // namespace zenlay
