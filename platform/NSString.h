// A string of UTF-16 units that can be null, and the two crossings to UTF-8.
//
// Null differs from empty everywhere: in ==, in a condition, in print. Queries on null answer 0 and
// an empty view. All indices and lengths count UTF-16 units, so a character beyond the Basic
// Multilingual Plane counts two. Copies share their units, by counts that belong to one thread, as
// those of objects do; a string that is changed lets go of what it shares.
#pragma once

#include <compare>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "platform/NSRange.h"

class NSError;
class NSURL;
class NSString;
namespace wq {
template <class T> class Ref;
NSString fromUTF8(std::string_view bytes);
}  // namespace wq

// The encodings in which a resource is read as text.
enum NSStringEncoding : unsigned long { NSUTF8StringEncoding = 4 };

class NSString {
public:
    NSString() = default;        // null
    NSString(std::nullptr_t) {}  // null
    // A copy of the units up to the first NUL; null for a null pointer.
    NSString(const char16_t* literal) : shared(literal ? NSString(std::u16string_view(literal)).leak() : nullptr) {}
    // Never null; NUL is a unit like others.
    NSString(const std::u16string& units) : NSString(std::u16string_view(units)) {}
    NSString(std::u16string_view units);

    // Shares the units of the other.
    NSString(const NSString& other) noexcept : shared(other.shared) {
        if (shared) ++shared->count;
    }
    // A string that was moved from is null.
    NSString(NSString&& other) noexcept : shared(std::exchange(other.shared, nullptr)) {}
    // Shares the units of the other.
    NSString& operator=(NSString other) noexcept {
        std::swap(shared, other.shared);
        return *this;
    }
    ~NSString() {
        if (shared && --shared->count == 0) destroy(shared);
    }

    explicit operator bool() const noexcept { return shared; }              // false for null alone
    size_t length() const noexcept { return shared ? shared->length : 0; }  // UTF-16 units
    // Valid until this string is changed or destroyed.
    std::u16string_view view() const noexcept {
        return shared ? std::u16string_view(shared->units(), shared->length) : std::u16string_view();
    }
    operator std::u16string_view() const noexcept { return view(); }

    // The text of a resource; a byte order mark is a character of it. Null, and the error set if one is given, where it
    // cannot be read (see NSData.h) or its bytes are not all in the encoding. Null URL: null, with an error.
    static NSString stringWithContentsOfURL_encoding_error(const wq::Ref<NSURL>& url, NSStringEncoding encoding, wq::Ref<NSError>* error);

    // Both raise "NSRangeException" for a range that reaches past the end. Null answers null.
    NSString substringWithRange(NSRange range) const;
    NSString stringByReplacingCharactersInRange_withString(NSRange range, std::u16string_view string) const;

    // Raises "NSRangeException" for a range that reaches past the end. The length of null is 0.
    void checkRange(NSRange range) const;

    // The paragraphs that a range touches: where the first starts, where the last ends, and where the
    // terminator of the last begins; contentsEnd is end where there is none. A paragraph ends at LF,
    // CR, CRLF or U+2029 and nowhere else; behind a terminator at the end of the text stands an empty
    // one. Null pointers are passed over. Raises "NSRangeException" for a range that reaches past the
    // end. Null answers zeros for any range.
    void getParagraphStart_end_contentsEnd_forRange(uint64_t* start, uint64_t* end, uint64_t* contentsEnd, NSRange range) const;

    // By Unicode's rules without those of a language, so that U+0130 becomes two characters. Null answers null.
    NSString lowercaseString() const;

    // Null counts as empty on the left, so that the result is never null.
    NSString& operator+=(std::u16string_view more);
    friend NSString operator+(NSString left, std::u16string_view right) { return std::move(left += right); }
    bool operator==(const NSString& other) const { return shared == other.shared || (shared && other.shared && view() == other.view()); }
    // A null pointer equals null.
    bool operator==(const char16_t* literal) const { return literal ? shared && view() == literal : !shared; }
    // Unit by unit; null comes first.
    std::strong_ordering operator<=>(const NSString& other) const {
        if (shared == other.shared) return std::strong_ordering::equal;
        if (!shared || !other.shared) return static_cast<bool>(shared) <=> static_cast<bool>(other.shared);
        return view() <=> other.view();
    }

private:
    friend NSString wq::fromUTF8(std::string_view bytes);

    // Units behind their count; a NUL follows them.
    struct Shared {
        int32_t count;  // of strings
        size_t length, capacity;
        char16_t* units() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
    };
    static Shared* create(size_t length, size_t capacity);  // with a count of 1; the units are not set
    static void destroy(Shared* shared) noexcept;
    static size_t sizeOf(size_t capacity) noexcept { return sizeof(Shared) + (capacity + 1) * sizeof(char16_t); }
    // Of units that are written where it says, before anybody sees it.
    explicit NSString(Shared* made) noexcept : shared(made) {}
    Shared* leak() noexcept { return std::exchange(shared, nullptr); }
    void shorten(size_t length) noexcept;  // of a string that shares nothing

    bool startsParagraph(uint64_t index) const;

    Shared* shared = nullptr;  // null for null
};
static_assert(sizeof(NSString) == sizeof(void*));

void PrintTo(const NSString& string, std::ostream* out);  // GoogleTest: "p", or null

namespace wq {
// Ill-formed bytes become U+FFFD, one for each maximal part that cannot be read. A NUL byte passes
// in the last form, and ends the text in the others, which answer null for null.
NSString fromUTF8(const char* bytes);
NSString fromUTF8(const unsigned char* bytes);
NSString fromUTF8(std::string_view bytes);
// Lone surrogates become U+FFFD. Null gives no bytes.
std::string toUTF8(std::u16string_view units);
// The same into a buffer of that many bytes, with a NUL behind it, if all units are ASCII and it has room; else false.
bool copyASCII(std::u16string_view units, char* buffer, size_t size);

// What a null object or string prints as within a text: "(null)".
inline constexpr const char16_t* nullText = u"(null)";
// The string, or nullText for null.
NSString printed(const NSString& string);

// For `using namespace wq::literals`, in files that do not use all of wq.
inline namespace literals {
// A string of all units of the literal, also of those behind a NUL: u"text"_ns.
inline NSString operator""_ns(const char16_t* units, size_t length) { return std::u16string_view(units, length); }
}  // namespace literals
}  // namespace wq
