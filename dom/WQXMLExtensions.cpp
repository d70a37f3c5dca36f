#include "dom/WQXMLExtensions.h"

#include <libxml/uri.h>

#include "dom/Binding.h"

using wq::Bytes;

namespace {

constexpr std::u16string_view kNoHost = u"file:///";

bool beginsWith(const NSString& text, std::u16string_view beginning) { return text.view().substr(0, beginning.size()) == beginning; }

NSString withEscapedApostrophes(const NSString& text) {
    std::u16string escaped;
    for (char16_t unit : text.view()) unit == u'\'' ? escaped += u"%27" : escaped += unit;
    return escaped;
}

}  // namespace

Ref<NSURL> standardizedFileURL(const Ref<NSURL>& url) {
    if (!url->isFileURL() || url->host() || !beginsWith(url->absoluteString(), kNoHost)) return url;
    return NSURL::URLWithString(NSString(u"file://localhost/") + url->absoluteString().view().substr(kNoHost.size()));
}

NSString stringRelativeToURL(const Ref<NSURL>& url, const Ref<NSURL>& givenBase) {
    // 1-3.
    if (!givenBase) return url->absoluteString();
    if (!url) return nullptr;
    const Ref<NSURL> base = standardizedFileURL(givenBase), standard = standardizedFileURL(url);
    const NSString baseText = base->absoluteString(), text = standard->absoluteString();

    // 4-6. Where nothing is left to compare.
    if (beginsWith(text, baseText)) return text.view().substr(baseText.length());
    if (beginsWith(text, u"#")) return text;
    if (standard->scheme() != base->scheme()) return url->absoluteString();

    // 7-8.
    wq::startLibrary();
    const Bytes escaped(withEscapedApostrophes(text)), escapedBase(withEscapedApostrophes(baseText));
    const NSString relative = wq::takeString(wq::guarded([&] { return xmlBuildRelativeURI(escaped, escapedBase); }, xmlFree));
    if (!relative) return nullptr;

    // 9. libxml2 drops fragments, and writes apostrophes as they are.
    const bool lostFragment = standard->fragment() && !NSURL::URLWithString(relative)->fragment();
    return withEscapedApostrophes(lostFragment ? relative + u"#" + standard->fragment() : relative);
}
