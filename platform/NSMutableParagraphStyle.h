// A paragraph style to be changed: a mutable copy of another.
#pragma once

#include <utility>

#include "platform/NSParagraphStyle.h"

template <class T> class NilMutableParagraphStyle;

// Lengths are in points, and stored as given. Null takes nothing.
class NSMutableParagraphStyle : public NSParagraphStyle {
public:
    // ---- What the queries of NSParagraphStyle answer, which say what a length is measured from

    virtual void setParagraphSpacingBefore(double spacing) { my.paragraphSpacingBefore = spacing; }
    virtual void setParagraphSpacing(double spacing) { my.paragraphSpacing = spacing; }
    virtual void setFirstLineHeadIndent(double indent) { my.firstLineHeadIndent = indent; }
    virtual void setHeadIndent(double indent) { my.headIndent = indent; }
    virtual void setTailIndent(double indent) { my.tailIndent = indent; }
    virtual void setMinimumLineHeight(double height) { my.minimumLineHeight = height; }
    virtual void setMaximumLineHeight(double height) { my.maximumLineHeight = height; }
    virtual void setLineHeightMultiple(double multiple) { my.lineHeightMultiple = multiple; }
    virtual void setAlignment(long alignment) { my.alignment = alignment; }
    virtual void setTabStops(std::vector<double> positions) { my.tabStops = std::move(positions); }
    virtual void setTextBlocks(std::vector<Ref<NSTextBlock>> blocks) { my.textBlocks = std::move(blocks); }
    virtual void setTextLists(std::vector<Ref<NSTextList>> lists) { my.textLists = std::move(lists); }

    template <class T> using Nil = NilMutableParagraphStyle<T>;

private:
    friend class NSParagraphStyle;
    static Ref<NSMutableParagraphStyle> paragraphStyleWithFields(const Fields& fields);
};

template <class T> class NilMutableParagraphStyle : public T {
public:
    void setParagraphSpacingBefore(double) override {}
    void setParagraphSpacing(double) override {}
    void setFirstLineHeadIndent(double) override {}
    void setHeadIndent(double) override {}
    void setTailIndent(double) override {}
    void setMinimumLineHeight(double) override {}
    void setMaximumLineHeight(double) override {}
    void setLineHeightMultiple(double) override {}
    void setAlignment(long) override {}
    void setTabStops(std::vector<double>) override {}
    void setTextBlocks(std::vector<Ref<NSTextBlock>>) override {}
    void setTextLists(std::vector<Ref<NSTextList>>) override {}
};
