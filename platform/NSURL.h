// A URL of RFC 3986, absolute or relative, its text kept byte for byte.
#pragma once

#include "platform/Object.h"

class NSURL : public wq::Object {
public:
    // Null if the text is no URL reference by RFC 3986: blanks, characters beyond ASCII, stray
    // percent signs, two '#' and the like are refused, not repaired. The empty text is a URL.
    // Null text: null.
    static Ref<NSURL> URLWithString(const NSString& text);

    // A file URL for a path of the file system; a relative path starts at the current folder.
    // Everything but unreserved characters is escaped. Null for null, for the empty path
    // and for one that holds a NUL.
    static Ref<NSURL> fileURLWithPath(const NSString& path);

    // The text as given.
    const NSString& absoluteString() const { return my.absoluteString; }
    const NSString& scheme() const { return my.scheme; }      // as typed; null if there is none
    const NSString& host() const { return my.host; }          // null if absent or empty; an IPv6 address without brackets
    const NSString& fragment() const { return my.fragment; }  // null if absent, "" behind a bare '#'
    // The path without escapes. Null if it holds an escaped NUL.
    const NSString& path() const { return my.path; }
    bool isFileURL() const;  // the scheme is "file" in any case

    // The same text, byte for byte. Null equals nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

    NSString description() const override;  // the absolute text

private:
    struct {
        NSString absoluteString;
        NSString scheme;
        NSString host;
        NSString fragment;
        NSString path;
    } my;
};
