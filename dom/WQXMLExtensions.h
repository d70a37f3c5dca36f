// What documents need of URLs besides what platform/NSURL.h gives.
#pragma once

#include "platform/NSURL.h"

// "file:///..." becomes "file://localhost/...", so that texts of file URLs compare; every other URL,
// and null, is answered as it is.
Ref<NSURL> standardizedFileURL(const Ref<NSURL>& url);

// The text of a URL as written in a document at `base`, for links. With a null base, and where the
// schemes differ as texts, the absolute text. Where that begins with the text of the base, what
// follows: "" for the base itself, and "2.html" for ".../chapter2.html" at ".../chapter".
// Everything else is libxml2's: a path that may begin with "../", "./" for the folder itself. The
// query is lost there, and user and port are not compared; the fragment stays. An apostrophe is
// written "%27". Null where libxml2 has no answer, and for null.
NSString stringRelativeToURL(const Ref<NSURL>& url, const Ref<NSURL>& base);
