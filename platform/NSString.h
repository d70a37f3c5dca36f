// A string of UTF-16 units that can be null, and the two crossings to UTF-8.
//
// Null differs from empty everywhere: in ==, in a condition, in print. Queries on null answer 0 and
// an empty view. All indices and lengths count UTF-16 units, so a character beyond the Basic
// Multilingual Plane counts two.
#pragma once

#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/NSRange.h"

class NSError;
class NSURL;
namespace wq {
template <class T> class Ref;
}

// The encodings in which a resource is read as text.
enum NSStringEncoding : unsigned long { NSUTF8StringEncoding = 4 };

class NSString {
public:
    NSString() = default;        // null
    NSString(std::nullptr_t) {}  // null
    // A copy of the units up to the first NUL; null for a null pointer.
    NSString(const char16_t* literal) : present(literal != nullptr) {
        if (literal) text = literal;
    }
    // Never null; NUL is a unit like others.
    NSString(std::u16string units) : text(std::move(units)), present(true) {}
    NSString(std::u16string_view units) : text(units), present(true) {}

    explicit operator bool() const noexcept { return present; }  // false for null alone
    size_t length() const noexcept { return text.size(); }       // UTF-16 units
    // Valid until this string is changed or destroyed.
    std::u16string_view view() const noexcept { return text; }
    operator std::u16string_view() const noexcept { return text; }

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
    NSString& operator+=(std::u16string_view more) {
        text += more;
        present = true;
        return *this;
    }
    friend NSString operator+(NSString left, std::u16string_view right) { return std::move(left += right); }
    bool operator==(const NSString&) const = default;
    // A null pointer equals null.
    bool operator==(const char16_t* literal) const { return literal ? present && text == literal : !present; }
    // Unit by unit; null comes first.
    std::strong_ordering operator<=>(const NSString& other) const {
        if (present != other.present) return present <=> other.present;
        return text <=> other.text;
    }

private:
    bool startsParagraph(uint64_t index) const;
    std::u16string text;
    bool present = false;
};

void PrintTo(const NSString& string, std::ostream* out);  // GoogleTest: "p", or null

namespace wq {
// Ill-formed bytes become U+FFFD, one for each maximal part that cannot be read. A NUL byte passes
// in the last form, and ends the text in the others, which answer null for null.
NSString fromUTF8(const char* bytes);
NSString fromUTF8(const unsigned char* bytes);
NSString fromUTF8(std::string_view bytes);
// Lone surrogates become U+FFFD. Null gives no bytes.
std::string toUTF8(std::u16string_view units);

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
