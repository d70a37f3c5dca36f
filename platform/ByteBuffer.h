// Bytes that grow at their end.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace wq {

// Grown memory comes from realloc, which moves the pages of a large block where a string would copy them.
class ByteBuffer {
public:
    ByteBuffer() = default;
    explicit ByteBuffer(std::string bytes) : given(std::move(bytes)) {}  // taken over as they are
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;

    // Valid until the next append.
    std::string_view view() const { return grown ? std::string_view(grown.get(), size) : std::string_view(given); }

    // Those may be bytes of the buffer itself. Raises std::bad_alloc, and is as before.
    void append(std::string_view more);

private:
    struct Free {
        void operator()(char* block) const { std::free(block); }
    };

    void makeRoom(size_t needed);

    std::string given;                  // until the first append
    std::unique_ptr<char, Free> grown;  // from then on
    size_t size = 0, capacity = 0;      // of the grown bytes
};

}  // namespace wq
