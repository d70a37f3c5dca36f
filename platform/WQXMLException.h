// The one exception of the object layer. Callers tell exceptions apart by name().
#pragma once

#include <exception>
#include <string>

#include "platform/NSString.h"

// The name under which assertions of the object layer fail.
inline constexpr const char16_t* NSInternalInconsistencyException = u"NSInternalInconsistencyException";

class WQXMLException : public std::exception {
public:
    // A name such as "NSRangeException", and what happened, in words.
    WQXMLException(NSString name, NSString reason);
    const NSString& name() const noexcept { return my.name; }                  // for programs
    const NSString& reason() const noexcept { return my.reason; }              // for people
    const char* what() const noexcept override { return my.printed.c_str(); }  // "name: reason", UTF-8

private:
    struct {
        NSString name;
        NSString reason;
        std::string printed;
    } my;
};
