#include "platform/WQXMLException.h"

WQXMLException::WQXMLException(NSString name, NSString reason) {
    my.printed = wq::toUTF8(name) + ": " + wq::toUTF8(reason);
    my.name = std::move(name);
    my.reason = std::move(reason);
}
