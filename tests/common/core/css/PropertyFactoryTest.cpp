#include "common/core/css/PropertyFactory.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "common/core/css/LonghandProperties.h"
#include "common/core/css/PropContent.h"
#include "common/core/css/ShorthandProperties.h"

using namespace CSS;

namespace {

struct Row {
    const char* name;
    int id;
    PropertyID enumerator;
    const std::type_info& type;
    Property* (*maker)();
    bool shorthand;
    unsigned int index;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all{
        {"background-color", 1, PropertyBackgroundColor, typeid(PropBackgroundColor), makeBackgroundColor, false, 23},
        {"color", 2, PropertyColor, typeid(PropColor), makeColor, false, 1},
        {"content", 3, PropertyContent, typeid(PropContent), makeContent, false, 2},
        {"display", 4, PropertyDisplay, typeid(PropDisplay), makeDisplay, false, 11},
        {"font", 5, PropertyFont, typeid(PropFont), makeFont, true, 0},
        {"font-family", 6, PropertyFontFamily, typeid(PropFontFamily), makeFontFamily, false, 5},
        {"font-size", 7, PropertyFontSize, typeid(PropFontSize), makeFontSize, false, 3},
        {"font-style", 8, PropertyFontStyle, typeid(PropFontStyle), makeFontStyle, false, 4},
        {"font-variant", 9, PropertyFontVariant, typeid(PropFontVariant), makeFontVariant, false, 6},
        {"font-weight", 10, PropertyFontWeight, typeid(PropFontWeight), makeFontWeight, false, 20},
        {"line-height", 11, PropertyLineHeight, typeid(PropLineHeight), makeLineHeight, false, 12},
        {"list-style-type", 12, PropertyListStyleType, typeid(PropListStyleType), makeListStyleType, false, 9},
        {"margin", 13, PropertyMargin, typeid(PropMargin), makeMargin, true, 10},
        {"margin-bottom", 14, PropertyMarginBottom, typeid(PropMarginBottom), makeMarginBottom, false, 16},
        {"margin-left", 15, PropertyMarginLeft, typeid(PropMarginLeft), makeMarginLeft, false, 14},
        {"margin-right", 16, PropertyMarginRight, typeid(PropMarginRight), makeMarginRight, false, 15},
        {"margin-top", 17, PropertyMarginTop, typeid(PropMarginTop), makeMarginTop, false, 13},
        {"page-break-after", 18, PropertyPageBreakAfter, typeid(PropPageBreakAfter), makePageBreakAfter, false, 18},
        {"page-break-before", 19, PropertyPageBreakBefore, typeid(PropPageBreakBefore), makePageBreakBefore, false, 19},
        {"position", 20, PropertyPosition, typeid(PropPosition), makePosition, false, 7},
        {"text-align", 21, PropertyTextAlign, typeid(PropTextAlign), makeTextAlign, false, 24},
        {"text-decoration", 22, PropertyTextDecoration, typeid(PropTextDecoration), makeTextDecoration, false, 22},
        {"text-indent", 23, PropertyTextIndent, typeid(PropTextIndent), makeTextIndent, false, 21},
        {"vertical-align", 24, PropertyVerticalAlign, typeid(PropVerticalAlign), makeVerticalAlign, false, 8},
        {"width", 25, PropertyWidth, typeid(PropWidth), makeWidth, false, 17},
    };
    return all;
}

void expectNew(Property& property, const Row& row, int32_t order) {
    EXPECT_EQ(typeid(property), row.type);
    EXPECT_EQ(property.id, row.enumerator);
    EXPECT_EQ(property.name(), row.name);
    EXPECT_EQ(property.value.Get(), nullptr);
    EXPECT_FALSE(property.important);
    EXPECT_EQ(property.order, order);
    EXPECT_EQ(property.isShorthandProperty(), row.shorthand);
    EXPECT_EQ(dynamic_cast<ShorthandProperty*>(&property) != nullptr, row.shorthand);
}

// Whether the factory knows no such name, and says so by an object that keeps it.
bool isUnknown(const std::string& name) {
    const SharedPtr<Property> property = PropertyFactory::MakeProperty(name);
    const auto* generic = dynamic_cast<PropGeneric*>(property.Get());
    return generic && generic->genericName == name && generic->id == 0;
}

}  // namespace

TEST(PropertyFactory, HasTheseNumbers) {
    ASSERT_EQ(rows().size(), 25u);
    EXPECT_EQ(PropertyUnknown, 0);
    for (size_t i = 0; i < 25; ++i) {
        SCOPED_TRACE(rows()[i].name);
        EXPECT_EQ(rows()[i].id, static_cast<int>(i) + 1);
        EXPECT_EQ(rows()[i].enumerator, rows()[i].id);
    }
}

TEST(PropertyFactory, MakesAPropertyOfTheClassOfTheName) {
    for (const auto& row : rows()) {
        SCOPED_TRACE(row.name);
        Property::gOrderCounter = 7;
        Property* const made = PropertyFactory::MakeProperty(row.name);
        EXPECT_EQ(made->refCount, 0);
        const SharedPtr<Property> property = made;
        expectNew(*property, row, 7);
        EXPECT_EQ(Property::gOrderCounter, 8);
    }
}

TEST(PropertyFactory, HasAMakerForEachClass) {
    for (const auto& row : rows()) {
        SCOPED_TRACE(row.name);
        Property::gOrderCounter = 41;
        Property* const made = row.maker();
        EXPECT_EQ(made->refCount, 0);
        const SharedPtr<Property> property = made;
        expectNew(*property, row, 41);
        EXPECT_EQ(Property::gOrderCounter, 42);
    }
}

TEST(PropertyFactory, AnswersANewPropertyEachTime) {
    const SharedPtr<Property> first = PropertyFactory::MakeProperty("color"), second = PropertyFactory::MakeProperty("color");
    EXPECT_NE(first.Get(), second.Get());
}

TEST(PropertyFactory, MakesANewFontWithoutParts) {
    const SharedPtr<PropFont> font = static_cast<PropFont*>(makeFont());
    EXPECT_FALSE(font->fontStyle);
    EXPECT_FALSE(font->fontVariant);
    EXPECT_FALSE(font->fontWeight);
    EXPECT_FALSE(font->fontSize);
    EXPECT_FALSE(font->lineHeight);
    EXPECT_FALSE(font->fontFamily);
    EXPECT_FALSE(font->valid);
    EXPECT_TRUE(font->propertyList().empty());
}

TEST(PropertyFactory, MakesANewMarginWithoutParts) {
    const SharedPtr<PropMargin> margin = static_cast<PropMargin*>(makeMargin());
    EXPECT_FALSE(margin->marginTop);
    EXPECT_FALSE(margin->marginLeft);
    EXPECT_FALSE(margin->marginBottom);
    EXPECT_FALSE(margin->marginRight);
}

// ---- Names that are none

TEST(PropertyFactory, ANameInAnyOtherCaseIsUnknown) {
    for (const char* name : {"Color", "COLOR", "coloR", "Font-Size", "MARGIN", "Width"}) EXPECT_TRUE(isUnknown(name)) << name;
}

TEST(PropertyFactory, AnEmptyNameIsUnknown) { EXPECT_TRUE(isUnknown("")); }

TEST(PropertyFactory, NamesOfFewerThanFourCharactersAreUnknown) {
    for (const char* name : {"f", "fo", "fon", "col", "top"}) EXPECT_TRUE(isUnknown(name)) << name;
}

TEST(PropertyFactory, NamesOfMoreThanSeventeenCharactersAreUnknown) {
    EXPECT_TRUE(isUnknown("page-break-before-"));
    EXPECT_TRUE(isUnknown("page-break-beforee"));
    EXPECT_TRUE(isUnknown(std::string(10000, 'a')));
    EXPECT_TRUE(isUnknown("color" + std::string(1000, ' ')));
}

TEST(PropertyFactory, NamesOfOtherPropertiesAreUnknown) {
    for (const char* name :
         {"foo", "height", "float", "padding", "border", "background", "page-break-inside", "position-x", "text-transform", "max-width"})
        EXPECT_TRUE(isUnknown(name)) << name;
}

TEST(PropertyFactory, BlanksAroundANameMakeItUnknown) {
    EXPECT_TRUE(isUnknown(" color"));
    EXPECT_TRUE(isUnknown("color "));
    EXPECT_TRUE(isUnknown("font size"));
}

TEST(PropertyFactory, ANullByteBelongsToTheName) {
    EXPECT_TRUE(isUnknown(std::string("color\0", 6)));
    EXPECT_TRUE(isUnknown(std::string("color\0x", 7)));
    EXPECT_TRUE(isUnknown(std::string("\0color", 6)));
}

TEST(PropertyFactory, ANameOfForeignBytesIsUnknown) {
    EXPECT_TRUE(isUnknown("\xFF\xFF\xFF\xFF\xFF"));
    EXPECT_TRUE(isUnknown("col\xC3\xB6r"));
}

TEST(PropertyFactory, ANameWithOneByteChangedTakenOrAddedIsUnknown) {
    std::set<std::string> names;
    for (const auto& row : rows()) names.insert(row.name);
    for (const auto& name : names) {
        for (size_t i = 0; i < name.size(); ++i) {
            for (const char other : {'x', '-', 'e', 'o', '\xE9'}) {
                std::string changed = name;
                changed[i] = other;
                EXPECT_TRUE(names.count(changed) || isUnknown(changed)) << changed;
            }
            const std::string shorter = name.substr(0, i) + name.substr(i + 1);
            EXPECT_TRUE(isUnknown(shorter)) << shorter;
        }
        EXPECT_TRUE(isUnknown(name + "s")) << name;
        EXPECT_TRUE(isUnknown("s" + name)) << name;
    }
}

TEST(PropertyFactory, MakesAnUnknownPropertyOfAnyName) {
    for (const char* name : {"foo", "", "Color", "color"}) {
        SCOPED_TRACE(name);
        Property::gOrderCounter = 3;
        Property* const made = PropertyFactory::MakeUnknownProperty(name);
        EXPECT_EQ(made->refCount, 0);
        const SharedPtr<Property> property = made;
        const auto* generic = dynamic_cast<PropGeneric*>(made);
        ASSERT_TRUE(generic);
        EXPECT_EQ(generic->genericName, name);
        EXPECT_EQ(made->id, 0);
        EXPECT_EQ(made->name(), "");
        EXPECT_EQ(made->value.Get(), nullptr);
        EXPECT_FALSE(made->important);
        EXPECT_FALSE(made->isShorthandProperty());
        EXPECT_EQ(made->order, 3);
        EXPECT_EQ(Property::gOrderCounter, 4);
    }
}

// ---- Numbers and rows

TEST(PropertyFactory, KnowsTheNameOfEachNumber) {
    for (const auto& row : rows()) EXPECT_STREQ(PropertyFactory::NameForID(static_cast<PropertyID>(row.id)), row.name);
}

TEST(PropertyFactory, ANumberThatIsNoneHasNoName) {
    for (const int id : {0, -1, 26, 27, 36, INT_MAX, INT_MIN})
        EXPECT_EQ(PropertyFactory::NameForID(static_cast<PropertyID>(id)), nullptr) << id;
}

TEST(PropertyFactory, HasTwentyFiveRows) { EXPECT_EQ(PropertyFactory::PropertyListLength(), 25u); }

TEST(PropertyFactory, EachNameHasItsRow) {
    for (const auto& row : rows()) EXPECT_EQ(PropertyFactory::PropertyAtIndex(row.index), row.name);
}

TEST(PropertyFactory, ListsTheNamesInThisOrder) {
    const std::vector<std::string> expected{"font",         "color",         "content",         "font-size",        "font-style",
                                            "font-family",  "font-variant",  "position",        "vertical-align",   "list-style-type",
                                            "margin",       "display",       "line-height",     "margin-top",       "margin-left",
                                            "margin-right", "margin-bottom", "width",           "page-break-after", "page-break-before",
                                            "font-weight",  "text-indent",   "text-decoration", "background-color", "text-align"};
    std::vector<std::string> names;
    for (unsigned int i = 0; i < PropertyFactory::PropertyListLength(); ++i) names.push_back(PropertyFactory::PropertyAtIndex(i));
    EXPECT_EQ(names, expected);
}

TEST(PropertyFactory, TheLastRowIsTextAlign) { EXPECT_EQ(PropertyFactory::PropertyAtIndex(24), "text-align"); }

TEST(PropertyFactory, BehindTheLastRowTheNameIsEmpty) {
    EXPECT_EQ(PropertyFactory::PropertyAtIndex(25), "");
    EXPECT_EQ(PropertyFactory::PropertyAtIndex(26), "");
    EXPECT_EQ(PropertyFactory::PropertyAtIndex(UINT_MAX), "");
}

TEST(PropertyFactory, AnInstanceServesNothing) {
    static_assert(std::has_virtual_destructor_v<PropertyFactory>);
    static_assert(sizeof(PropertyFactory) == sizeof(void*), "it holds no data");
    const PropertyFactory factory;
    EXPECT_EQ(factory.PropertyListLength(), 25u);
}
