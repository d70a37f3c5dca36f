// Assertions of the object layer: one handler for the process, replaceable while it runs.
//
//     wq::AssertionScope quiet([](const wq::AssertionFailure& failure) { ... });
//
// The default handler raises. After a handler that returns, the operation goes on along the path
// that follows the check. Null never asserts.
#pragma once

#include <functional>
#include <string_view>

#include "platform/WQXMLException.h"

namespace wq {
class Object;

// What a handler is told.
struct AssertionFailure {
    std::string_view operation;  // as it is called in C++: "insertChild_before"
    const Object* receiver;      // null in a class operation; not to be kept
    std::string_view file;       // "WQXMLNode", or with its folder above dom; no extension
    int line;                    // of that file
    NSString description;        // what does not hold, in words
};

// The default raises WQXMLException with the name "NSInternalInconsistencyException" and the
// description as reason.
using AssertionHandler = std::function<void(const AssertionFailure&)>;
// Returns the handler that was in place; an empty one means the default.
AssertionHandler setAssertionHandler(AssertionHandler handler);

// Calls the current handler.
void fail(const AssertionFailure& failure);

// Puts a handler in place for a scope.
class AssertionScope {
public:
    // An empty handler means the default.
    explicit AssertionScope(AssertionHandler handler) : previous(setAssertionHandler(std::move(handler))) {}
    ~AssertionScope() { setAssertionHandler(std::move(previous)); }
    AssertionScope(const AssertionScope&) = delete;
    AssertionScope& operator=(const AssertionScope&) = delete;

private:
    AssertionHandler previous;
};

// For WQ_ASSERT: what stands between the last slash of a path and the first dot behind it.
consteval std::string_view fileName(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1);
    return path.substr(0, path.find('.'));
}
}  // namespace wq

// In an operation of an object. Not inside a lambda: the operation's name would be "operator()".
#define WQ_ASSERT(condition, description) \
    ((condition) || this->isNil() ? void() : wq::fail({__func__, this, wq::fileName(__FILE__), __LINE__, description}))
