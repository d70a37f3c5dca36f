#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/core/osx/StyleImpl.h"
#include "platform/NSFontManager.h"

using CSS::Font;
using CSS::FontImpl;

namespace {

SharedPtr<FontImpl> newFont(const char* family = nullptr) {
    SharedPtr<FontImpl> font(new FontImpl);
    if (family) font->SetFamily(family);
    return font;
}

SharedPtr<FontImpl> cloneOf(const SharedPtr<FontImpl>& font) { return SharedPtr<FontImpl>(dynamic_cast<FontImpl*>(font->Clone())); }

// "TeX Gyre Termes 12 bold italic", as the platform found it.
std::string found(const Ref<NSFont>& font) { return font ? wq::toUTF8(font->description()) : "none"; }

// What each setter does to a font, as it stands when it is made.
struct Change {
    const char* name;
    void (*same)(FontImpl&);
    void (*other)(FontImpl&);
};
const Change kChanges[] = {
    {"weight", [](FontImpl& font) { font.SetWeight(WQCSSFontWeightNormal); }, [](FontImpl& font) { font.SetWeight(WQCSSFontWeightBold); }},
    {"style", [](FontImpl& font) { font.SetStyle(WQCSSFontStyleNormal); }, [](FontImpl& font) { font.SetStyle(WQCSSFontStyleItalic); }},
    {"size", [](FontImpl& font) { font.SetSize(12); }, [](FontImpl& font) { font.SetSize(9); }},
    {"family", [](FontImpl& font) { font.SetFamily("TeX Gyre Pagella"); }, [](FontImpl& font) { font.SetFamily("DejaVu Sans"); }},
};

}  // namespace

TEST(FontImpl, ANewFontIsTheUsersTextFontAt12Points) {
    const SharedPtr<Font> font(CreateCSSFont());
    EXPECT_EQ(font->refCount, 1);
    EXPECT_EQ(font->Family(), "TeX Gyre Pagella");
    EXPECT_EQ(font->Size(), 12.0f);
    EXPECT_EQ(font->Weight(), WQCSSFontWeightNormal);
    EXPECT_EQ(font->Style(), WQCSSFontStyleNormal);
    EXPECT_NE(dynamic_cast<FontImpl*>(font.Get()), nullptr);
}

TEST(FontImpl, TheFactoryMakesANewFontWithACountOfZero) {
    const std::unique_ptr<Font> first(CreateCSSFont()), second(CreateCSSFont());
    EXPECT_EQ(first->refCount, 0);
    EXPECT_NE(first, second);
}

TEST(FontImpl, ANewFontFindsTheUsersFont) { EXPECT_EQ(found(newFont()->GetFont()), "TeX Gyre Pagella 12"); }

TEST(FontImpl, BoldAndItalicGiveDifferentFaces) {
    const struct {
        WQCSSFontWeight weight;
        WQCSSFontStyle style;
        const char* found;
    } rows[] = {
        {WQCSSFontWeightNormal, WQCSSFontStyleNormal, "TeX Gyre Termes 12"},
        {WQCSSFontWeightBold, WQCSSFontStyleNormal, "TeX Gyre Termes 12 bold"},
        {WQCSSFontWeightNormal, WQCSSFontStyleItalic, "TeX Gyre Termes 12 italic"},
        {WQCSSFontWeightBold, WQCSSFontStyleItalic, "TeX Gyre Termes 12 bold italic"},
        // Numbers that are no weight and no style ask for nothing.
        {static_cast<WQCSSFontWeight>(2), WQCSSFontStyleNormal, "TeX Gyre Termes 12"},
        {static_cast<WQCSSFontWeight>(15), WQCSSFontStyleItalic, "TeX Gyre Termes 12 italic"},
        {WQCSSFontWeightNormal, static_cast<WQCSSFontStyle>(2), "TeX Gyre Termes 12"},
        {WQCSSFontWeightBold, static_cast<WQCSSFontStyle>(3), "TeX Gyre Termes 12 bold"},
        // Cut to their fields.
        {static_cast<WQCSSFontWeight>(17), static_cast<WQCSSFontStyle>(5), "TeX Gyre Termes 12 bold italic"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.weight << " " << row.style);
        const auto font = newFont("TeX Gyre Termes");
        font->SetWeight(row.weight);
        font->SetStyle(row.style);
        EXPECT_EQ(found(font->GetFont()), row.found);
    }
}

TEST(FontImpl, AFaceThatIsMissingIsTheNearestOne) {
    const auto font = newFont("DejaVu Sans");
    font->SetStyle(WQCSSFontStyleItalic);
    EXPECT_EQ(found(font->GetFont()), "DejaVu Sans 12");
    font->SetWeight(WQCSSFontWeightBold);
    EXPECT_EQ(found(font->GetFont()), "DejaVu Sans 12 bold");
}

TEST(FontImpl, TheFontHasTheSize) {
    const auto font = newFont();
    font->SetSize(10.1f);
    EXPECT_EQ(font->GetFont()->pointSize(), 10.100000381469727);
    font->SetSize(0.5f);
    EXPECT_EQ(font->GetFont()->pointSize(), 0.5);
    font->SetSize(0);
    EXPECT_EQ(font->GetFont()->pointSize(), 12.0);  // as the platform reads it
    EXPECT_EQ(font->Size(), 0.0f);
}

TEST(FontImpl, FamiliesAreFoundExactlyThenWithoutCaseAndNotOtherwise) {
    const struct {
        const char* family;
        const char* found;
    } rows[] = {
        {"TeX Gyre Heros", "TeX Gyre Heros 12"},
        {"tex gyre heros", "TeX Gyre Heros 12"},
        {"TEX GYRE HEROS", "TeX Gyre Heros 12"},
        {"DejaVu SANS", "DejaVu Sans 12"},
        {"Wanderer", "Wanderer 12"},
        {"WANDERER", "WANDERER 12 bold"},
        {"wanderer", "WANDERER 12 bold"},  // the first in the platform's order
        {"wandereR", "WANDERER 12 bold"},
        {"TeX Gyre", "none"},
        {"TeX Gyre Heros ", "none"},
        {"'TeX Gyre Heros'", "none"},  // quotes stay in a name
        {"Nonesuch", "none"},
        {"sans-serif", "none"},
        {".hidden", "none"},
        {"", "none"},
        {"\xC3\x89t\xC3\xA9", "none"},
        {"\xFF\xFE", "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.family);
        const auto font = newFont(row.family);
        EXPECT_EQ(found(font->GetFont()), row.found);
        EXPECT_EQ(font->Family(), row.family);
    }
}

TEST(FontImpl, AFamilyFoundWithoutCaseHasTheWantedFace) {
    const auto font = newFont("tex gyre heros");
    font->SetWeight(WQCSSFontWeightBold);
    font->SetStyle(WQCSSFontStyleItalic);
    font->SetSize(8.5f);
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Heros 8.5 bold italic");
}

TEST(FontImpl, TheBestMatchIsTheFirstFamilyOfThatNameWithoutCase) {
    const FontImpl font;
    const struct {
        const char16_t* family;
        unsigned long traits;
        int weight;
        float size;
        const char* found;
    } rows[] = {
        {u"tex gyre termes", NSUnboldFontMask | NSUnitalicFontMask, 5, 12, "TeX Gyre Termes 12"},
        {u"TeX Gyre Termes", NSBoldFontMask | NSItalicFontMask, 5, 10.5f, "TeX Gyre Termes 10.5 bold italic"},
        {u"tex gyre termes", 0, 9, 12, "TeX Gyre Termes 12 bold"},
        {u"tex gyre termes", NSUnboldFontMask, 9, 12, "TeX Gyre Termes 12"},
        {u"Wanderer", NSUnboldFontMask, 5, 12, "WANDERER 12 bold"},  // though a family is spelt so
        {u"nonesuch", 0, 5, 12, "none"},
        {u"tex gyre", 0, 5, 12, "none"},
        {u"", 0, 5, 12, "none"},
        {nullptr, 0, 5, 12, "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(NSString(row.family)));
        EXPECT_EQ(found(font.BestMatchForFont(row.family, row.traits, row.weight, row.size)), row.found);
    }
    EXPECT_EQ(font.Family(), "TeX Gyre Pagella");
}

// ---- The cache

TEST(FontImpl, KeepsTheFontItHasFound) {
    const auto font = newFont();
    const auto platform = font->GetFont();
    EXPECT_EQ(font->GetFont(), platform);
    EXPECT_EQ(platform->referenceCount(), 2);
}

TEST(FontImpl, LetsTheFontGoWithItself) {
    Ref<NSFont> platform;
    {
        const auto font = newFont("DejaVu Sans");
        platform = font->GetFont();
    }
    EXPECT_EQ(platform->referenceCount(), 1);
    EXPECT_EQ(found(platform), "DejaVu Sans 12");
}

TEST(FontImpl, EverySetterDropsTheFontAlsoWithThePresentValue) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.name);
        for (const auto set : {change.same, change.other}) {
            const auto font = newFont();
            const auto platform = font->GetFont();
            set(*font);
            EXPECT_EQ(platform->referenceCount(), 1);
            EXPECT_NE(font->GetFont(), platform);
        }
    }
}

TEST(FontImpl, TheFontFollowsItsSetters) {
    const auto font = newFont();
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Pagella 12");
    font->SetSize(9);
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Pagella 9");
    font->SetWeight(WQCSSFontWeightBold);
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Pagella 9 bold");
    font->SetStyle(WQCSSFontStyleItalic);
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Pagella 9 bold italic");
    font->SetFamily("TeX Gyre Schola");
    EXPECT_EQ(found(font->GetFont()), "TeX Gyre Schola 9 bold italic");
    font->SetFamily("Nonesuch");
    EXPECT_EQ(font->GetFont(), nullptr);
    font->SetFamily("DejaVu Sans");
    EXPECT_EQ(found(font->GetFont()), "DejaVu Sans 9 bold");
}

TEST(FontImpl, AnUnknownFamilyHasNoFontHoweverOftenItIsAsked) {
    const auto font = newFont("Nonesuch");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(font->GetFont(), nullptr);
}

// ---- Clones

TEST(FontImpl, ACloneHasTheSameFieldsAndACountOfZero) {
    const auto font = newFont("TeX Gyre Schola");
    font->SetWeight(WQCSSFontWeightBold);
    font->SetStyle(WQCSSFontStyleItalic);
    font->SetSize(9);
    const std::unique_ptr<Font> clone(font->Clone());
    EXPECT_EQ(clone->refCount, 0);
    EXPECT_EQ(clone->Family(), "TeX Gyre Schola");
    EXPECT_EQ(clone->Weight(), WQCSSFontWeightBold);
    EXPECT_EQ(clone->Style(), WQCSSFontStyleItalic);
    EXPECT_EQ(clone->Size(), 9.0f);
    ASSERT_NE(dynamic_cast<FontImpl*>(clone.get()), nullptr);
    EXPECT_EQ(found(static_cast<FontImpl*>(clone.get())->GetFont()), "TeX Gyre Schola 9 bold italic");
}

TEST(FontImpl, ACloneSharesTheFontUntilEitherChanges) {
    for (const Change& change : kChanges) {
        for (const bool changesClone : {true, false}) {
            SCOPED_TRACE(testing::Message() << change.name << (changesClone ? " of the clone" : " of the original"));
            const auto font = newFont();
            const auto platform = font->GetFont();
            const auto clone = cloneOf(font);
            EXPECT_EQ(platform->referenceCount(), 3);
            EXPECT_EQ(clone->GetFont(), platform);
            change.other(changesClone ? *clone : *font);
            EXPECT_EQ(platform->referenceCount(), 2);
            EXPECT_EQ((changesClone ? font : clone)->GetFont(), platform);
            EXPECT_NE((changesClone ? clone : font)->GetFont(), platform);
        }
    }
}

TEST(FontImpl, ACloneOfAFontThatWasNeverAskedFindsItsOwn) {
    const auto font = newFont(), clone = cloneOf(font);
    EXPECT_NE(font->GetFont(), clone->GetFont());
    EXPECT_EQ(found(clone->GetFont()), "TeX Gyre Pagella 12");
}

TEST(FontImpl, ACloneOutlivesItsOriginal) {
    auto font = newFont();
    const auto platform = font->GetFont();
    const auto clone = cloneOf(font);
    font = nullptr;
    EXPECT_EQ(clone->GetFont(), platform);
}

// ---- In a style

namespace {

FontImpl* fontOf(const SharedPtr<CSS::Style>& style) { return static_cast<FontImpl*>(style->font.Get()); }

SharedPtr<CSS::Style> newStyle() {
    SharedPtr<CSS::Style> style(CreateStyle());
    style->SetFont(SharedPtr<Font>(CreateCSSFont()));
    return style;
}

}  // namespace

TEST(FontImpl, AStyleThatSetsThePresentValueKeepsTheFont) {
    const auto style = newStyle();
    const auto platform = fontOf(style)->GetFont();
    style->SetFontSize(12);
    style->SetFontWeight(WQCSSFontWeightNormal);
    style->SetFontStyle(WQCSSFontStyleNormal);
    style->SetFontFamily("TeX Gyre Pagella");
    EXPECT_EQ(fontOf(style)->GetFont(), platform);
    fontOf(style)->SetSize(12);
    EXPECT_NE(fontOf(style)->GetFont(), platform);
}

TEST(FontImpl, AStyleThatSetsAnotherValueFindsAnotherFont) {
    const auto style = newStyle();
    const FontImpl* const font = fontOf(style);
    EXPECT_EQ(found(fontOf(style)->GetFont()), "TeX Gyre Pagella 12");
    style->SetFontSize(9);
    style->SetFontWeight(WQCSSFontWeightBold);
    EXPECT_EQ(found(fontOf(style)->GetFont()), "TeX Gyre Pagella 9 bold");
    EXPECT_EQ(fontOf(style), font);
}

TEST(FontImpl, AStyleThatChangesASharedFontLeavesTheOtherOnesAlone) {
    const auto parent = newStyle();
    const auto platform = fontOf(parent)->GetFont();
    const SharedPtr<CSS::Style> child(CreateStyle());
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(fontOf(child)->GetFont(), platform);
    child->SetFontWeight(WQCSSFontWeightBold);
    EXPECT_EQ(found(fontOf(child)->GetFont()), "TeX Gyre Pagella 12 bold");
    EXPECT_EQ(fontOf(parent)->GetFont(), platform);
}
