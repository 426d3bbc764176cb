// The lines of one effect in object, alias and default-settings files: its tracks, checks and extra data as text.
#pragma once

#include <string>

#include "zenlay/model/records.h"

namespace zenlay {

/// Appends "name=value" lines (CR LF) for every track and every check whose default is not negative.
void writeValues(std::string& out, const ObjectRecord&, int slot);
/// Appends the extra data of the slot: a line per named field, or _exdata.
void writeExtraData(std::string& out, int object, int slot);
/// Applies one line to the slot: the first track, check or extra-data field of that name; other keys are ignored.
void readLine(int object, int slot, const char* key, const char* value);
/// A static track's end follows its start.
void settleStaticTracks(int object, int slot);
/// Two lower-case digits a byte.
std::string hexText(const uint8_t* bytes, size_t size);
/// The value of an integer field: little-endian, at most 4 bytes.
int32_t integerField(const uint8_t* bytes, size_t size);
/// A stored track value as text.
std::string scaledText(int32_t value, int32_t scale);

}  // namespace zenlay
