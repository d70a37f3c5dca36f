#include "platform/Assertion.h"

#include <utility>

namespace wq {

namespace {
AssertionHandler& currentHandler() {
    static AssertionHandler handler;
    return handler;
}
}  // namespace

AssertionHandler setAssertionHandler(AssertionHandler handler) { return std::exchange(currentHandler(), std::move(handler)); }

void fail(const AssertionFailure& failure) {
    if (!currentHandler()) throw WQXMLException(NSInternalInconsistencyException, failure.description);
    AssertionHandler handler = currentHandler();  // it may put another in its place
    handler(failure);
}

}  // namespace wq
