#include "common/core/css/Value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <limits>
#include <locale>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/core/css/NameTables.h"
#include "common/core/css/ValueID.h"

using namespace CSS;
using namespace std::string_literals;

namespace {

using Primitive = SharedPtr<PrimitiveValue>;
using Codes = std::vector<unsigned short>;

Primitive make(float number, unsigned short code) { return {new PrimitiveValue(number, code)}; }
Primitive make(const std::string& text, unsigned short code) { return {new PrimitiveValue(text, code)}; }
template <class Payload> Primitive make(Payload payload) { return {new PrimitiveValue(payload)}; }

std::string textOfNumber(float number) { return make(number, CSS_NUMBER)->cssText(); }

uint32_t bits(float number) { return std::bit_cast<uint32_t>(number); }

struct KeywordRow {
    ValueID id;
    int number;
    std::string text;
};

const std::vector<KeywordRow>& keywords() {
    static const std::vector<KeywordRow> rows{
        {ValueAlways, 36, "always"},
        {ValueAuto, 37, "auto"},
        {ValueBlock, 38, "block"},
        {ValueBold, 39, "bold"},
        {ValueBottom, 40, "bottom"},
        {ValueBox, 41, "box"},
        {ValueCaption, 42, "caption"},
        {ValueCenter, 43, "center"},
        {ValueCheck, 44, "check"},
        {ValueCircle, 45, "circle"},
        {ValueCloseQuote, 46, "close-quote"},
        {ValueDecimal, 47, "decimal"},
        {ValueDiamond, 48, "diamond"},
        {ValueDisc, 49, "disc"},
        {ValueHyphen, 50, "hyphen"},
        {ValueIcon, 51, "icon"},
        {ValueInherit, 52, "inherit"},
        {ValueInline, 53, "inline"},
        {ValueItalic, 54, "italic"},
        {ValueJustify, 55, "justify"},
        {ValueLeft, 56, "left"},
        {ValueLowerAlpha, 57, "lower-alpha"},
        {ValueLowerHexadecimal, 58, "lower-hexadecimal"},
        {ValueLowerLatin, 59, "lower-latin"},
        {ValueLowerRoman, 60, "lower-roman"},
        {ValueMenu, 61, "menu"},
        {ValueMessageBox, 62, "message-box"},
        {ValueMiddle, 63, "middle"},
        {ValueNoCloseQuote, 64, "no-close-quote"},
        {ValueNoOpenQuote, 65, "no-open-quote"},
        {ValueNone, 66, "none"},
        {ValueNormal, 67, "normal"},
        {ValueOctal, 68, "octal"},
        {ValueOpenQuote, 69, "open-quote"},
        {ValueRight, 70, "right"},
        {ValueSmallCaps, 71, "small-caps"},
        {ValueSmallCaption, 72, "small-caption"},
        {ValueSquare, 73, "square"},
        {ValueStatic, 74, "static"},
        {ValueStatusBar, 75, "status-bar"},
        {ValueTop, 76, "top"},
        {ValueTransparent, 77, "transparent"},
        {ValueUnderline, 78, "underline"},
        {ValueUpperAlpha, 79, "upper-alpha"},
        {ValueUpperHexadecimal, 80, "upper-hexadecimal"},
        {ValueUpperLatin, 81, "upper-latin"},
        {ValueUpperRoman, 82, "upper-roman"},
    };
    return rows;
}

// A value that has nothing of its own.
class PlainValue : public Value {
public:
    std::string cssText() const override { return "plain"; }
    void setCssText(std::string) override {}
    unsigned short cssValueType() const override { return 7; }
};

// A decimal comma and a dot between the thousands, until the end of the scope.
struct GermanNumbers {
    GermanNumbers() : old(std::setlocale(LC_ALL, nullptr)), found(std::setlocale(LC_ALL, "de_DE.utf8")) {}
    ~GermanNumbers() { std::setlocale(LC_ALL, old.c_str()); }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

    const std::string old;
    const bool found;
};

void expectNumbersWithADecimalPoint() {
    EXPECT_EQ(make(1.5f, CSS_EMS)->cssText(), "1.5em");
    EXPECT_EQ(textOfNumber(123456), "123456");
    EXPECT_EQ(textOfNumber(1234567), "1.23457e+06");
    const Primitive parsed = PrimitiveValue::ParseNumFromString("1.75px");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->floatValue(), 1.75f);
    EXPECT_EQ(parsed->cssText(), "1.75px");
    EXPECT_FALSE(Primitive(PrimitiveValue::ParseNumFromString("1,75px")));
    EXPECT_FALSE(Primitive(PrimitiveValue::ParseNumFromString("1,75")));
}

}  // namespace

TEST(ValueID, TheNumbersOfKindsAreFixed) {
    EXPECT_EQ(ValueInvalid, 0);
    EXPECT_EQ(ValueColorKind, 28);
    EXPECT_EQ(ValueCounterKind, 29);
    EXPECT_EQ(ValueFamilyNameKind, 30);
    EXPECT_EQ(ValueGenericFamilyKind, 31);
    EXPECT_EQ(ValueLengthKind, 32);
    EXPECT_EQ(ValueNumberKind, 33);
    EXPECT_EQ(ValuePercentageKind, 34);
    EXPECT_EQ(ValueStringKind, 35);
    static_assert(std::is_same_v<std::underlying_type_t<ValueID>, int32_t>);
}

TEST(ValueID, TheNumbersOfKeywordsAreFixed) {
    for (const KeywordRow& keyword : keywords()) EXPECT_EQ(keyword.id, keyword.number) << keyword.text;
}

TEST(UnitType, TheNumbersAreFixed) {
    EXPECT_THAT(
        (std::vector<int>{CSS_UNKNOWN,   CSS_NUMBER, CSS_PERCENTAGE, CSS_EMS,   CSS_EXS,  CSS_PX,      CSS_CM,   CSS_MM,      CSS_IN,
                          CSS_PT,        CSS_PC,     CSS_DEG,        CSS_RAD,   CSS_GRAD, CSS_MS,      CSS_S,    CSS_HZ,      CSS_KHZ,
                          CSS_DIMENSION, CSS_STRING, CSS_URI,        CSS_IDENT, CSS_ATTR, CSS_COUNTER, CSS_RECT, CSS_RGBCOLOR}),
        testing::ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25));
    EXPECT_EQ(CSS_PRIMITIVE_VALUE, 1);
    EXPECT_EQ(CSS_VALUE_LIST, 2);
}

TEST(Value, IsAbstractAndIsNothingByDefault) {
    static_assert(std::is_abstract_v<Value>);
    static_assert(std::is_base_of_v<SharedObject, Value>);
    const PlainValue value;
    EXPECT_FALSE(value.isInheritedValue());
    EXPECT_FALSE(value.isPrimitiveValue());
    EXPECT_FALSE(value.isValueList());
    EXPECT_FALSE(value.isCustomValue());
}

TEST(PrimitiveValue, KnowsWhatItIs) {
    const PrimitiveValue primitive;
    const Value& value = primitive;
    EXPECT_EQ(value.cssValueType(), 1);
    EXPECT_FALSE(value.isInheritedValue());
    EXPECT_TRUE(value.isPrimitiveValue());
    EXPECT_FALSE(value.isValueList());
    EXPECT_FALSE(value.isCustomValue());
}

TEST(PrimitiveValue, TheKeywordInheritIsAKeywordLikeAnyOther) {
    const PrimitiveValue value(ValueInherit);
    EXPECT_EQ(value.cssValueType(), 1);
    EXPECT_FALSE(value.isInheritedValue());
    EXPECT_EQ(value.cssText(), "inherit");
}

// Construction.

TEST(PrimitiveValue, ANewValueHasCode0AndNoPayload) {
    const PrimitiveValue value;
    EXPECT_EQ(value.refCount, 0);
    EXPECT_EQ(value.primitiveType, 0);
    EXPECT_EQ(value.floatValue(), 0);
    EXPECT_EQ(value.identValue(), 0);
    EXPECT_EQ(value.stringValue(), "");
    EXPECT_EQ(value.colorValue().rgbaValue, 0u);
    EXPECT_FALSE(value.counterValue());
}

TEST(PrimitiveValue, IsMadeOfAKeyword) {
    const PrimitiveValue value(ValueBold);
    EXPECT_EQ(value.refCount, 0);
    EXPECT_EQ(value.primitiveType, 21);
    EXPECT_EQ(value.identValue(), 39);
}

TEST(PrimitiveValue, IsMadeOfANumberWithAnyCode) {
    for (const unsigned short code : Codes{0, 1, 5, 18, 19, 21, 23, 25, 26, 65535}) {
        SCOPED_TRACE(code);
        const PrimitiveValue value(-2.5f, code);
        EXPECT_EQ(value.refCount, 0);
        EXPECT_EQ(value.primitiveType, code);
        EXPECT_EQ(value.floatValue(), -2.5f);
    }
}

TEST(PrimitiveValue, IsMadeOfATextWithAnyCode) {
    for (const unsigned short code : Codes{0, 1, 5, 18, 19, 21, 23, 25, 26, 65535}) {
        SCOPED_TRACE(code);
        const PrimitiveValue value("a text that is too long for the string itself"s, code);
        EXPECT_EQ(value.refCount, 0);
        EXPECT_EQ(value.primitiveType, code);
        EXPECT_EQ(value.stringValue(), "a text that is too long for the string itself");
    }
}

TEST(PrimitiveValue, ATextIsACopy) {
    std::string text = "a text that is too long for the string itself";
    const PrimitiveValue value(text, CSS_STRING);
    text.assign(text.size(), 'x');
    EXPECT_EQ(value.cssText(), "a text that is too long for the string itself");
}

TEST(PrimitiveValue, IsMadeOfACounterAndCountsIt) {
    const SharedPtr<Counter> counter(new Counter("page", "decimal", ""));
    {
        const PrimitiveValue value(counter.Get());
        EXPECT_EQ(value.refCount, 0);
        EXPECT_EQ(value.primitiveType, 23);
        EXPECT_EQ(counter->refCount, 2);
        EXPECT_EQ(value.counterValue().Get(), counter.Get());
    }
    EXPECT_EQ(counter->refCount, 1);
}

TEST(PrimitiveValue, MayHoldTheOnlyCountOfItsCounter) {  // what is left is a leak
    const PrimitiveValue value(new Counter("a name that is too long for the string itself", "decimal", "."));
    EXPECT_EQ(value.counterValue()->separator, ".");
}

TEST(PrimitiveValue, IsMadeOfNoCounter) {
    const PrimitiveValue value(static_cast<Counter*>(nullptr));
    EXPECT_EQ(value.primitiveType, 23);
    EXPECT_FALSE(value.counterValue());
    EXPECT_EQ(value.cssText(), "");
}

TEST(PrimitiveValue, IsMadeOfAColourAndKeepsItsWord) {
    const PrimitiveValue value(CSSColor(1, 0, 0, 0.5f));
    EXPECT_EQ(value.refCount, 0);
    EXPECT_EQ(value.primitiveType, 25);
    EXPECT_EQ(value.colorValue().rgbaValue, 0x7FFF0000u);
    EXPECT_EQ(PrimitiveValue(CSSColor()).colorValue().rgbaValue, 0u);
}

TEST(PrimitiveValue, IsNotCopied) {
    static_assert(!std::is_copy_constructible_v<PrimitiveValue>);
    static_assert(!std::is_copy_assignable_v<PrimitiveValue>);
    static_assert(std::is_same_v<decltype(PrimitiveValue::primitiveType), unsigned short>);
}

// Text.

TEST(PrimitiveValue, EachCodeHasItsText) {
    struct Row {
        int code;
        Primitive value;
        std::string text;
    };
    const std::vector<Row> rows{
        {0, make("a 'b'"s, 0), "a 'b'"},
        {1, make(1.5f, 1), "1.5"},
        {2, make(1.5f, 2), "1.5%"},
        {3, make(1.5f, 3), "1.5em"},
        {4, make(1.5f, 4), "1.5ex"},
        {5, make(1.5f, 5), "1.5px"},
        {6, make(1.5f, 6), "1.5cm"},
        {7, make(1.5f, 7), "1.5mm"},
        {8, make(1.5f, 8), "1.5in"},
        {9, make(1.5f, 9), "1.5pt"},
        {10, make(1.5f, 10), "1.5pc"},
        {11, make(1.5f, 11), "1.5deg"},
        {12, make(1.5f, 12), "1.5rad"},
        {13, make(1.5f, 13), "1.5grad"},
        {14, make(1.5f, 14), "1.5ms"},
        {15, make(1.5f, 15), "1.5s"},
        {16, make(1.5f, 16), "1.5hz"},
        {17, make(1.5f, 17), "1.5khz"},
        {18, make(1.5f, 18), ""},
        {19, make("a 'b'"s, 19), "a 'b'"},
        {20, make("a 'b'"s, 20), "url(a 'b')"},
        {21, make(ValueSmallCaps), "small-caps"},
        {22, make("a 'b'"s, 22), "a 'b'"},
        {23, make(new Counter("page", "decimal", ".")), ""},
        {24, make(1.5f, 24), ""},
        {25, make(CSSColor(0x12abcd)), "#12abcd"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(row.value->primitiveType, row.code);
        EXPECT_EQ(row.value->cssText(), row.text);
    }
}

TEST(PrimitiveValue, ACodeAbove25ReadsAsTheEmptyText) {
    for (const unsigned short code : Codes{26, 27, 32, 255, 256 + 5, 65535}) {
        SCOPED_TRACE(code);
        EXPECT_EQ(PrimitiveValue(1.5f, code).cssText(), "");
        EXPECT_EQ(PrimitiveValue("text"s, code).cssText(), "");
    }
}

TEST(PrimitiveValue, NumbersHaveUpToSixDigitsAndNoMoreThanTheyNeed) {
    const float infinity = std::numeric_limits<float>::infinity();
    const std::vector<std::pair<float, std::string>> rows{
        {12.0f, "12"},
        {1.5f, "1.5"},
        {1000000.0f, "1e+06"},
        {0.0f, "0"},
        {-0.0f, "-0"},
        {-1.0f, "-1"},
        {0.1f, "0.1"},
        {0.333333343f, "0.333333"},
        {28.34645652770996f, "28.3465"},
        {100000.0f, "100000"},
        {123456.0f, "123456"},
        {999999.0f, "999999"},
        {1234567.0f, "1.23457e+06"},
        {0.0001f, "0.0001"},
        {0.00001f, "1e-05"},
        {-0.000012345f, "-1.2345e-05"},
        {16777216.0f, "1.67772e+07"},
        {std::numeric_limits<float>::max(), "3.40282e+38"},
        {std::numeric_limits<float>::denorm_min(), "1.4013e-45"},
        {infinity, "inf"},
        {-infinity, "-inf"},
        {std::numeric_limits<float>::quiet_NaN(), "nan"},
    };
    for (const auto& [number, text] : rows) EXPECT_EQ(textOfNumber(number), text);
}

TEST(PrimitiveValue, MinusZeroKeepsItsSign) { EXPECT_EQ(PrimitiveValue(-0.0f, CSS_PX).cssText(), "-0px"); }

TEST(PrimitiveValue, NumbersHaveADecimalPointInALocaleWithAComma) {
    const GermanNumbers german;
    if (!german.found) GTEST_SKIP() << "there is no de_DE.utf8";
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    expectNumbersWithADecimalPoint();
}

TEST(PrimitiveValue, NumbersHaveADecimalPointWhereStreamsWriteAComma) {
    const GermanNumbers restoresTheLocale;
    if (!restoresTheLocale.found) GTEST_SKIP() << "there is no de_DE.utf8";
    const std::locale old = std::locale::global(std::locale("de_DE.utf8"));
    expectNumbersWithADecimalPoint();
    std::locale::global(old);
}

TEST(PrimitiveValue, TextsAreWrittenAsTheyStand) {
    for (const std::string& text : {""s, "\"quoted\""s, "a\\"s, ")"s, "\0\xff\n"s, std::string(100'000, 'a')}) {
        EXPECT_EQ(PrimitiveValue(text, CSS_UNKNOWN).cssText(), text);
        EXPECT_EQ(PrimitiveValue(text, CSS_STRING).cssText(), text);
        EXPECT_EQ(PrimitiveValue(text, CSS_ATTR).cssText(), text);
        EXPECT_EQ(PrimitiveValue(text, CSS_URI).cssText(), "url(" + text + ")");
    }
}

TEST(PrimitiveValue, AColourReadsAsItsSixDigitsWhateverItsAlpha) {
    EXPECT_EQ(PrimitiveValue(CSSColor(1, 0, 0, 0.5f)).cssText(), "#ff0000");
    EXPECT_EQ(PrimitiveValue(CSSColor()).cssText(), "#000000");
}

TEST(PrimitiveValue, AnIdentifierThatIsNoKeywordReadsAsTheEmptyText) {
    for (int id = 0; id <= 35; ++id) EXPECT_EQ(PrimitiveValue(static_cast<ValueID>(id)).cssText(), "") << id;
    for (const int id : {83, 84, 1000, -1, -36}) EXPECT_EQ(PrimitiveValue(static_cast<ValueID>(id)).cssText(), "") << id;
}

TEST(PrimitiveValue, AValueWithoutTextAtCode0ReadsAsTheEmptyText) {
    EXPECT_EQ(PrimitiveValue().cssText(), "");
    EXPECT_EQ(PrimitiveValue(1.5f, CSS_UNKNOWN).cssText(), "");
    PrimitiveValue refused("text"s, CSS_STRING);
    refused.setStringValue(CSS_PX, "text");
    EXPECT_EQ(refused.cssText(), "");
    PrimitiveValue released(ValueBold);
    released.releaseValue();
    EXPECT_EQ(released.cssText(), "");
}

TEST(PrimitiveValue, ANumberWithTheCodeOfSomethingElseHasNothingOfIt) {
    for (const unsigned short code : Codes{0, 19, 20, 21, 22, 23, 24, 25}) {
        SCOPED_TRACE(code);
        PrimitiveValue value(1.5f, code);
        EXPECT_EQ(value.identValue(), 0);
        EXPECT_EQ(value.stringValue(), "");
        EXPECT_EQ(value.colorValue().rgbaValue, 0u);
        EXPECT_FALSE(value.counterValue());
        EXPECT_EQ(value.cssText(), code == 20 ? "url()" : code == 25 ? "#000000" : "");
        value.releaseValue();
        EXPECT_EQ(value.primitiveType, 0);
    }
}

TEST(PrimitiveValue, ATextWithTheCodeOfSomethingElseHasNothingOfIt) {
    PrimitiveValue number("7"s, CSS_PX);
    EXPECT_EQ(number.floatValue(), 0);
    EXPECT_EQ(number.cssText(), "0px");
    PrimitiveValue keyword("bold"s, CSS_IDENT);
    EXPECT_EQ(keyword.identValue(), 0);
    EXPECT_EQ(keyword.cssText(), "");
    PrimitiveValue counter("page"s, CSS_COUNTER);
    EXPECT_FALSE(counter.counterValue());
    EXPECT_EQ(counter.cssText(), "");
    PrimitiveValue color("red"s, CSS_RGBCOLOR);
    EXPECT_EQ(color.colorValue().rgbaValue, 0u);
    EXPECT_EQ(color.cssText(), "#000000");
    for (PrimitiveValue* value : {&number, &keyword, &counter, &color}) {
        value->releaseValue();
        EXPECT_EQ(value->primitiveType, 0);
        EXPECT_EQ(value->stringValue(), "");
    }
}

// Changes.

TEST(PrimitiveValue, ReleaseDropsThePayload) {
    const SharedPtr<Counter> counter(new Counter("page", "decimal", ""));
    const std::vector<Primitive> values{
        {new PrimitiveValue},   make(1.5f, CSS_PX),      make("a text that is too long for the string itself"s, CSS_STRING),
        make("text"s, CSS_URI), make("text"s, CSS_ATTR), make("text"s, CSS_UNKNOWN),
        make(ValueBold),        make(counter.Get()),     make(static_cast<Counter*>(nullptr)),
        make(CSSColor(0xff)),   make("text"s, 26)};
    EXPECT_EQ(counter->refCount, 2);
    for (const Primitive& value : values) {
        for (int time = 0; time < 2; ++time) {  // the second time there is nothing left
            value->releaseValue();
            EXPECT_EQ(value->primitiveType, 0);
            EXPECT_EQ(value->cssText(), "");
            EXPECT_EQ(value->floatValue(), 0);
            EXPECT_EQ(value->identValue(), 0);
            EXPECT_EQ(value->colorValue().rgbaValue, 0u);
            EXPECT_FALSE(value->counterValue());
        }
    }
    EXPECT_EQ(counter->refCount, 1);
}

TEST(PrimitiveValue, SetFloatValueTakesAnyCode) {
    for (const unsigned short code : Codes{0, 1, 5, 17, 18, 19, 21, 23, 25, 26, 65535}) {
        SCOPED_TRACE(code);
        PrimitiveValue value("a text that is too long for the string itself"s, CSS_STRING);
        value.setFloatValue(code, 2.5f);
        EXPECT_EQ(value.primitiveType, code);
        EXPECT_EQ(value.floatValue(), 2.5f);
        EXPECT_EQ(value.stringValue(), "");
    }
}

TEST(PrimitiveValue, SetFloatValueGivesTheCounterUp) {
    const SharedPtr<Counter> counter(new Counter("page", "decimal", ""));
    PrimitiveValue value(counter.Get());
    value.setFloatValue(CSS_PX, 2);
    EXPECT_EQ(counter->refCount, 1);
    EXPECT_EQ(value.cssText(), "2px");
}

TEST(PrimitiveValue, SetStringValueTakesStringsAddressesAndAttributes) {
    for (const unsigned short code : Codes{19, 20, 22}) {
        SCOPED_TRACE(code);
        PrimitiveValue value(1.5f, CSS_PX);
        value.setStringValue(code, "a \"text\"\0"s);
        EXPECT_EQ(value.primitiveType, code);
        EXPECT_EQ(value.stringValue(), "a \"text\"\0"s);
        value.setStringValue(code, "another");
        EXPECT_EQ(value.stringValue(), "another");
    }
}

TEST(PrimitiveValue, SetStringValueWithAnyOtherCodeLosesTheOldContent) {
    Codes codes{21, 23, 24, 25, 26, 255, 65535};
    for (unsigned short code = 0; code <= 18; ++code) codes.push_back(code);
    const SharedPtr<Counter> counter(new Counter("page", "decimal", ""));
    for (const unsigned short code : codes) {
        SCOPED_TRACE(code);
        const std::vector<Primitive> values{
            make("a text that is too long for the string itself"s, CSS_STRING), make(1.5f, CSS_PX), make(ValueBold), make(counter.Get())};
        for (const Primitive& value : values) {
            value->setStringValue(code, "text");
            EXPECT_EQ(value->primitiveType, 0);
            EXPECT_EQ(value->cssText(), "");
            EXPECT_EQ(value->stringValue(), "");
        }
        EXPECT_EQ(counter->refCount, 1);
    }
}

TEST(PrimitiveValue, SetStringValueWithTheCodeOfPixelsReportsNothing) {
    PrimitiveValue value("text"s, CSS_STRING);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    value.setStringValue(CSS_PX, "12");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(value.primitiveType, 0);
    EXPECT_EQ(value.stringValue(), "");
}

TEST(PrimitiveValue, SetStringValueMayBeGivenItsOwnText) {
    for (const std::string& text : {"short"s, "a text that is too long for the string itself"s}) {
        PrimitiveValue value(text, CSS_STRING);
        value.setStringValue(CSS_URI, value.stringValue());
        EXPECT_EQ(value.cssText(), "url(" + text + ")");
        value.setStringValue(CSS_PX, value.stringValue());
        EXPECT_EQ(value.stringValue(), "");
    }
}

TEST(PrimitiveValue, AChangeIsSeenByEveryHolder) {
    const Primitive first = make(1.5f, CSS_PX);
    const Primitive second = first;
    ValueList list;
    list.append(first.Get());
    first->setFloatValue(CSS_EMS, 2);
    EXPECT_EQ(second->cssText(), "2em");
    EXPECT_EQ(list.cssText(), "2em");
    second->setStringValue(CSS_STRING, "text");
    EXPECT_EQ(first->cssText(), "text");
    EXPECT_EQ(list.cssText(), "text");
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(PrimitiveValue, SetCssTextChangesNothing) {
    PrimitiveValue value(1.5f, CSS_PX);
    value.setCssText("2em");
    EXPECT_EQ(value.primitiveType, 5);
    EXPECT_EQ(value.cssText(), "1.5px");
}

TEST(ValueList, SetCssTextChangesNothing) {
    ValueList list;
    list.append(new PrimitiveValue(ValueBold));
    list.setCssText("2em");
    EXPECT_EQ(list.cssText(), "bold");
}

#else

TEST(PrimitiveValueDeathTest, SetCssTextIsNotSupported) {
    PrimitiveValue value(1.5f, CSS_PX);
    EXPECT_EXIT(
        value.setCssText("1.5px"), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function setCssText, file common/core/css/Value, line [0-9]+\\.\n");
}

TEST(ValueListDeathTest, SetCssTextIsNotSupported) {
    ValueList list;
    EXPECT_EXIT(
        list.setCssText(""), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function setCssText, file common/core/css/Value, line [0-9]+\\.\n");
}

#endif

// Keywords.

TEST(PrimitiveValue, EachKeywordHasItsIdentifierAndItsText) {
    for (const auto& [id, number, text] : keywords()) {
        SCOPED_TRACE(text);
        EXPECT_EQ(PrimitiveValue::IdentForString(text), id);
        EXPECT_EQ(PrimitiveValue(id).cssText(), text);
        const Primitive parsed = PrimitiveValue::ParseIdentFromString(text);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(parsed->primitiveType, 21);
        EXPECT_EQ(parsed->identValue(), id);
    }
    EXPECT_EQ(keywords().size(), 47u);
}

TEST(PrimitiveValue, WhatDiffersFromAKeywordInOneCharacterIsNone) {
    for (const auto& [id, number, text] : keywords()) {
        SCOPED_TRACE(text);
        std::string capital = text, last = text;
        capital[0] = static_cast<char>(capital[0] - 'a' + 'A');
        last.back() = '_';
        for (const std::string& other :
             {capital, last, text + "x", text + " ", " " + text, text + "\0"s, text.substr(1), text.substr(0, text.size() - 1)})
            EXPECT_EQ(PrimitiveValue::IdentForString(other), 0) << testing::PrintToString(other);
    }
}

TEST(PrimitiveValue, KeywordsAreInLowerCase) {
    EXPECT_EQ(PrimitiveValue::IdentForString("Bold"), 0);
    EXPECT_EQ(PrimitiveValue::IdentForString("BOLD"), 0);
    EXPECT_EQ(PrimitiveValue::ParseIdentFromString("Bold"), nullptr);
}

TEST(PrimitiveValue, ATextThatIsTooShortOrTooLongIsNoKeyword) {
    for (const std::string& text :
         {""s, "t"s, "to"s, "lower-hexadecimals"s, std::string(18, 'a'), std::string(1000, 'a'), std::string(1 << 20, '\0')}) {
        std::string exact = text;
        exact.shrink_to_fit();
        EXPECT_EQ(PrimitiveValue::IdentForString(exact), 0) << text.size();
        EXPECT_EQ(PrimitiveValue::ParseIdentFromString(exact), nullptr);
    }
}

TEST(PrimitiveValue, ANulByteIsNoEndOfAKeyword) {
    for (const std::string& text : {"auto\0"s, "auto\0xyz"s, "\0auto"s, "au\0o"s, "box\0\0"s, "\0\0\0"s})
        EXPECT_EQ(PrimitiveValue::IdentForString(text), 0) << testing::PrintToString(text);
}

TEST(PrimitiveValue, AnyOtherTextIsNoKeyword) {
    for (const char* text :
         {"abc", "red", "bolder", "abcdefghijklmnopq", "lower-hexadecimul", "close_quote", "\xff\xff\xff\xff", "auto auto"}) {
        EXPECT_EQ(PrimitiveValue::IdentForString(text), 0) << text;
        EXPECT_EQ(PrimitiveValue::ParseIdentFromString(text), nullptr) << text;
    }
}

TEST(PrimitiveValue, AParsedKeywordBelongsToNobodyYet) {
    const std::unique_ptr<PrimitiveValue> value(PrimitiveValue::ParseIdentFromString("none"));
    ASSERT_TRUE(value);
    EXPECT_EQ(value->refCount, 0);
}

TEST(PrimitiveValue, OnlyAKeywordHasAnIdentifier) {
    EXPECT_EQ(PrimitiveValue(1.5f, CSS_NUMBER).identValue(), 0);
    EXPECT_EQ(PrimitiveValue(std::bit_cast<float>(39), CSS_NUMBER).identValue(), 0);
    EXPECT_EQ(PrimitiveValue("bold"s, CSS_STRING).identValue(), 0);
    EXPECT_EQ(PrimitiveValue(CSSColor(39)).identValue(), 0);
    EXPECT_EQ(PrimitiveValue(static_cast<ValueID>(28)).identValue(), 28);
}

TEST(KeywordTable, IsFoundByBytesWithoutAnEnd) {  // the bytes are all that the memory has
    for (const auto& [id, number, text] : keywords()) {
        const std::vector<char> bytes(text.begin(), text.end());
        const Keyword* const row = findKeyword(bytes.data(), bytes.size());
        ASSERT_TRUE(row) << text;
        EXPECT_EQ(row->id, id);
        EXPECT_EQ(row->text, text);
        EXPECT_EQ(findKeyword(bytes.data(), bytes.size() - 1), nullptr) << text;
    }
}

TEST(KeywordTable, IsNotReadBehindTheText) {
    for (size_t length = 0; length <= 40; ++length) {
        for (const char byte : {'a', '-', '\0', '\xff'}) {
            const std::vector<char> bytes(length, byte);
            EXPECT_EQ(findKeyword(bytes.data(), length), nullptr) << length;
        }
    }
    EXPECT_EQ(findKeyword(nullptr, 0), nullptr);
}

TEST(KeywordTable, HasTheKeywordsAndNothingElse) {
    std::vector<std::pair<int, std::string>> rows, expected;
    for (const Keyword& row : keywordRows())
        if (row.id != ValueInvalid) rows.emplace_back(row.id, row.text);
    for (const auto& [id, number, text] : keywords()) expected.emplace_back(id, text);
    EXPECT_THAT(rows, testing::UnorderedElementsAreArray(expected));
}

// Numbers from text.

TEST(PrimitiveValue, NumbersAreReadWithTheirUnits) {
    struct Row {
        std::string text;
        float number;
        int code;
    };
    const std::vector<Row> rows{
        {"0", 0, 1},
        {"12", 12, 1},
        {"12%", 12, 2},
        {"1.5em", 1.5f, 3},
        {"12ex", 12, 4},
        {"0px", 0, 5},
        {"12px", 12, 5},
        {"12cm", 12, 6},
        {"12mm", 12, 7},
        {"12in", 12, 8},
        {"12pt", 12, 9},
        {"12pc", 12, 10},
        {"-1.5%", -1.5f, 2},
        {"-12", -12, 1},
        {".5", .5f, 1},
        {"-.5em", -.5f, 3},
        {"5.", 5, 1},
        {"5.px", 5, 5},
        {"0012.50pt", 12.5f, 9},
        {"1234567890px", 1234567890.0f, 5},
        // All behind the two letters is ignored.
        {"12ptabc", 12, 9},
        {"12emx", 12, 3},
        {"12pxpt", 12, 5},
        {"12px ", 12, 5},
        {"12px\0"s, 12, 5},
        // A number ends where it stops being one.
        {"1.2.3", 1.2f, 1},
        {"1-2", 1, 1},
        {"1-2px", 1, 5},
        {"1.2.3em", 1.2f, 3},
        {"5-", 5, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        const Primitive value = PrimitiveValue::ParseNumFromString(row.text);
        if (!value) {
            ADD_FAILURE() << "no value";
            continue;
        }
        EXPECT_EQ(value->floatValue(), row.number);
        EXPECT_EQ(value->primitiveType, row.code);
    }
}

TEST(PrimitiveValue, WhatHasNoNumberInFrontIsNone) {
    for (const char* text : {"",    "-",   ".",  "px",  ".px", "-px", "%",  "-%",  "-.", "..",    "--3", "--3px", "-.-5",
                             "..5", ".-5", "in", "-in", "inf", "nan", "em", "rem", " 1", "\t1px", "+5",  "+5px"})
        EXPECT_EQ(PrimitiveValue::ParseNumFromString(text), nullptr) << text;
    EXPECT_EQ(PrimitiveValue::ParseNumFromString("\0"s), nullptr);
    EXPECT_EQ(PrimitiveValue::ParseNumFromString("\0px"s), nullptr);
    EXPECT_EQ(PrimitiveValue::ParseNumFromString(std::string(1, '\0') + "12px"), nullptr);
}

TEST(PrimitiveValue, OtherUnitsAreNone) {
    for (const std::string& text :
         {"12 px"s, "12 "s,   "10e"s,  "1e3"s,    "1e3px"s, "1e5"s,    "12Q"s,    "12PX"s,  "12Px"s, "12pX"s, "12EM"s,  "12p"s, "1deg"s,
          "1rad"s,  "1grad"s, "1ms"s,  "1s"s,     "1hz"s,   "1khz"s,   "1%%"s,    "1%a"s,   "1% "s,  "1+"s,   "1,5px"s, "1,5"s, "0x10"s,
          "1rem"s,  "1vw"s,   "1e-3"s, "1\\70x"s, "1\0"s,   "12\0px"s, "12p\0x"s, "1\xff"s, "1e"s,   "1x"s,   "1m"s})
        EXPECT_EQ(PrimitiveValue::ParseNumFromString(text), nullptr) << testing::PrintToString(text);
}

TEST(PrimitiveValue, AParsedNumberBelongsToNobodyYet) {
    const std::unique_ptr<PrimitiveValue> value(PrimitiveValue::ParseNumFromString("1px"));
    ASSERT_TRUE(value);
    EXPECT_EQ(value->refCount, 0);
}

TEST(PrimitiveValue, NumbersAreReadInSinglePrecision) {
    const std::vector<std::pair<std::string, uint32_t>> rows{
        {"0.1", 0x3DCCCCCD},
        {"16777217", 0x4B800000},
        // Just below the middle of two floats, and by less than a double can tell.
        {"1.00000017881393432617187499", 0x3F800001},
        {"1.00000017881393432617187501", 0x3F800002},
        {"340282346638528859811704183484516925440", 0x7F7FFFFF},
        {"-0", 0x80000000},
        {"-0.0px", 0x80000000},
    };
    for (const auto& [text, expected] : rows) {
        SCOPED_TRACE(text);
        const Primitive value = PrimitiveValue::ParseNumFromString(text);
        ASSERT_TRUE(value);
        EXPECT_EQ(bits(value->floatValue()), expected);
    }
}

TEST(PrimitiveValue, ANumberThatIsTooLargeIsInfinite) {
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString(std::string(50, '9') + "px"))->cssText(), "infpx");
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString("-" + std::string(50, '9') + "px"))->cssText(), "-infpx");
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString(std::string(100'000, '9')))->cssText(), "inf");
}

TEST(PrimitiveValue, ANumberThatIsTooSmallIsZero) {
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString("0." + std::string(60, '0') + "1px"))->cssText(), "0px");
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString("-." + std::string(60, '0') + "1px"))->cssText(), "-0px");
}

// Lengths.

TEST(PrimitiveValue, EachLengthHasItsFactor) {
    struct Row {
        int code;
        uint32_t one, twoAndAHalf;
    };
    const std::vector<Row> rows{
        {5, 0x3F800000, 0x40200000}, {6, 0x41E2C58B, 0x428DBB77}, {7, 0x40356AD6, 0x40E2C58C},
        {8, 0x42900000, 0x43340000}, {9, 0x3F800000, 0x40200000}, {10, 0x41400000, 0x41F00000},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        const _WQCSSLength one = PrimitiveValue(1.0f, static_cast<unsigned short>(row.code)).lengthValueForStyle(nullptr);
        EXPECT_EQ(one.type, 1);
        EXPECT_EQ(bits(one.value), row.one);
        const _WQCSSLength more = PrimitiveValue(2.5f, static_cast<unsigned short>(row.code)).lengthValueForStyle(nullptr);
        EXPECT_EQ(more.type, 1);
        EXPECT_EQ(bits(more.value), row.twoAndAHalf);
    }
}

TEST(PrimitiveValue, LengthsAreMultipliedInSinglePrecision) {  // a factor in double precision would round them the other way
    EXPECT_EQ(bits(PrimitiveValue(1.9f, CSS_CM).lengthValueForStyle(nullptr).value), 0x42576EDDu);
    EXPECT_EQ(bits(PrimitiveValue(6.9f, CSS_CM).lengthValueForStyle(nullptr).value), 0x4343972Eu);
    EXPECT_EQ(bits(PrimitiveValue(0.3f, CSS_MM).lengthValueForStyle(nullptr).value), 0x3F59B368u);
    EXPECT_EQ(bits(PrimitiveValue(1.9f, CSS_MM).lengthValueForStyle(nullptr).value), 0x40AC58B2u);
}

TEST(PrimitiveValue, APercentageIsAPercentage) {
    const _WQCSSLength length = PrimitiveValue(-12.1f, CSS_PERCENTAGE).lengthValueForStyle(nullptr);
    EXPECT_EQ(length.type, 3);
    EXPECT_EQ(length.value, -12.1f);
}

namespace {

const Codes& codesWithoutALength() {
    static const Codes codes{0, 1, 3, 4, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 65535};
    return codes;
}

}  // namespace

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(PrimitiveValue, AnyOtherCodeIsNoLength) {
    for (const unsigned short code : codesWithoutALength())
        EXPECT_EQ(PrimitiveValue(1.5f, code).lengthValueForStyle(nullptr).type, WQCSSLengthTypeNone) << code;
    EXPECT_EQ(PrimitiveValue(ValueAuto).lengthValueForStyle(nullptr).type, WQCSSLengthTypeNone);
    EXPECT_EQ(PrimitiveValue("12px"s, CSS_STRING).lengthValueForStyle(nullptr).type, WQCSSLengthTypeNone);
    EXPECT_EQ(Primitive(PrimitiveValue::ParseNumFromString("1.5em"))->lengthValueForStyle(nullptr).type, WQCSSLengthTypeNone);
}

#else

TEST(PrimitiveValueDeathTest, AnyOtherCodeIsNoLength) {
    for (const unsigned short code : codesWithoutALength()) {
        SCOPED_TRACE(code);
        EXPECT_EXIT(
            PrimitiveValue(1.5f, code).lengthValueForStyle(nullptr), testing::KilledBySignal(SIGABRT),
            "^Assertion failed: \\(0\\), function lengthValueForStyle, file common/core/css/Value, line [0-9]+\\.\n");
    }
}

TEST(PrimitiveValueDeathTest, AParsedFontRelativeLengthIsForTheCaller) {
    const Primitive value = PrimitiveValue::ParseNumFromString("1.5em");
    ASSERT_EQ(value->primitiveType, 3);
    EXPECT_EXIT(value->lengthValueForStyle(nullptr), testing::KilledBySignal(SIGABRT), "function lengthValueForStyle");
}

#endif

TEST(ValueForLength, EachTypeHasItsValue) {
    const std::unique_ptr<PrimitiveValue> points(valueForLength({1.5f, 1})), percent(valueForLength({1.5f, 3})),
        automatic(valueForLength({1.5f, 4}));
    ASSERT_TRUE(points && percent && automatic);
    EXPECT_EQ(points->refCount, 0);
    EXPECT_EQ(points->primitiveType, 5);
    EXPECT_EQ(points->floatValue(), 1.5f);
    EXPECT_EQ(percent->refCount, 0);
    EXPECT_EQ(percent->primitiveType, 2);
    EXPECT_EQ(percent->floatValue(), 1.5f);
    EXPECT_EQ(automatic->refCount, 0);
    EXPECT_EQ(automatic->primitiveType, 21);
    EXPECT_EQ(automatic->identValue(), 37);
}

TEST(ValueForLength, AnyOtherTypeHasNone) {
    for (const int32_t type : {0, 2, 5, -1, 1000}) EXPECT_EQ(valueForLength({1.5f, type}), nullptr) << type;
}

TEST(ValueForLength, ReadsBackInPixels) {
    const auto readBack = [](const std::string& text) {
        return Primitive(valueForLength(Primitive(PrimitiveValue::ParseNumFromString(text))->lengthValueForStyle(nullptr)))->cssText();
    };
    EXPECT_EQ(readBack("2pc"), "24px");
    EXPECT_EQ(readBack("1pt"), "1px");
    EXPECT_EQ(readBack("1in"), "72px");
    EXPECT_EQ(readBack("1cm"), "28.3465px");
    EXPECT_EQ(readBack("50%"), "50%");
}

// Lists.

TEST(ValueList, KnowsWhatItIs) {
    const ValueList list;
    const Value& value = list;
    EXPECT_EQ(value.refCount, 0);
    EXPECT_EQ(value.cssValueType(), 2);
    EXPECT_FALSE(value.isInheritedValue());
    EXPECT_FALSE(value.isPrimitiveValue());
    EXPECT_TRUE(value.isValueList());
    EXPECT_FALSE(value.isCustomValue());
}

TEST(ValueList, HoldsACountOfEachElement) {
    const Primitive value = make(1.5f, CSS_PX);
    {
        ValueList list;
        list.append(value.Get());
        EXPECT_EQ(value->refCount, 2);
        list.append(value.Get());
        EXPECT_EQ(value->refCount, 3);
        EXPECT_EQ(list.values.size(), 2u);
        EXPECT_EQ(list.values[1].Get(), value.Get());
    }
    EXPECT_EQ(value->refCount, 1);
}

TEST(ValueList, MayHoldTheOnlyCountOfAnElement) {  // what is left is a leak
    ValueList list;
    list.append(new PrimitiveValue("a text that is too long for the string itself"s, CSS_STRING));
    EXPECT_EQ(list.values[0]->refCount, 1);
}

TEST(ValueList, TheElementsAreWrittenInTheirOrder) {
    ValueList list;
    list.append(new PrimitiveValue("Times New Roman"s, CSS_STRING));
    list.append(new PrimitiveValue("serif"s, CSS_STRING));
    list.append(new PrimitiveValue(2, CSS_EMS));
    EXPECT_EQ(list.cssText(), "Times New Roman, serif, 2em");
}

TEST(ValueList, OneElementIsWrittenWithoutSeparatorAndNoneAsTheEmptyText) {
    ValueList list;
    EXPECT_EQ(list.cssText(), "");
    list.append(new PrimitiveValue(ValueBold));
    EXPECT_EQ(list.cssText(), "bold");
}

TEST(ValueList, ANullElementWritesNothingBetweenItsSeparators) {
    ValueList list;
    list.append(nullptr);
    ASSERT_EQ(list.values.size(), 1u);
    EXPECT_FALSE(list.values[0]);
    EXPECT_EQ(list.cssText(), "");
    list.append(new PrimitiveValue(ValueBold));
    EXPECT_EQ(list.cssText(), ", bold");
    list.append(nullptr);
    EXPECT_EQ(list.cssText(), ", bold, ");
    list.append(nullptr);
    EXPECT_EQ(list.cssText(), ", bold, , ");
}

TEST(ValueList, AnEmptyElementKeepsItsSeparators) {
    ValueList list;
    list.append(new PrimitiveValue);
    list.append(new ValueList);
    list.append(new PrimitiveValue(new Counter("page", "decimal", "")));
    EXPECT_EQ(list.cssText(), ", , ");
}

TEST(ValueList, AListInAListIsWrittenLikeItsElements) {
    auto* const inner = new ValueList;
    inner->append(new PrimitiveValue(ValueLeft));
    inner->append(new PrimitiveValue(ValueRight));
    ValueList list;
    list.append(inner);
    list.append(new PlainValue);
    EXPECT_EQ(list.cssText(), "left, right, plain");
}

TEST(ValueList, AMillionElementsAreWrittenAndDestroyed) {
    const Primitive value = make(ValueTop);
    {
        ValueList list;
        for (int i = 0; i < 500'000; ++i) {
            list.append(value.Get());
            list.append(new PrimitiveValue(ValueLeft));
        }
        EXPECT_EQ(value->refCount, 500'001);
        const std::string text = list.cssText();
        EXPECT_EQ(text.size(), 500'000u * 3 + 500'000u * 4 + 999'999u * 2);
        EXPECT_EQ(text.substr(0, 16), "top, left, top, ");
        EXPECT_EQ(text.substr(text.size() - 9), "top, left");
    }
    EXPECT_EQ(value->refCount, 1);
}
