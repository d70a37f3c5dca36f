// What the tests of the platform classes share.
#pragma once

#include "platform/WQXMLException.h"

namespace test {

// The name of what `work` raises; null if it raises nothing.
inline NSString nameRaised(auto&& work) {
    try {
        work();
    } catch (const WQXMLException& exception) {
        return exception.name();
    }
    return nullptr;
}

}  // namespace test
