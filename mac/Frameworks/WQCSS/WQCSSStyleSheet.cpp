#include "mac/Frameworks/WQCSS/WQCSSStyleSheet.h"

#include "common/core/css/Parser.h"

bool WQCSSStyleSheet::initWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error) {
    const NSString text = NSString::stringWithContentsOfURL_encoding_error(url, NSUTF8StringEncoding, error);
    return text && initWithString(text);
}

bool WQCSSStyleSheet::initWithString(const NSString& text) {
    if (!text) return false;
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse(wq::toUTF8(text));
    setCSSStyleSheet(sheet.Get());
    return static_cast<bool>(sheet);
}

bool WQCSSStyleSheet::initWithCSSStyleSheet(CSS::Stylesheet* sheet) {
    setCSSStyleSheet(sheet);
    return true;
}
