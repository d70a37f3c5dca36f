#include "platform/NSTextBlock.h"

#include "platform/WQXMLException.h"

namespace {

void check(bool isValid, const char16_t* reason) {
    if (!isValid) throw WQXMLException(u"NSInvalidArgumentException", reason);
}

// The width for a layer and an edge.
auto& at(auto& widths, long layer, unsigned edge) {
    check(layer >= NSTextBlockPadding && layer <= NSTextBlockMargin, u"A text block has the layers -1, 0 and 1");
    check(edge <= NSMaxYEdge, u"A text block has the edges 0 to 3");
    return widths[layer - NSTextBlockPadding][edge];
}

}  // namespace

Ref<NSTextBlock> NSTextBlock::textBlock() { return Ref<NSTextBlock>(new NSTextBlock); }

void NSTextBlock::setWidth_type_forLayer_edge(double width, unsigned type, long layer, unsigned edge) {
    check(type <= NSTextBlockPercentageValueType, u"A width is of type 0 or 1");
    at(my.widths, layer, edge) = {width, type};
}

double NSTextBlock::widthForLayer_edge(long layer, unsigned edge) const { return at(my.widths, layer, edge).value; }

unsigned NSTextBlock::widthValueTypeForLayer_edge(long layer, unsigned edge) const { return at(my.widths, layer, edge).type; }
