// The simplest style and the simplest font there can be, without a platform behind them.
#pragma once

#include "common/core/css/Font.h"
#include "common/core/css/Style.h"

class PlainFont : public CSS::Font {
public:
    PlainFont* Clone() const override { return new PlainFont(*this); }
};

class PlainStyle : public CSS::Style {};
