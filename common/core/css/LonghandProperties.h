// The properties that turn one value into one field of a style.
//
// None of them looks at a parent: what a style inherits it has before declarations are applied to it. "inherit" is
// therefore a keyword that no class acts on; each says below what becomes of it where it is accepted.
#pragma once

#include "common/core/css/Property.h"

namespace CSS {

// ---- Keywords. A value that is no keyword changes nothing; a keyword that is none of the property's is a hard
// assertion, and so is a field of the style that holds none of its values.

// Reads back as "block" whatever the style says: a computed display cannot tell.
class PropDisplay : public Property {
public:
    PropDisplay() : Property(PropertyDisplay) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// A style that is neither normal nor italic reads back as null.
class PropFontStyle : public Property {
public:
    PropFontStyle() : Property(PropertyFontStyle) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// A weight by number is valid (100 to 900) and changes nothing: 700 does not mean bold.
class PropFontWeight : public Property {
public:
    PropFontWeight() : Property(PropertyFontWeight) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;

    using Property::validate;
    bool validate(AST* term, AST** next) override;  // keeps an earlier value when it fails
};

// "inherit" is stored as a value of its own, and reads back as "inline".
class PropPageBreakAfter : public Property {
public:
    PropPageBreakAfter() : Property(PropertyPageBreakAfter) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// As PropPageBreakAfter.
class PropPageBreakBefore : public Property {
public:
    PropPageBreakBefore() : Property(PropertyPageBreakBefore) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// Here a value that is no keyword is a hard assertion as well.
class PropTextAlign : public Property {
public:
    PropTextAlign() : Property(PropertyTextAlign) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// None or underline: there is no keyword for other lines.
class PropTextDecoration : public Property {
public:
    PropTextDecoration() : Property(PropertyTextDecoration) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// As PropTextAlign.
class PropVerticalAlign : public Property {
public:
    PropVerticalAlign() : Property(PropertyVerticalAlign) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// Never a hard assertion: what is no list style type changes nothing, and reads back as null.
class PropListStyleType : public Property {
public:
    PropListStyleType() : Property(PropertyListStyleType) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// ---- Lengths, in points. Without a value nothing is applied. "inherit", which the margins and the width accept, is a
// hard assertion when it is applied, and so is any value that is no length (see PrimitiveValue::lengthValueForStyle).

class PropMarginTop : public Property {
public:
    PropMarginTop() : Property(PropertyMarginTop) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

class PropMarginBottom : public Property {
public:
    PropMarginBottom() : Property(PropertyMarginBottom) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

class PropMarginLeft : public Property {
public:
    PropMarginLeft() : Property(PropertyMarginLeft) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

class PropMarginRight : public Property {
public:
    PropMarginRight() : Property(PropertyMarginRight) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

class PropWidth : public Property {
public:
    PropWidth() : Property(PropertyWidth) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

class PropTextIndent : public Property {
public:
    PropTextIndent() : Property(PropertyTextIndent) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// Reads back in pixels.
class PropFontSize : public Property {
public:
    PropFontSize() : Property(PropertyFontSize) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// A multiple of the font size, as a plain number; a bare zero is none. A value that is no number is a hard assertion.
class PropLineHeight : public Property {
public:
    PropLineHeight() : Property(PropertyLineHeight) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// ---- Others

// A name or a hash; "inherit" is a colour name that is none. A term of another kind without arguments is
// told on standard output: "Unhandled color token N". What is applied is opaque.
class PropColor : public Property {
public:
    PropColor() : Property(PropertyColor) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;

    using Property::validate;
    bool validate(AST* term, AST** next) override;  // keeps an earlier value when it fails
};

// Kept in declarations, without effect on styles. "transparent" and "inherit" are refused, though the object
// then holds them.
class PropBackgroundColor : public Property {
public:
    PropBackgroundColor() : Property(PropertyBackgroundColor) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;

    using Property::validate;
    bool validate(AST* term, AST** next) override;  // keeps an earlier value when it fails
};

// A list of names, each of words with one blank between them, or in quotes, which stay. Generic families are names
// like others, and "inherit" is one. A word behind white space goes on with the name in front of it, in quotes or
// not. The first name is the one that is applied, whatever fonts there are; it reads back as one text.
class PropFontFamily : public Property {
public:
    PropFontFamily() : Property(PropertyFontFamily) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;

    bool validate(AST* root) override;
    bool validate(AST* term, AST** next) override;  // takes all terms to the end; keeps an earlier value when it fails
};

// Kept in declarations, without effect on styles. Another keyword than its own is a hard assertion.
class PropFontVariant : public Property {
public:
    PropFontVariant() : Property(PropertyFontVariant) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

// Accepted, without effect on styles.
class PropPosition : public Property {
public:
    PropPosition() : Property(PropertyPosition) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
};

}  // namespace CSS
