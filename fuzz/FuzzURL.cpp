// A URL of bytes from outside: kept as it stands, and told apart the same way twice; a path of the file
// system, there and back; and two URLs, a line each, one relative to the other.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "dom/WQXMLExtensions.h"

namespace {
void require(bool condition) {
    if (!condition) std::abort();
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const NSString text = wq::fromUTF8(std::string_view(reinterpret_cast<const char*>(data), size));
    if (const auto url = NSURL::URLWithString(text)) {
        require(url->absoluteString() == text);
        const auto again = NSURL::URLWithString(url->absoluteString());
        require(again->scheme() == url->scheme() && again->host() == url->host() && again->fragment() == url->fragment());
    }
    const size_t line = text.view().find(u'\n');
    if (line != std::u16string_view::npos) {
        const auto url = NSURL::URLWithString(text.substringWithRange({0, line}));
        const auto base = NSURL::URLWithString(text.substringWithRange({line + 1, text.length() - line - 1}));
        if (url && base) (void)stringRelativeToURL(url, base);
    }
    const NSString path = NSString(u"/") + text;
    if (const auto url = NSURL::fileURLWithPath(path)) {
        require(url->isFileURL());
        require(url->path() == path);
    }
    return 0;
}
