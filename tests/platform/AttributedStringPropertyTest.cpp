// Texts with attributes against models that are slow and plain: a dictionary for each character, a row
// of lists for each paragraph.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <map>

#include "platform/NSAttributeNames.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "platform/WQXMLException.h"

namespace {

uint64_t below(uint64_t limit) { return *rc::gen::inRange<uint64_t>(0, limit); }

constexpr const char16_t* names[] = {u"a", u"b", u"c"};

// ---- Edits

using Attributes = std::map<NSString, double>;

struct Character {
    char16_t unit;
    Attributes attributes;
    bool operator==(const Character&) const = default;
};
using Model = std::vector<Character>;

Attributes anyAttributes() {
    Attributes attributes;
    for (const char16_t* name : names)
        if (const uint64_t value = below(3)) attributes[name] = static_cast<double>(value);
    return attributes;
}

std::u16string anyUnits() {
    std::u16string units(below(4), u'x');
    for (char16_t& unit : units) unit = u"xy\n\xD834\xDD1E"[below(5)];
    return units;
}

Model modelOf(const std::u16string& units, const Attributes& attributes) {
    Model model;
    for (const char16_t unit : units) model.push_back({unit, attributes});
    return model;
}

Ref<NSDictionary> dictionaryOf(const Attributes& attributes) {
    auto made = NSDictionary::dictionary();
    for (const auto& [name, value] : attributes) made->setObject_forKey(value, name);
    return made;
}

Attributes attributesOf(const Ref<NSDictionary>& dictionary) {
    Attributes attributes;
    for (const auto& [name, value] : *dictionary.get()) attributes[name] = value.number();
    return attributes;
}

Ref<NSMutableAttributedString> textOf(const Model& model) {
    auto text = NSMutableAttributedString::newWithString(u"");
    for (const auto& [unit, attributes] : model)
        text->appendAttributedString(NSAttributedString::newWithString_attributes(std::u16string(1, unit), dictionaryOf(attributes)));
    return text;
}

// The longest range around an index, within a limit, whose characters are all as the one there.
template <class IsSame> NSRange longestRange(const Model& model, uint64_t index, NSRange limit, IsSame isSame) {
    uint64_t start = index, end = index + 1;
    while (start > limit.location && isSame(model[start - 1], model[index])) --start;
    while (end < limit.location + limit.length && isSame(model[end], model[index])) ++end;
    return {start, end - start};
}

class World {
public:
    void step() {
        const uint64_t location = below(model.size() + 1), length = below(model.size() - location + 1);
        const NSRange range{location, length};
        const auto first = model.begin() + static_cast<long>(location), last = first + static_cast<long>(length);
        const NSString name = names[below(3)];
        switch (below(6)) {
            case 0: {
                const auto units = anyUnits();
                const auto attributes = anyAttributes();
                text->appendAttributedString(NSAttributedString::newWithString_attributes(units, dictionaryOf(attributes)));
                for (auto& character : modelOf(units, attributes)) model.push_back(character);
                break;
            }
            case 1: replace(range, anyUnits()); break;
            case 2:
                text->setAttributes_range(dictionaryOf(anyAttributes()), range);
                if (length > 0) {
                    const auto attributes = attributesOf(text->attributesAtIndex_effectiveRange(location, nullptr));
                    std::for_each(first, last, [&](Character& character) { character.attributes = attributes; });
                }
                break;
            case 3: {
                const auto value = static_cast<double>(1 + below(2));
                text->addAttribute_value_range(name, value, range);
                std::for_each(first, last, [&](Character& character) { character.attributes[name] = value; });
                break;
            }
            case 4:
                text->removeAttribute_range(name, range);
                std::for_each(first, last, [&](Character& character) { character.attributes.erase(name); });
                break;
            default: text->deleteCharactersInRange(range); model.erase(first, last);
        }
    }

    void check() const {
        std::u16string units;
        for (const auto& character : model) units += character.unit;
        RC_ASSERT((text->string() == NSString(units)));
        for (uint64_t index = 0; index < model.size(); ++index) checkIndex(index);
        const auto rebuilt = textOf(model);
        RC_ASSERT(text->isEqual(rebuilt));
        RC_ASSERT(rebuilt->isEqual(text));

        const uint64_t location = below(model.size() + 1);
        const NSRange part{location, below(model.size() - location + 1)};
        const auto first = model.begin() + static_cast<long>(location);
        RC_ASSERT(text->attributedSubstringFromRange(part)->isEqual(textOf(Model(first, first + static_cast<long>(part.length)))));
    }

private:
    void replace(NSRange range, const std::u16string& units) {
        Attributes attributes;
        if (range.length > 0)
            attributes = model[range.location].attributes;
        else if (range.location > 0)
            attributes = model[range.location - 1].attributes;
        else if (!model.empty())
            attributes = model[0].attributes;
        text->replaceCharactersInRange_withString(range, units);
        const auto first = model.begin() + static_cast<long>(range.location);
        const auto inserted = modelOf(units, attributes);
        model.insert(model.erase(first, first + static_cast<long>(range.length)), inserted.begin(), inserted.end());
    }

    void checkIndex(uint64_t index) const {
        const auto sameAttributes = [](const Character& one, const Character& other) { return one.attributes == other.attributes; };
        const NSRange all{0, model.size()};
        NSRange range;
        RC_ASSERT(attributesOf(text->attributesAtIndex_effectiveRange(index, &range)) == model[index].attributes);
        RC_ASSERT((range == longestRange(model, index, all, sameAttributes)));

        const uint64_t start = below(index + 1);
        const NSRange limit{start, index - start + 1 + below(model.size() - index)};
        (void)text->attributesAtIndex_longestEffectiveRange_inRange(index, &range, limit);
        RC_ASSERT((range == longestRange(model, index, limit, sameAttributes)));

        const NSString name = names[below(3)];
        const auto valueOf = [&](const Character& character) {
            const auto found = character.attributes.find(name);
            return found == character.attributes.end() ? 0 : found->second;
        };
        const auto sameValue = [&](const Character& one, const Character& other) { return valueOf(one) == valueOf(other); };
        RC_ASSERT(text->attribute_atIndex_longestEffectiveRange_inRange(name, index, &range, limit).number() == valueOf(model[index]));
        RC_ASSERT((range == longestRange(model, index, limit, sameValue)));
    }

    Ref<NSMutableAttributedString> text = NSMutableAttributedString::newWithString(u"");
    Model model;
};

TEST(AttributedStringPropertyTest, EachCharacterHasItsAttributesThroughAnyEdits) {
    EXPECT_TRUE(rc::check([] {
        World world;
        for (int step = 0; step < 12; ++step) {
            world.step();
            world.check();
        }
    }));
}

// ---- Paragraphs and lists

using Lists = std::vector<Ref<NSTextList>>;

struct Paragraph {
    std::u16string text;
    Lists lists;
    uint64_t start = 0;
};

// No paragraph begins with the second half of a terminator.
std::vector<Paragraph> anyParagraphs(const Lists& lists) {
    constexpr const char16_t* terminators[] = {u"\n", u"\r", u"\r\n", u"\u2029"};
    std::vector<Paragraph> paragraphs(1 + below(8));
    uint64_t start = 0;
    for (auto& paragraph : paragraphs) {
        const bool isLast = &paragraph == &paragraphs.back();
        paragraph.text = std::u16string(1 + below(3), u"x\u2028\u0085"[below(3)]);
        if (!isLast || below(2)) paragraph.text += terminators[below(4)];
        const auto depth = static_cast<long>(below(lists.size() + 1));
        paragraph.lists.assign(lists.begin(), lists.begin() + depth);
        if (depth > 0 && below(4) == 0) paragraph.lists.erase(paragraph.lists.begin());
        paragraph.start = start;
        start += paragraph.text.size();
    }
    return paragraphs;
}

Ref<NSAttributedString> textOf(const std::vector<Paragraph>& paragraphs) {
    auto text = NSMutableAttributedString::newWithString(u"");
    for (const auto& paragraph : paragraphs) {
        auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
        style->setTextLists(paragraph.lists);
        text->appendAttributedString(NSAttributedString::newWithString_attributes(
            paragraph.text, NSDictionary::dictionary({{NSParagraphStyleAttributeName, style}})));
    }
    return text;
}

TEST(AttributedStringPropertyTest, ParagraphsEndWhereTheyWereMadeToEnd) {
    EXPECT_TRUE(rc::check([] {
        const auto paragraphs = anyParagraphs({});
        const auto text = textOf(paragraphs);
        for (const auto& paragraph : paragraphs)
            for (uint64_t index = paragraph.start; index < paragraph.start + paragraph.text.size(); ++index) {
                uint64_t start = 0, end = 0, contentsEnd = 0;
                text->string().getParagraphStart_end_contentsEnd_forRange(&start, &end, &contentsEnd, {index, below(2)});
                RC_ASSERT(start == paragraph.start);
                RC_ASSERT(end == paragraph.start + paragraph.text.size());
                RC_ASSERT(contentsEnd == paragraph.start + std::min(paragraph.text.find_first_of(u"\n\r\u2029"), paragraph.text.size()));
            }
    }));
}

TEST(AttributedStringPropertyTest, AListReachesOverTheParagraphsThatAreInIt) {
    EXPECT_TRUE(rc::check([] {
        Lists lists(3);
        for (auto& list : lists) list = NSTextList::textListWithMarkerFormat(u"{disc}");
        const auto paragraphs = anyParagraphs(lists);
        const auto text = textOf(paragraphs);
        const auto isIn = [&](size_t paragraph, const Ref<NSTextList>& list) {
            const Lists& own = paragraphs[paragraph].lists;
            return std::find(own.begin(), own.end(), list) != own.end();
        };

        for (size_t at = 0; at < paragraphs.size(); ++at)
            for (const auto& list : lists) {
                NSRange expected{NSNotFound, 0};
                long number = 0;
                if (isIn(at, list)) {
                    size_t first = at, last = at;
                    while (first > 0 && isIn(first - 1, list)) --first;
                    while (last + 1 < paragraphs.size() && isIn(last + 1, list)) ++last;
                    const uint64_t start = paragraphs[first].start;
                    expected = {start, paragraphs[last].start + paragraphs[last].text.size() - start};
                    for (size_t item = first; item <= at; ++item) number += paragraphs[item].lists.back() == list;
                }
                const uint64_t index = paragraphs[at].start + below(paragraphs[at].text.size());
                RC_ASSERT((text->rangeOfTextList_atIndex(list, index) == expected));
                RC_ASSERT(text->itemNumberInTextList_atIndex(list, index) == number);
            }
    }));
}

}  // namespace
