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

    // Where resources are looked for, first one first: the folder that the library is installed
    // with, then the one of its source tree. An application that moves them, or wants none, says so
    // before it uses the first document. Returns the folders that were in place.
    static std::vector<std::string> setResourceFolders(std::vector<std::string> folders);
};
