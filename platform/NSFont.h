// A face of a font family at a size. Fonts do not change.
#pragma once

#include "platform/NSFontDescriptor.h"

namespace wq {
struct Face;
}

class NSFont : public wq::Object {
public:
    // The font that the user prefers for text, at a size in points; a size that is not above 0 is
    // read as 12. Never null: on a system without any font its family is "Sans", and no file is
    // behind it. Which font that is, is asked once in a process.
    static Ref<NSFont> userFontOfSize(double size);

    // As the platform spells it.
    const NSString& familyName() const { return my.descriptor->familyName(); }
    double pointSize() const { return my.descriptor->pointSize(); }         // points
    Ref<NSFontDescriptor> fontDescriptor() const { return my.descriptor; }  // always the same object

    // The file of the face, for whoever draws it; null if there is none.
    const NSString& path() const { return my.path; }
    // Which face of that file, as FreeType counts them.
    int faceIndex() const { return my.faceIndex; }

    // The same face at the same size. Null equals nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

    NSString description() const override;  // "TeX Gyre Pagella 10.5 bold italic"

private:
    friend class NSFontManager;
    static Ref<NSFont> fontWithFace_size(const wq::Face& face, double size);

    struct {
        Ref<NSFontDescriptor> descriptor;
        NSString path;
        int faceIndex = 0;
    } my;
};
