#include "platform/NSColorSpace.h"

NSString NSColorSpace::localizedName() const {
    switch (kind) {
        case kGeneric: return u"Generic RGB";
        case kDevice: return u"Device RGB";
        case kSRGB: return u"sRGB";
        case kNull: break;
    }
    return nullptr;
}
