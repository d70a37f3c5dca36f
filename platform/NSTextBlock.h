// The box around paragraphs: padding, border and margin, each with a width on each of four edges.
#pragma once

#include "platform/Object.h"

template <class T> class NilTextBlock;

// The layers of a text block, from the inside out.
inline constexpr long NSTextBlockPadding = -1;
inline constexpr long NSTextBlockBorder = 0;
inline constexpr long NSTextBlockMargin = 1;

// What a width counts: points, or hundredths of the width around the block.
inline constexpr unsigned NSTextBlockAbsoluteValueType = 0;
inline constexpr unsigned NSTextBlockPercentageValueType = 1;

// The edges of a rectangle: left, top, right, bottom.
inline constexpr unsigned NSMinXEdge = 0;
inline constexpr unsigned NSMinYEdge = 1;
inline constexpr unsigned NSMaxXEdge = 2;
inline constexpr unsigned NSMaxYEdge = 3;

class NSTextBlock : public wq::Object {
public:
    // A block whose widths are all 0 points.
    static Ref<NSTextBlock> textBlock();

    // Raises "NSInvalidArgumentException" for a type, a layer or an edge beyond those above, and
    // stores nothing then. Null: nothing.
    virtual void setWidth_type_forLayer_edge(double width, unsigned type, long layer, unsigned edge);

    // Both raise "NSInvalidArgumentException" for another layer or edge. Null: 0.
    virtual double widthForLayer_edge(long layer, unsigned edge) const;
    virtual unsigned widthValueTypeForLayer_edge(long layer, unsigned edge) const;

    template <class T> using Nil = NilTextBlock<T>;

private:
    struct Width {
        double value = 0;
        unsigned type = NSTextBlockAbsoluteValueType;
    };
    struct {
        Width widths[3][4];  // by layer, then by edge
    } my;
};

template <class T> class NilTextBlock : public T {
public:
    void setWidth_type_forLayer_edge(double, unsigned, long, unsigned) override {}
    double widthForLayer_edge(long, unsigned) const override { return 0; }
    unsigned widthValueTypeForLayer_edge(long, unsigned) const override { return 0; }
};
