#include "zenlay/files/effect_text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "zenlay/effects/evaluation.h"
#include "zenlay/effects/registry.h"
#include "zenlay/files/section_reader.h"
#include "zenlay/model/objects.h"
#include "zenlay/model/sections.h"
#include "zenlay/model/slots.h"

namespace zenlay {
namespace {

constexpr char lineEnd[] = "\r\n";
constexpr int scriptShift = 16;

const EffectDefinition* definitionOf(const ObjectRecord& o, int slot) { return effectList[o.slots[slot].effect]; }

std::string modeText(int32_t mode) {
  const char* script = (mode & modeNumber) == modeScript
                           ? movementScriptName(static_cast<int>(static_cast<uint32_t>(mode) >> scriptShift))
                           : nullptr;
  if (!script) return std::to_string(mode);
  return std::to_string(mode & 0xFFFF) + "@" + script;
}

/// `text` ends at the comma in front of the parameter, or at its own end.
int32_t readMode(const std::string& text) {
  size_t at = text.find('@');
  int32_t number = readInteger(text.c_str());
  if (at == std::string::npos) return number;
  int script = movementScriptNumber(text.c_str() + at + 1);
  return script < 0 ? modeNone : static_cast<int32_t>((number & 0xFFFF) | static_cast<uint32_t>(script) << scriptShift);
}

/// Extra-data strings may hold anything; a line may not.
void appendLineText(std::string& out, const uint8_t* text, size_t size) {
  for (size_t i = 0; i < size && text[i]; i++)
    if (text[i] >= ' ') out.push_back(static_cast<char>(text[i]));
}

void readField(const ExdataField& field, uint8_t* bytes, const char* value) {
  if (field.type == exdataInteger) {
    int32_t number = readInteger(value);
    memcpy(bytes, &number, std::min(size_t{field.size}, sizeof number));
  } else if (field.type == exdataString && field.size > 0) {
    size_t length = std::min(strlen(value), size_t{field.size} - 1);
    memset(bytes, 0, field.size);
    memcpy(bytes, value, length);
  } else if (field.type == exdataBytes) {
    readHex(value, bytes, field.size);
  }
}

/// Calls use(field, bytes) for every field that fits; false from `use` ends the walk.
template <class Use>
void overFields(const EffectDefinition* d, uint8_t* data, Use&& use) {
  int offset = 0;
  for (const ExdataField* field = d->exdata_fields; offset < d->exdata_size; field++) {
    if (field->size == 0 || offset + field->size > d->exdata_size || !use(*field, data + offset)) return;
    offset += field->size;
  }
}

void readTrack(ObjectRecord& o, int i, int32_t scale, const char* value) {
  o.startValues[i] = readScaled(value, scale);
  const char* end = strchr(value, ',');
  if (!end) return;
  o.endValues[i] = readScaled(end + 1, scale);
  const char* mode = strchr(end + 1, ',');
  if (!mode) return;
  const char* parameter = strchr(mode + 1, ',');
  o.modes[i] = readMode(parameter ? std::string(mode + 1, parameter) : std::string(mode + 1));
  o.params[i] = parameter ? readInteger(parameter + 1) : 0;
}

bool hasFields(const EffectDefinition* d) { return isBuiltIn(d) && d->exdata_fields; }

}  // namespace

std::string scaledText(int32_t value, int32_t scale) {
  if (scale < 2) return std::to_string(value);
  int digits = scale == 10 ? 1 : scale == 100 ? 2 : 3;
  uint32_t magnitude = value < 0 ? 0u - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
  uint32_t unit = static_cast<uint32_t>(scale);
  char text[32];
  snprintf(text, sizeof text, "%s%u.%0*u", value < 0 ? "-" : "", magnitude / unit, digits, magnitude % unit);
  return text;
}

void writeValues(std::string& out, const ObjectRecord& o, int slot) {
  const EffectDefinition* d = definitionOf(o, slot);
  for (int t = 0; t < d->track_count; t++) {
    int i = trackOf(o, slot, t);
    int32_t scale = trackScale(d, t);
    out.append(d->track_names[t]).append("=").append(scaledText(o.startValues[i], scale));
    if (o.modes[i]) {
      out.append(",").append(scaledText(o.endValues[i], scale)).append(",").append(modeText(o.modes[i]));
      if (o.params[i]) out.append(",").append(std::to_string(o.params[i]));
    }
    out.append(lineEnd);
  }
  for (int c = 0; c < d->check_count; c++)
    if (d->check_defaults[c] >= 0)
      out.append(d->check_names[c]).append("=").append(std::to_string(o.checks[checkOf(o, slot, c)])).append(lineEnd);
}

std::string hexText(const uint8_t* bytes, size_t size) {
  constexpr char digits[] = "0123456789abcdef";
  std::string hex;
  for (size_t i = 0; i < size; i++) {
    hex.push_back(digits[bytes[i] >> 4]);
    hex.push_back(digits[bytes[i] & 15]);
  }
  return hex;
}

int32_t integerField(const uint8_t* bytes, size_t size) {
  uint32_t value = 0;
  memcpy(&value, bytes, std::min(size, sizeof value));
  return static_cast<int32_t>(value);
}

void writeExtraData(std::string& out, int object, int slot) {
  const EffectDefinition* d = definitionOf(objects[object], slot);
  uint8_t* data = extraDataOf(object, slot);
  if (!data) return;
  if (!hasFields(d)) {
    out.append("_exdata=").append(hexText(data, static_cast<size_t>(d->exdata_size))).append(lineEnd);
    return;
  }
  overFields(d, data, [&](const ExdataField& field, const uint8_t* bytes) {
    if (!field.name || field.type < exdataInteger || field.type > exdataBytes) return true;
    out.append(field.name).append("=");
    if (field.type == exdataInteger) out.append(std::to_string(integerField(bytes, field.size)));
    if (field.type == exdataString) appendLineText(out, bytes, field.size);
    if (field.type == exdataBytes) out.append(hexText(bytes, field.size));
    out.append(lineEnd);
    return true;
  });
}

void readLine(int object, int slot, const char* key, const char* value) {
  ObjectRecord& o = objects[object];
  const EffectDefinition* d = definitionOf(o, slot);
  for (int t = 0; t < d->track_count; t++)
    if (strcmp(d->track_names[t], key) == 0) return readTrack(o, trackOf(o, slot, t), trackScale(d, t), value);
  for (int c = 0; c < d->check_count; c++)
    if (strcmp(d->check_names[c], key) == 0) {
      o.checks[checkOf(o, slot, c)] = readInteger(value);
      return;
    }
  uint8_t* data = headOf(object) == object ? extraDataOf(object, slot) : nullptr;
  if (!data) return;
  if (!hasFields(d)) {
    if (strcmp(key, "_exdata") == 0) readHex(value, data, static_cast<size_t>(d->exdata_size));
    return;
  }
  overFields(d, data, [&](const ExdataField& field, uint8_t* bytes) {
    if (!field.name || strcmp(field.name, key) != 0) return true;
    readField(field, bytes, value);
    return false;
  });
}

void settleStaticTracks(int object, int slot) {
  ObjectRecord& o = objects[object];
  for (int t = 0; t < definitionOf(o, slot)->track_count; t++) {
    int i = trackOf(o, slot, t);
    if (courseOf(o.modes[i]) == courseStill) o.endValues[i] = o.startValues[i];
  }
}

}  // namespace zenlay
