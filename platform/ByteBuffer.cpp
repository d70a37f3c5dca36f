#include "platform/ByteBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace wq {

namespace {

constexpr size_t kSmallest = 4096;  // what libxml2 writes at once

char* reallocated(char* block, size_t capacity) {
    void* moved = std::realloc(block, capacity);
    if (!moved) throw std::bad_alloc();
    return static_cast<char*>(moved);
}

}  // namespace

void ByteBuffer::append(std::string_view more) {
    if (more.empty()) return;
    const std::string_view before = view();
    const bool isOwn = more.data() >= before.data() && more.data() < before.data() + before.size();
    const auto place = isOwn ? more.data() - before.data() : 0;
    makeRoom(before.size() + more.size());
    std::memcpy(grown.get() + size, isOwn ? grown.get() + place : more.data(), more.size());
    size += more.size();
}

// The bytes are in the grown block afterwards.
void ByteBuffer::makeRoom(size_t needed) {
    if (needed <= capacity) return;
    const size_t wanted = std::max({needed, 2 * capacity, kSmallest});
    char* block = reallocated(grown.get(), wanted);
    static_cast<void>(grown.release());
    grown.reset(block);
    capacity = wanted;
    size += given.copy(block, given.size());
    given = {};
}

}  // namespace wq
