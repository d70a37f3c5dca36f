#include "platform/Log.h"

#include <cstdio>
#include <utility>

namespace wq {

namespace {
LogSink& currentSink() {
    static LogSink sink;
    return sink;
}
}  // namespace

LogSink setLogSink(LogSink sink) { return std::exchange(currentSink(), std::move(sink)); }

void log(const NSString& message) {
    if (LogSink sink = currentSink()) return sink(printed(message));  // a copy: a sink may replace itself
    const std::string line = toUTF8(printed(message)) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace wq
