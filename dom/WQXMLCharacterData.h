// Editing the text of a node. Texts alone are character data here: comments and CDATA sections
// are plain nodes.
//
// Each edit rewrites the whole content, fires 2 once, and raises "NSRangeException" before anything
// changes for a range that reaches past the end. On a node without content a range is not looked at.
#pragma once

#include "dom/WQXMLNode.h"

class WQXMLCharacterData : public WQXMLNode {
public:
    NSString string() const;                           // null without content
    uint64_t length() const;                           // UTF-16 units
    NSString substringWithRange(NSRange range) const;  // null without content

    // These four go by replaceCharactersInRange_withString, which a subclass can override. Indices count UTF-16 units;
    // a null string adds nothing. Without content, what they insert becomes the content. On a dead node: nothing.
    void setString(const NSString& string);
    void appendString(const NSString& string);
    void insertString_atIndex(const NSString& string, uint64_t index);
    void deleteCharactersInRange(NSRange range);

    // Null takes out what the empty string takes out.
    virtual void replaceCharactersInRange_withString(NSRange range, const NSString& string);

    NSString printDescription() const override;  // "name - [0x...] string"

    // ---- For dom only

    // Fires 2 on this node.
    void notifyDidReplaceCharactersInRange_withString_oldString(NSRange range, const NSString& string, NSString oldString);
};
