#include "platform/font.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_SYNTHESIS_H

#include "platform/text.h"

namespace platform {
namespace {

constexpr int maxSize = 4096;
constexpr int boldWeight = 600;  // from here on a face counts as bold

struct FreePattern {
  void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
struct FreeFontSet {
  void operator()(FcFontSet* s) const { FcFontSetDestroy(s); }
};
struct FreeFace {
  void operator()(FT_Face f) const { FT_Done_Face(f); }
};
using Pattern = std::unique_ptr<FcPattern, FreePattern>;

struct Face {
  std::unique_ptr<FT_FaceRec, FreeFace> face;
  bool thicken = false, slant = false;
};

/// FreeType's library and fontconfig's default configuration, set up by the first font. The lock covers both: neither
/// promises to work from several threads.
struct FontLibrary {
  std::mutex lock;
  FT_Library library = nullptr;
  FontLibrary() {
    if (FT_Init_FreeType(&library) != 0) library = nullptr;
    FcInit();
  }
};

FontLibrary& fontLibrary() {
  static FontLibrary instance;
  return instance;
}

int integerOf(const FcPattern* pattern, const char* name, int fallback) {
  int value = fallback;
  return FcPatternGetInteger(pattern, name, 0, &value) == FcResultMatch ? value : fallback;
}

bool setSize(FT_Face face, int size) {
  if (FT_IS_SCALABLE(face)) return FT_Set_Pixel_Sizes(face, 0, size) == 0;
  int best = -1;
  auto distance = [&](int i) { return std::abs(static_cast<int>(face->available_sizes[i].y_ppem >> 6) - size); };
  for (int i = 0; i < face->num_fixed_sizes; i++)
    if (best < 0 || distance(i) < distance(best)) best = i;
  return best >= 0 && FT_Select_Size(face, best) == 0;
}

/// Empty when the file is unreadable.
Face openFace(const FcPattern* match, int size, int weight, bool italic) {
  Face opened;
  FcChar8* file = nullptr;
  FT_Library library = fontLibrary().library;
  if (!library || FcPatternGetString(match, FC_FILE, 0, &file) != FcResultMatch) return opened;
  FT_Face face = nullptr;
  if (FT_New_Face(library, reinterpret_cast<const char*>(file), integerOf(match, FC_INDEX, 0), &face) != 0)
    return opened;
  opened.face.reset(face);
  if (FT_Select_Charmap(face, FT_ENCODING_UNICODE) != 0 && face->num_charmaps > 0)
    FT_Set_Charmap(face, face->charmaps[0]);
  if (!setSize(face, size)) {
    opened.face.reset();
    return opened;
  }
  int faceWeight = FcWeightToOpenType(integerOf(match, FC_WEIGHT, FC_WEIGHT_REGULAR));
  opened.thicken = weight >= boldWeight && faceWeight < boldWeight;
  opened.slant = italic && integerOf(match, FC_SLANT, FC_SLANT_ROMAN) == FC_SLANT_ROMAN;
  return opened;
}

}  // namespace

struct Font {
  int size, weight;
  bool italic;
  Pattern request;
  Face main;
  std::unique_ptr<FcFontSet, FreeFontSet> fallbacks;  // by nearness, filled when first needed
  std::map<int, Face> opened;                         // of `fallbacks`
};

namespace {

/// The first face by nearness that has the character; null when none has.
Face* faceFor(Font& font, char32_t character) {
  if (FT_Get_Char_Index(font.main.face.get(), character) != 0) return &font.main;
  if (!font.fallbacks) {
    FcResult result;
    font.fallbacks.reset(FcFontSort(nullptr, font.request.get(), FcTrue, nullptr, &result));
    if (!font.fallbacks) return nullptr;
  }
  for (int i = 0; i < font.fallbacks->nfont; i++) {
    FcPattern* candidate = font.fallbacks->fonts[i];
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(candidate, FC_CHARSET, 0, &characters) != FcResultMatch ||
        !FcCharSetHasChar(characters, character))
      continue;
    auto [place, isNew] = font.opened.try_emplace(i);
    if (isNew) place->second = openFace(candidate, font.size, font.weight, font.italic);
    FT_Face face = place->second.face.get();
    if (face && FT_Get_Char_Index(face, character) != 0) return &place->second;
  }
  return nullptr;
}

constexpr int fullCoverage = 64;

void copyCoverage(const FT_Bitmap& bitmap, Glyph* glyph) {
  bool mono = bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
  if (!mono && bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) return;  // coloured glyphs are no coverage
  glyph->width = static_cast<int>(bitmap.width);
  glyph->height = static_cast<int>(bitmap.rows);
  glyph->coverage.resize(size_t{bitmap.width} * bitmap.rows);
  for (int y = 0; y < glyph->height; y++) {
    const uint8_t* source = bitmap.buffer + int64_t{y} * bitmap.pitch;
    uint8_t* target = glyph->coverage.data() + size_t(y) * glyph->width;
    for (int x = 0; x < glyph->width; x++) {
      int level = mono ? (source[x >> 3] >> (7 - (x & 7)) & 1) * 255 : source[x];
      target[x] = static_cast<uint8_t>((level * fullCoverage + 127) / 255);
    }
  }
}

int roundUp(FT_Pos value) { return static_cast<int>((value + 63) >> 6); }
int roundNearest(FT_Pos value) { return static_cast<int>((value + 32) >> 6); }

}  // namespace

Font* openFont(const char* face, int size, int weight, bool italic) {
  FontLibrary& fonts = fontLibrary();
  std::lock_guard guard(fonts.lock);
  size = std::clamp(size, 1, maxSize);
  Pattern request(FcPatternCreate());
  if (!request) return nullptr;
  std::string name = utf8FromAnsi(face ? face : "");
  if (!name.empty()) FcPatternAddString(request.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name.c_str()));
  FcPatternAddInteger(request.get(), FC_WEIGHT, FcWeightFromOpenType(weight));
  FcPatternAddInteger(request.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddDouble(request.get(), FC_PIXEL_SIZE, size);
  FcPatternAddBool(request.get(), FC_COLOR, FcFalse);
  FcConfigSubstitute(nullptr, request.get(), FcMatchPattern);
  FcDefaultSubstitute(request.get());
  FcResult result;
  Pattern match(FcFontMatch(nullptr, request.get(), &result));
  if (!match) return nullptr;
  Face main = openFace(match.get(), size, weight, italic);
  if (!main.face) return nullptr;
  return new Font{size, weight, italic, std::move(request), std::move(main), nullptr, {}};
}

void closeFont(Font* font) {
  std::lock_guard guard(fontLibrary().lock);
  delete font;
}

bool drawGlyph(Font* font, char32_t character, Glyph* glyph) {
  if (!font) return false;
  std::lock_guard guard(fontLibrary().lock);
  Face* face = faceFor(*font, character);
  if (!face) return false;
  FT_Face ft = face->face.get();
  // Light hinting leaves widths alone, so that text keeps its proportions at every size.
  if (FT_Load_Char(ft, character, FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP) != 0 &&
      FT_Load_Char(ft, character, FT_LOAD_DEFAULT) != 0)
    return false;
  FT_GlyphSlot slot = ft->glyph;
  if (face->thicken) FT_GlyphSlot_Embolden(slot);
  if (face->slant) FT_GlyphSlot_Oblique(slot);
  if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) return false;
  *glyph = Glyph{};
  glyph->left = slot->bitmap_left;
  glyph->top = slot->bitmap_top;
  glyph->advance = roundNearest(slot->advance.x);
  copyCoverage(slot->bitmap, glyph);
  return true;
}

FontMetrics fontMetrics(Font* font) {
  if (!font) return {};
  const FT_Size_Metrics& m = font->main.face->size->metrics;
  return {roundUp(m.ascender), roundUp(-m.descender), roundNearest(m.height), roundNearest(m.max_advance)};
}

}  // namespace platform
