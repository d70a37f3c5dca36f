#include "tests/memory/FailingMemory.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <libxml/xmlmemory.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>

extern "C" {
// The linker gives the library's own malloc and realloc these names (see the build).
void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* block, size_t size);
}

namespace {

struct Count {
    uint64_t asked = 0, refusedAt = 0;
    bool isOn = false, forGood = false;

    bool refuses() {
        if (!isOn) return false;
        ++asked;
        return forGood ? asked >= refusedAt : asked == refusedAt;
    }
};
Count gLibrary, gLibxml2;

Count& countOf(test::Memory memory) { return memory == test::Memory::kLibrary ? gLibrary : gLibxml2; }

}  // namespace

void* __wrap_malloc(size_t size) { return gLibrary.refuses() ? nullptr : __real_malloc(size); }
void* __wrap_realloc(void* block, size_t size) { return gLibrary.refuses() ? nullptr : __real_realloc(block, size); }

void* operator new(size_t size) {
    if (!gLibrary.refuses())
        if (void* block = __real_malloc(size ? size : 1)) return block;
    throw std::bad_alloc();
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return gLibrary.refuses() ? nullptr : __real_malloc(size ? size : 1); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }

// ---- libxml2's

namespace {

int gFile = -1;

void tellFunction() {
    void* frames[40];
    const int count = backtrace(frames, 40);
    for (int i = 0; i < count; ++i) {
        Dl_info info;
        if (!dladdr(frames[i], &info) || !info.dli_fname || !std::strstr(info.dli_fname, "libxml2") || !info.dli_sname) continue;
        if (write(gFile, info.dli_sname, std::strlen(info.dli_sname)) > 0) return;
    }
}

bool libxml2Refuses() {
    const bool refuses = gLibxml2.refuses();
    if (refuses && gLibxml2.asked == gLibxml2.refusedAt && gFile >= 0) tellFunction();
    return refuses;
}

void* refusingMalloc(size_t size) { return libxml2Refuses() ? nullptr : __real_malloc(size); }
void* refusingRealloc(void* block, size_t size) { return libxml2Refuses() ? nullptr : __real_realloc(block, size); }
char* refusingStrdup(const char* text) {
    const size_t size = std::strlen(text) + 1;
    void* copy = refusingMalloc(size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

}  // namespace

namespace test {

void tellFunctionThatIsRefused(int file) { gFile = file; }

FailingMemory::FailingMemory(Memory whose, uint64_t nth, Refusal refusal) : memory(whose) {
    if (memory == Memory::kLibxml2) {
        void* frames[1];
        backtrace(frames, 1);  // the first call loads a library
        xmlMalloc = xmlMallocAtomic = refusingMalloc;
        xmlRealloc = refusingRealloc;
        xmlMemStrdup = refusingStrdup;
    }
    countOf(memory) = {0, nth, true, refusal == Refusal::kForGood};
}

FailingMemory::~FailingMemory() {
    countOf(memory).isOn = false;
    if (memory == Memory::kLibxml2) {
        xmlMalloc = xmlMallocAtomic = __real_malloc;  // by its own name it would be the library's
        xmlRealloc = __real_realloc;
        xmlMemStrdup = strdup;
    }
}

bool FailingMemory::hasRefused() const { return countOf(memory).asked >= countOf(memory).refusedAt; }

}  // namespace test
