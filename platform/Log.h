// The process log, where print operations and diagnostic messages go. It has no levels.
#pragma once

#include <functional>

#include "platform/NSString.h"

namespace wq {
// Receives one message at a time, without a line end.
using LogSink = std::function<void(const NSString& message)>;

// Returns the sink that was in place; an empty one means the default, which writes each message
// to standard error as one line of UTF-8.
LogSink setLogSink(LogSink sink);

// Null is logged as "(null)".
void log(const NSString& message);
}  // namespace wq
