#include "platform/NSString.h"

#include <fmt/format.h>
#include <unicode/ustring.h>

#include <cstring>
#include <ostream>

#include "platform/NSData.h"
#include "platform/NSError.h"
#include "platform/NSURL.h"
#include "platform/WQXMLException.h"

namespace {
constexpr UChar32 kReplacement = 0xFFFD;

// ICU counts in 32 bits: three bytes for a unit must fit.
int32_t lengthForICU(size_t length) {
    if (length > INT32_MAX / 3) throw WQXMLException(u"NSInvalidArgumentException", u"String too long to be converted");
    return static_cast<int32_t>(length);
}

bool endsParagraph(char16_t unit) { return unit == u'\n' || unit == u'\r' || unit == u'\u2029'; }

void set(uint64_t* target, uint64_t value) {
    if (target) *target = value;
}
}  // namespace

void NSString::checkRange(NSRange range) const {
    if (range.location <= text.size() && range.length <= text.size() - range.location) return;
    throw WQXMLException(
        u"NSRangeException",
        wq::fromUTF8(fmt::format("Range {{{}, {}}} out of bounds; string length {}", range.location, range.length, text.size())));
}

NSString NSString::substringWithRange(NSRange range) const {
    if (!present) return nullptr;
    checkRange(range);
    return text.substr(range.location, range.length);
}

NSString NSString::stringByReplacingCharactersInRange_withString(NSRange range, std::u16string_view string) const {
    if (!present) return nullptr;
    checkRange(range);
    std::u16string result = text;
    return result.replace(range.location, range.length, string);
}

// Not between CR and LF.
bool NSString::startsParagraph(uint64_t index) const {
    if (index == 0) return true;
    return endsParagraph(text[index - 1]) && !(text[index - 1] == u'\r' && index < text.size() && text[index] == u'\n');
}

void NSString::getParagraphStart_end_contentsEnd_forRange(uint64_t* start, uint64_t* end, uint64_t* contentsEnd, NSRange range) const {
    if (!present) range = {};
    checkRange(range);
    uint64_t first = range.location;
    while (!startsParagraph(first)) --first;

    // The last paragraph is that of the last unit, which an empty range takes from what follows it.
    uint64_t last = range.location + range.length;
    if (range.length == 0 && last < text.size()) ++last;
    while (last < text.size() && !startsParagraph(last)) ++last;

    uint64_t contents = last;
    if (contents > first && endsParagraph(text[contents - 1])) --contents;
    if (contents > first && text[contents] == u'\n' && text[contents - 1] == u'\r') --contents;
    set(start, first);
    set(end, last);
    set(contentsEnd, contents);
}

NSString NSString::stringWithContentsOfURL_encoding_error(const Ref<NSURL>& url, NSStringEncoding, Ref<NSError>* error) {
    const Ref<NSData> data = NSData::dataWithContentsOfURL_error(url, error);
    if (!data) return nullptr;
    const std::string_view bytes = data->view();
    const int32_t size = lengthForICU(bytes.size());
    std::u16string units(bytes.size(), u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(units.data(), size, &length, bytes.data(), size, &status);
    if (U_FAILURE(status)) {
        const NSString message = url->absoluteString() + u": the text is not in UTF-8";
        if (error)
            *error = NSError::errorWithDomain_code_description(NSCocoaErrorDomain, NSFileReadInapplicableStringEncodingError, message);
        return nullptr;
    }
    units.resize(static_cast<size_t>(length));
    return units;
}

// One unit becomes three at most.
NSString NSString::lowercaseString() const {
    if (!present) return nullptr;
    const int32_t size = lengthForICU(text.size());
    std::u16string lower(text.size() * 3, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = u_strToLower(lower.data(), size * 3, text.data(), size, "", &status);
    lower.resize(static_cast<size_t>(length));
    return lower;
}

void PrintTo(const NSString& string, std::ostream* out) {
    if (!string)
        *out << "null";
    else
        *out << '"' << wq::toUTF8(string) << '"';
}

namespace wq {

NSString fromUTF8(const char* bytes) { return bytes ? fromUTF8(std::string_view(bytes)) : NSString(); }
NSString fromUTF8(const unsigned char* bytes) { return fromUTF8(reinterpret_cast<const char*>(bytes)); }

NSString fromUTF8(std::string_view bytes) {
    const int32_t size = lengthForICU(bytes.size());
    std::u16string units(bytes.size(), u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units.data(), size, &length, bytes.data(), size, kReplacement, nullptr, &status);
    units.resize(static_cast<size_t>(length));
    return units;
}

std::string toUTF8(std::u16string_view units) {
    const int32_t size = lengthForICU(units.size());
    std::string bytes(units.size() * 3, '\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(bytes.data(), size * 3, &length, units.data(), size, kReplacement, nullptr, &status);
    bytes.resize(static_cast<size_t>(length));
    return bytes;
}

NSString printed(const NSString& string) { return string ? string : nullText; }

}  // namespace wq
