#include "platform/NSError.h"

Ref<NSError> NSError::errorWithDomain_code_description(const NSString& domain, int64_t code, const NSString& description) {
    auto made = Ref<NSError>(new NSError);
    made->my = {domain, code, description};
    return made;
}

NSString NSError::description() const { return isNil() ? nullptr : my.localizedDescription; }
