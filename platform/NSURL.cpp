#include "platform/NSURL.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <uriparser/Uri.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

std::string bytes(const UriTextRangeA& range) { return range.first ? std::string(range.first, range.afterLast) : std::string(); }
NSString text(const UriTextRangeA& range) { return range.first ? wq::fromUTF8(bytes(range)) : NSString(); }

NSString host(const UriUriA& uri) {
    const NSString found = text(uri.hostText);
    return found.length() > 0 ? found : nullptr;
}

std::string escapedPath(const UriUriA& uri) {
    std::string path;
    if (!uri.pathHead && uri.absolutePath) path += '/';
    const bool startsWithSlash = uri.absolutePath || uri.hostText.first;
    for (const UriPathSegmentA* segment = uri.pathHead; segment; segment = segment->next) {
        if (segment != uri.pathHead || startsWithSlash) path += '/';
        path += bytes(segment->text);
    }
    return path;
}

NSString path(const UriUriA& uri) {
    std::string path = escapedPath(uri);
    const char* end = uriUnescapeInPlaceExA(path.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    path.resize(static_cast<size_t>(end - path.data()));
    if (path.find('\0') != std::string::npos) return nullptr;
    return wq::fromUTF8(path);
}

}  // namespace

Ref<NSURL> NSURL::URLWithString(const NSString& text) {
    if (!text) return nullptr;
    const std::string bytes = wq::toUTF8(text);
    UriUriA uri;
    const char* errorPosition = nullptr;
    if (uriParseSingleUriExA(&uri, bytes.data(), bytes.data() + bytes.size(), &errorPosition) != URI_SUCCESS) return nullptr;
    const std::unique_ptr<UriUriA, decltype(&uriFreeUriMembersA)> members(&uri, &uriFreeUriMembersA);
    auto made = Ref<NSURL>(new NSURL);
    made->my = {text, ::text(uri.scheme), ::host(uri), ::text(uri.fragment), ::path(uri)};
    return made;
}

Ref<NSURL> NSURL::fileURLWithPath(const NSString& path) {
    if (path.length() == 0 || path.view().find(u'\0') != std::u16string_view::npos) return nullptr;
    std::error_code noCurrentFolder;
    const std::string absolute = std::filesystem::absolute(wq::toUTF8(path), noCurrentFolder).string();
    if (noCurrentFolder) return nullptr;
    std::vector<char> text(7 + 3 * absolute.size() + 1);  // "file://", each byte escaped, NUL
    if (uriUnixFilenameToUriStringA(absolute.c_str(), text.data()) != URI_SUCCESS) return nullptr;
    return URLWithString(wq::fromUTF8(text.data()));
}

bool NSURL::isFileURL() const { return my.scheme && u_strcasecmp(my.scheme.view().data(), u"file", U_FOLD_CASE_DEFAULT) == 0; }

bool NSURL::isEqual(const Ref<wq::Object>& other) const {
    const auto url = wq::cast<NSURL>(other);
    return url && my.absoluteString == url->my.absoluteString;
}

NSString NSURL::description() const { return my.absoluteString; }
