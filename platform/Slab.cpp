#include "platform/Slab.h"

#include <new>
#include <utility>

namespace wq {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSlab = false;
#elif defined(__has_feature)
constexpr bool kSlab = !__has_feature(address_sanitizer);
#else
constexpr bool kSlab = true;
#endif
constexpr size_t kUnit = 16, kLargest = 256, kBlock = size_t{64} * 1024;

struct FreeCell {
    FreeCell* next;
};
// The model spares a shared library the call that finds the variable.
[[gnu::tls_model("initial-exec")]] thread_local FreeCell* gFree[kLargest / kUnit + 1];

size_t roundedUp(size_t size) { return size ? (size + kUnit - 1) / kUnit * kUnit : kUnit; }

// The cells come out in the order of their addresses.
void* carve(size_t size) {
    auto* block = static_cast<char*>(::operator new(kBlock));
    FreeCell*& head = gFree[size / kUnit];
    for (size_t at = (kBlock / size - 1) * size; at; at -= size) head = new (block + at) FreeCell{head};
    return block;
}

}  // namespace

void* allocateSmall(size_t size) {
    size = roundedUp(size);
    if (!kSlab || size > kLargest) return ::operator new(size);
    FreeCell*& head = gFree[size / kUnit];
    if (!head) return carve(size);
    FreeCell* cell = std::exchange(head, head->next);
    if (head) __builtin_prefetch(head, 1);  // for the next one
    return cell;
}

void freeSmall(void* memory, size_t size) noexcept {
    size = roundedUp(size);
    if (!kSlab || size > kLargest) return ::operator delete(memory);
    FreeCell*& head = gFree[size / kUnit];
    head = new (memory) FreeCell{head};
}

}  // namespace wq
