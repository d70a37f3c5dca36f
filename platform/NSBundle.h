// The resources that the library brings along.
#pragma once

#include <string>
#include <vector>

#include "platform/NSString.h"

class NSBundle {
public:
    // The path of a resource, "catalog" and "xml" say, in the first folder that holds it; null if
    // none does.
    static NSString pathForResource_ofType(const NSString& name, const NSString& extension);

    // Where resources are looked for, first one first: "share/wq" of the prefix that the shared library lies in, and
    // of the one whose "bin" holds the program that it is linked into, wherever those were moved; then the folder
    // that the library was to be installed with; then, unless the library was built without it, the one of its source
    // tree. An application that keeps them elsewhere, or wants none, says so before it uses the first document.
    // Returns the folders that were in place.
    static std::vector<std::string> setResourceFolders(std::vector<std::string> folders);
};
