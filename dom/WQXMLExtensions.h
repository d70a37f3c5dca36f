// What documents need of URLs besides what platform/NSURL.h gives.
#pragma once

#include "platform/NSURL.h"

// "file:///..." becomes "file://localhost/...", so that texts of file URLs compare; every other URL,
// and null, is answered as it is.
Ref<NSURL> standardizedFileURL(const Ref<NSURL>& url);

// The text of a URL as written in a document at `base`, for links. File URLs are compared standardised.
// The first of these that fits:
//   - a null base: the absolute text;
//   - the absolute text begins with that of the base: what follows, "" for the base itself, and
//     "2.html" for ".../chapter2.html" at ".../chapter";
//   - a bare fragment: itself;
//   - schemes that differ as texts: the absolute text;
//   - everything else is libxml2's: a path that may begin with "../", "./" for the folder itself. The
//     query is lost, user and port are not compared, the fragment stays, an apostrophe is written "%27".
//     Null where libxml2 has no answer.
// Null URL: null.
NSString stringRelativeToURL(const Ref<NSURL>& url, const Ref<NSURL>& base);
