// A block of properties that can be changed, and the one that says what attributes of text say.
#pragma once

#include "mac/Frameworks/WQCSS/WQCSSStyleDeclaration.h"
#include "platform/NSDictionary.h"

template <class T> class NilMutableStyleDeclaration;

class WQCSSMutableStyleDeclaration : public WQCSSStyleDeclaration {
public:
    // Without properties.
    template <class T = WQCSSMutableStyleDeclaration> static Ref<T> newStyleDeclaration() { return wq::make<T>(&T::init); }
    virtual bool init();  // around a new, empty declaration

    // A new declaration of paragraph style, font, underline and colour, in pixels with six decimals. Without a font it
    // says Helvetica at 12 pixels; without a paragraph style all of its values are 0; without a colour there is none. Alpha
    // is dropped. A family name that holds a blank is put in single quotes, any other is written bare: an empty one is
    // a syntax error (see common/core/css/Parser.h). Null attributes are empty ones.
    template <class T = WQCSSMutableStyleDeclaration> static Ref<T> styleDeclarationFromAttributes(const Ref<NSDictionary>& attributes) {
        const auto declaration = newStyleDeclaration<T>();
        declaration->setPropertiesFromAttributes(attributes);
        return declaration;
    }

    // As CSS::MutableStyleDeclaration has them; its header says what is odd. A null name, value or priority is empty.
    void setCssText(const NSString& text);
    void setProperty_value(const NSString& name, const NSString& value);
    void setProperty_value_priority(const NSString& name, const NSString& value, const NSString& priority);
    void setProperty_cssValue(const NSString& name, const Ref<WQCSSValue>& value);  // removes, and adds nothing
    NSString removeProperty(const NSString& name);

    // The engine's; null around a declaration that cannot be changed, which the operations above then leave alone.
    CSS::MutableStyleDeclaration* mutableDeclaration() const;

    template <class T> using Nil = NilMutableStyleDeclaration<T>;

private:
    void setPropertiesFromAttributes(const Ref<NSDictionary>& attributes);
};

template <class T> class NilMutableStyleDeclaration : public NilStyleDeclaration<T> {
public:
    bool init() override { return false; }
};
