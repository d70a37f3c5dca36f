#include "platform/NSString.h"

#include <fmt/format.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <ostream>
#include <type_traits>

#include "platform/NSData.h"
#include "platform/NSError.h"
#include "platform/NSURL.h"
#include "platform/Slab.h"
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

// ---- The units

NSString::Shared* NSString::create(size_t length, size_t capacity) {
    if (capacity > (SIZE_MAX - sizeof(Shared)) / sizeof(char16_t) - 1) throw std::bad_alloc();
    auto* shared = new (wq::allocateSmall(sizeOf(capacity))) Shared{1, length, capacity};
    shared->units()[length] = u'\0';
    return shared;
}

void NSString::destroy(Shared* shared) noexcept { wq::freeSmall(shared, sizeOf(shared->capacity)); }

void NSString::shorten(size_t length) noexcept {
    shared->length = length;
    shared->units()[length] = u'\0';
}

NSString::NSString(std::u16string_view units) : shared(create(units.size(), units.size())) {
    std::copy(units.begin(), units.end(), shared->units());
}

NSString& NSString::operator+=(std::u16string_view more) {
    const std::u16string_view before = view();
    const size_t sum = before.size() + more.size();
    if (shared && shared->count == 1 && sum <= shared->capacity) {
        std::copy(more.begin(), more.end(), shared->units() + before.size());
        shorten(sum);
        return *this;
    }
    NSString longer(create(sum, shared ? std::max(sum, 2 * before.size()) : sum));  // and then by ever longer steps
    std::copy(more.begin(), more.end(), std::copy(before.begin(), before.end(), longer.shared->units()));
    std::swap(shared, longer.shared);
    return *this;
}

// ---- Parts

void NSString::checkRange(NSRange range) const {
    if (range.location <= length() && range.length <= length() - range.location) return;
    throw WQXMLException(
        u"NSRangeException",
        wq::fromUTF8(fmt::format("Range {{{}, {}}} out of bounds; string length {}", range.location, range.length, length())));
}

NSString NSString::substringWithRange(NSRange range) const {
    if (!shared) return nullptr;
    checkRange(range);
    return view().substr(range.location, range.length);
}

NSString NSString::stringByReplacingCharactersInRange_withString(NSRange range, std::u16string_view string) const {
    if (!shared) return nullptr;
    checkRange(range);
    const std::u16string_view ahead = view().substr(0, range.location), behind = view().substr(range.location + range.length);
    const size_t sum = ahead.size() + string.size() + behind.size();
    NSString result(create(sum, sum));
    char16_t* end = result.shared->units();
    for (const std::u16string_view part : {ahead, string, behind}) end = std::copy(part.begin(), part.end(), end);
    return result;
}

// Not between CR and LF.
bool NSString::startsParagraph(uint64_t index) const {
    if (index == 0) return true;
    const std::u16string_view text = view();
    return endsParagraph(text[index - 1]) && !(text[index - 1] == u'\r' && index < text.size() && text[index] == u'\n');
}

void NSString::getParagraphStart_end_contentsEnd_forRange(uint64_t* start, uint64_t* end, uint64_t* contentsEnd, NSRange range) const {
    if (!shared) range = {};
    checkRange(range);
    const std::u16string_view text = view();
    uint64_t first = range.location;
    while (!startsParagraph(first)) --first;

    // The last paragraph is that of the last unit, which an empty range takes from what follows it.
    uint64_t last = range.location + range.length;
    if (range.length == 0 && last < text.size()) ++last;
    while (last < text.size() && !startsParagraph(last)) ++last;

    uint64_t contents = last;
    if (contents > first && endsParagraph(text[contents - 1])) --contents;
    if (contents > first && contents < last && text[contents] == u'\n' && text[contents - 1] == u'\r') --contents;
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
    if (!shared) return nullptr;
    const int32_t size = lengthForICU(length());
    std::u16string lower(length() * 3, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t sizeOfLower = u_strToLower(lower.data(), size * 3, shared->units(), size, "", &status);
    return std::u16string_view(lower).substr(0, static_cast<size_t>(sizeOfLower));
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

namespace {
// Copies what leads in ASCII, most of it eight at a time, and answers how much that is. The rest is left to ICU.
template <class To, class From> size_t copyLeadingASCII(To* to, const From* from, size_t length) {
    constexpr size_t kStep = 8;
    auto isASCII = [from](size_t at) { return static_cast<std::make_unsigned_t<From>>(from[at]) < 0x80; };
    size_t at = 0;
    for (; at + kStep <= length; at += kStep) {
        std::make_unsigned_t<From> all = 0;
        for (size_t i = 0; i < kStep; ++i) all |= static_cast<std::make_unsigned_t<From>>(from[at + i]);
        if (all >= 0x80) break;
        for (size_t i = 0; i < kStep; ++i) to[at + i] = static_cast<To>(from[at + i]);
    }
    for (; at < length && isASCII(at); ++at) to[at] = static_cast<To>(from[at]);
    return at;
}

// No fewer than it takes: each half of a surrogate pair counts three here, and two in the end.
size_t greatestSizeInUTF8(std::u16string_view units) {
    size_t size = units.size();
    for (const char16_t unit : units) size += (unit >= 0x80) + (unit >= 0x800);
    return size;
}
}  // namespace

NSString fromUTF8(std::string_view bytes) {
    lengthForICU(bytes.size());
    NSString string(NSString::create(bytes.size(), bytes.size()));  // as many units at most
    char16_t* units = string.shared->units();
    const size_t ascii = copyLeadingASCII(units, bytes.data(), bytes.size());
    if (ascii == bytes.size()) return string;
    const auto rest = static_cast<int32_t>(bytes.size() - ascii);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units + ascii, rest, &length, bytes.data() + ascii, rest, kReplacement, nullptr, &status);
    string.shorten(ascii + static_cast<size_t>(length));
    return string;
}

bool copyASCII(std::u16string_view units, char* buffer, size_t size) {
    if (units.size() >= size || copyLeadingASCII(buffer, units.data(), units.size()) < units.size()) return false;
    buffer[units.size()] = '\0';
    return true;
}

std::string toUTF8(std::u16string_view units) {
    lengthForICU(units.size());
    std::string bytes(units.size(), '\0');
    const size_t ascii = copyLeadingASCII(bytes.data(), units.data(), units.size());
    if (ascii == units.size()) return bytes;
    const std::u16string_view rest = units.substr(ascii);
    bytes.resize(ascii + greatestSizeInUTF8(rest));
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(
        bytes.data() + ascii, static_cast<int32_t>(bytes.size() - ascii), &length, rest.data(), static_cast<int32_t>(rest.size()),
        kReplacement, nullptr, &status);
    bytes.resize(ascii + static_cast<size_t>(length));
    return bytes;
}

NSString printed(const NSString& string) { return string ? string : nullText; }

}  // namespace wq
