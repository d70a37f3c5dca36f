#include "common/core/css/Stylesheet.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

#include "common/core/css/Parser.h"

namespace CSS {

namespace {

// The size of a file in bytes, whose reading begins at its start then; below 0 for what has none, as a folder.
long sizeOf(FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long size = std::ftell(file);
    std::rewind(file);
    return size == std::numeric_limits<long>::max() ? -1 : size;
}

struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
};

}  // namespace

// Wanted: the file is not closed.
Stylesheet* Stylesheet::CreateWithFile(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return nullptr;
    const long size = sizeOf(file);
    if (size < 0) return nullptr;
    const std::unique_ptr<char, Free> buffer(static_cast<char*>(std::malloc(static_cast<size_t>(size) + 1)));
    if (!buffer) return nullptr;
    const size_t count = std::fread(buffer.get(), 1, static_cast<size_t>(size), file);
    buffer.get()[count] = '\0';
    return Parser().Parse(buffer.get());
}

Stylesheet* Stylesheet::CreateWithData(const std::string& text) { return Parser().Parse(text); }

void Stylesheet::Print() const {
    for (const auto& rule : importRules) rule->Print();
    for (const auto& rule : mediaRules) rule->Print();
    for (const auto& rule : pageRules) rule->Print();
    for (const auto& rule : styleRules) rule->Print();
}

}  // namespace CSS
