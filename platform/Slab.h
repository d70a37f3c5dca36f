// Storage for small objects that come and go in great numbers: cut from blocks, one free list for each size.
//
// A block is never given back; what was freed serves the next object of that size. Each thread has
// lists of its own. Under AddressSanitizer every object stands alone, so that a use after its end is found.
#pragma once

#include <cstddef>

namespace wq {

// Storage of that many bytes, aligned to 16. Raises std::bad_alloc.
void* allocateSmall(size_t size);
// Takes it back; the size is the one that it was made with.
void freeSmall(void* memory, size_t size) noexcept;

}  // namespace wq
