// A set of characters of the Basic Multilingual Plane: a value, fixed when it is made.
#pragma once

#include <memory>

#include "platform/NSString.h"

class NSCharacterSet {
public:
    // Unicode's category Cc: U+0000 to U+001F, and U+007F to U+009F.
    static NSCharacterSet controlCharacterSet();
    // This set without those characters.
    NSCharacterSet setWithoutCharacters(const NSString& characters) const;

    bool characterIsMember(char16_t character) const;  // half of a surrogate pair is a character of its own here
    // Where the first member stands, from that unit on; NSNotFound if there is none.
    uint64_t indexOfMember(const NSString& string, uint64_t from = 0) const;

private:
    explicit NSCharacterSet(void* made);
    std::shared_ptr<void> members;  // the text system's own set
};
