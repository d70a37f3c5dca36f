#include "platform/Faces.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <tuple>

namespace wq {

namespace {

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

std::string text(const FcPattern* pattern, const char* object, int position = 0) {
    FcChar8* found = nullptr;
    if (FcPatternGetString(pattern, object, position, &found) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(found);
}

// A variable face has a range: then the number in it that is nearest to the usual one.
double number(const FcPattern* pattern, const char* object, double usual) {
    double found = 0, low = 0, high = 0;
    if (FcPatternGetDouble(pattern, object, 0, &found) == FcResultMatch) return found;
    FcRange* range = nullptr;
    if (FcPatternGetRange(pattern, object, 0, &range) != FcResultMatch || !FcRangeGetDouble(range, &low, &high)) return usual;
    return std::clamp(usual, low, std::max(low, high));
}

bool flag(const FcPattern* pattern, const char* object) {
    FcBool found = FcFalse;
    return FcPatternGetBool(pattern, object, 0, &found) == FcResultMatch && found == FcTrue;
}

// The first English name, or else the first.
std::string family(const FcPattern* pattern) {
    for (int position = 0;; ++position) {
        const std::string language = text(pattern, FC_FAMILYLANG, position);
        if (language.empty()) return text(pattern, FC_FAMILY);
        if (language.starts_with("en")) return text(pattern, FC_FAMILY, position);
    }
}

std::string format(const FcPattern* pattern, std::string_view path) {
    return path.ends_with(".woff") || path.ends_with(".woff2") ? "WOFF" : text(pattern, FC_FONTFORMAT);
}

Face face(const FcPattern* pattern) {
    Face face;
    face.family = family(pattern);
    face.path = text(pattern, FC_FILE);
    face.index = static_cast<int>(number(pattern, FC_INDEX, 0));
    face.weight = number(pattern, FC_WEIGHT, face.weight);
    face.width = number(pattern, FC_WIDTH, face.width);
    face.isItalic = number(pattern, FC_SLANT, FC_SLANT_ROMAN) > FC_SLANT_ROMAN;
    face.isVariable = flag(pattern, FC_VARIABLE);
    face.format = format(pattern, face.path);
    return face;
}

std::map<std::string, std::vector<Face>> readFamilies() {
    std::map<std::string, std::vector<Face>> families;
    for (FcSetName name : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* fonts = FcConfigGetFonts(nullptr, name);
        for (int i = 0; fonts && i < fonts->nfont; ++i) {
            if (!flag(fonts->fonts[i], FC_SCALABLE)) continue;
            Face found = face(fonts->fonts[i]);
            if (!found.family.empty() && found.family[0] != '.') families[found.family].push_back(std::move(found));
        }
    }
    return families;
}

Face matchUserFace() {
    const Pattern anything(FcPatternCreate(), &FcPatternDestroy);
    FcConfigSubstitute(nullptr, anything.get(), FcMatchPattern);
    FcDefaultSubstitute(anything.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(nullptr, anything.get(), &result), &FcPatternDestroy);
    Face found = match ? face(match.get()) : Face();
    if (found.family.empty()) found.family = "Sans";
    return found;
}

int rankOfFormat(std::string_view format) { return format == "CFF" ? 0 : format == "TrueType" ? 1 : format == "WOFF" ? 3 : 2; }

}  // namespace

const std::map<std::string, std::vector<Face>>& fontFamilies() {
    static const auto families = readFamilies();
    return families;
}

const Face& userFace() {
    static const Face face = matchUserFace();
    return face;
}

const Face* nearestFace(const std::vector<Face>& faces, bool italic, bool bold) {
    const auto distance = [&](const Face& face) {
        return std::make_tuple(
            face.isItalic != italic, std::abs(face.width - 100), face.isBold() != bold, std::abs(face.weight - (bold ? 200 : 80)),
            face.isVariable, rankOfFormat(face.format), std::string_view(face.path), face.index);
    };
    const auto nearest =
        std::min_element(faces.begin(), faces.end(), [&](const Face& a, const Face& b) { return distance(a) < distance(b); });
    return nearest == faces.end() ? nullptr : &*nearest;
}

}  // namespace wq
