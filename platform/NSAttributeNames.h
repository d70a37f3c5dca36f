// The keys of the attributes of text, in a dictionary that holds for a run of characters.
#pragma once

inline constexpr const char16_t* NSFontAttributeName = u"NSFont";                      // NSFont
inline constexpr const char16_t* NSForegroundColorAttributeName = u"NSColor";          // NSColor
inline constexpr const char16_t* NSParagraphStyleAttributeName = u"NSParagraphStyle";  // NSParagraphStyle
inline constexpr const char16_t* NSUnderlineStyleAttributeName = u"NSUnderline";       // a number; any value underlines
inline constexpr const char16_t* NSLinkAttributeName = u"NSLink";                      // NSURL or string
