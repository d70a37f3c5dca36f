// The lengths around a box. Styles share one record until somebody changes it.
#pragma once

#include "common/core/css/StyleTypes.h"
#include "common/core/include/Shared.h"

namespace CSS {

struct BoxDimensions : SharedObject {
    _WQCSSLength marginTop, marginLeft, marginBottom, marginRight;
    _WQCSSLength paddingTop, paddingLeft, paddingBottom, paddingRight;
    _WQCSSBorder borderTop, borderLeft, borderBottom, borderRight;
    _WQCSSLength width{0, WQCSSLengthTypeAuto}, height{0, WQCSSLengthTypeAuto};
};

}  // namespace CSS
