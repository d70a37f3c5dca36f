// A drag session of the platform. The application derives from it; the library only hands it on.
#pragma once

class NSDraggingInfo {
public:
    virtual ~NSDraggingInfo() = default;
};
