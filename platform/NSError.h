// Why an operation that reports through an error argument failed.
//
// Such an argument is a `Ref<NSError>*`; null means that the caller does not want to know.
#pragma once

#include <cstdint>

#include "platform/Object.h"

class NSError : public wq::Object {
public:
    // `domain` says whose number `code` is; `description` is a line for people.
    static Ref<NSError> errorWithDomain_code_description(const NSString& domain, int64_t code, const NSString& description);

    const NSString& domain() const { return my.domain; }                              // whose numbers: as "NSPOSIXErrorDomain", "libcurl"
    int64_t code() const { return my.code; }                                          // errno, or CURLcode
    const NSString& localizedDescription() const { return my.localizedDescription; }  // one line
    NSString description() const override;

private:
    struct {
        NSString domain;
        int64_t code = 0;
        NSString localizedDescription;
    } my;
};

// For files; the codes are those of errno.
inline constexpr const char16_t* NSPOSIXErrorDomain = u"NSPOSIXErrorDomain";

// For text that is not in the encoding in which it was read.
inline constexpr const char16_t* NSCocoaErrorDomain = u"NSCocoaErrorDomain";
inline constexpr int64_t NSFileReadInapplicableStringEncodingError = 261;
