#include "platform/NSCharacterSet.h"

#include <unicode/uset.h>

namespace {
USet* set(const std::shared_ptr<void>& members) { return static_cast<USet*>(members.get()); }
void closeSet(void* made) { uset_close(static_cast<USet*>(made)); }
}  // namespace

NSCharacterSet::NSCharacterSet(void* made) : members(made, closeSet) { uset_freeze(set(members)); }

NSCharacterSet NSCharacterSet::controlCharacterSet() {
    UErrorCode status = U_ZERO_ERROR;
    return NSCharacterSet(uset_openPattern(u"[[:Cc:]]", -1, &status));
}

NSCharacterSet NSCharacterSet::setWithoutCharacters(const NSString& characters) const {
    USet* fewer = uset_cloneAsThawed(set(members));
    for (char16_t character : characters.view()) uset_remove(fewer, character);
    return NSCharacterSet(fewer);
}

bool NSCharacterSet::characterIsMember(char16_t character) const { return uset_contains(set(members), character); }

uint64_t NSCharacterSet::indexOfMember(const NSString& string, uint64_t from) const {
    if (from >= string.length()) return NSNotFound;
    const auto rest = string.view().substr(from);
    const int32_t others = uset_span(set(members), rest.data(), static_cast<int32_t>(rest.size()), USET_SPAN_NOT_CONTAINED);
    return static_cast<size_t>(others) < rest.size() ? from + static_cast<uint64_t>(others) : NSNotFound;
}
