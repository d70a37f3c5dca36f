// Styled text as a page for browsers. The HTML writer writes what is in the body; head, base sheet and body are the
// application's.
#pragma once

#include <string>

#include "mac/Frameworks/WQCSS/WQCSSStyle.h"
#include "platform/NSAttributedString.h"
#include "platform/NSURL.h"

// UTF-8. A null or empty title is written as "Untitled". `style` is that of the element around the text: the body has
// its font and colour. Links are made relative to the base, which may be null.
//
// The writer says nothing of text blocks, right margins and line separators: the rule and the margins of a quotation, and
// the line ends of preformatted text, are not there.
std::string htmlPage(const Ref<NSAttributedString>& text, const NSString& title, const Ref<WQCSSStyle>& style, const Ref<NSURL>& baseURL);
