// A URL of bytes from outside: kept as it stands, and told apart the same way twice; and a path of
// the file system, there and back.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/NSURL.h"

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
    const NSString path = NSString(u"/") + text;
    if (const auto url = NSURL::fileURLWithPath(path)) {
        require(url->isFileURL());
        require(url->path() == path);
    }
    return 0;
}
