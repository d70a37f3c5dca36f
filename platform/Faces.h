// The faces that the system offers, as plain values; for the font classes of this folder.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace wq {

// One face of a font file. Weights and widths are on fontconfig's scales.
struct Face {
    std::string family;
    std::string path;
    int index = 0;          // within the file
    double weight = 80;     // 80 regular, 180 semibold, 200 bold
    double width = 100;     // 75 condensed, 100 normal
    bool isItalic = false;  // or oblique
    bool isVariable = false;
    std::string format;  // "CFF", "TrueType", "WOFF", ...

    bool isBold() const { return weight >= 180; }
};

// All scalable faces by the English name of their family. Made by the first use, and kept: fonts
// that are installed later are not seen.
const std::map<std::string, std::vector<Face>>& fontFamilies();

// The face of fontconfig's own default text font, made by the first use. Without any font its
// family is "Sans" and its path is empty.
const Face& userFace();

// The face of a family that comes nearest; null if there is none. The first difference decides:
// italic as asked, width nearest to normal, bold as asked, weight nearest to regular or bold, not
// variable, CFF before TrueType before others before WOFF, path, index.
const Face* nearestFace(const std::vector<Face>& faces, bool italic, bool bold);

}  // namespace wq
