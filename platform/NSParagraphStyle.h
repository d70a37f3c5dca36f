// How a paragraph is set. A style does not change; its mutable copy does.
#pragma once

#include <vector>

#include "platform/NSTextBlock.h"
#include "platform/NSTextList.h"

class NSMutableParagraphStyle;

// The alignments.
inline constexpr long NSTextAlignmentLeft = 0;
inline constexpr long NSTextAlignmentRight = 1;
inline constexpr long NSTextAlignmentCenter = 2;
inline constexpr long NSTextAlignmentJustified = 3;
inline constexpr long NSTextAlignmentNatural = 4;  // as the script goes

// All lengths are in points. Null answers 0 and empty lists throughout.
class NSParagraphStyle : public wq::Object {
public:
    // What a text without a style is set in, one object: lengths of 0, natural alignment, and twelve tab
    // stops, 28 points apart from 28 on.
    static Ref<NSParagraphStyle> defaultParagraphStyle();

    // The same style, to be changed; text blocks and text lists are shared with it. Null: null.
    Ref<NSMutableParagraphStyle> mutableCopy() const;

    double paragraphSpacingBefore() const { return my.paragraphSpacingBefore; }  // ahead of the paragraph
    double paragraphSpacing() const { return my.paragraphSpacing; }              // behind the paragraph
    double firstLineHeadIndent() const { return my.firstLineHeadIndent; }        // from the leading margin
    double headIndent() const { return my.headIndent; }                          // of the other lines
    double tailIndent() const { return my.tailIndent; }                  // from the leading margin, or below 0 from the trailing one
    double minimumLineHeight() const { return my.minimumLineHeight; }    // 0: no limit
    double maximumLineHeight() const { return my.maximumLineHeight; }    // 0: no limit
    double lineHeightMultiple() const { return my.lineHeightMultiple; }  // of the font's own; 0: none
    long alignment() const { return my.alignment; }                      // of the numbers above
    const std::vector<double>& tabStops() const { return my.tabStops; }  // from the leading margin
    const std::vector<Ref<NSTextBlock>>& textBlocks() const { return my.textBlocks; }  // outermost first
    const std::vector<Ref<NSTextList>>& textLists() const { return my.textLists; }     // outermost first

    // Equal in every value; text blocks and text lists by identity. Whether a style can change makes no
    // difference. Null equals nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

protected:
    // What the queries of the same names answer, and the mutable style sets.
    struct Fields {
        double paragraphSpacingBefore = 0;
        double paragraphSpacing = 0;
        double firstLineHeadIndent = 0;
        double headIndent = 0;
        double tailIndent = 0;
        double minimumLineHeight = 0;
        double maximumLineHeight = 0;
        double lineHeightMultiple = 0;
        long alignment = NSTextAlignmentLeft;
        std::vector<double> tabStops;
        std::vector<Ref<NSTextBlock>> textBlocks;
        std::vector<Ref<NSTextList>> textLists;
        bool operator==(const Fields&) const = default;
    } my;  // this style's
};
