// Counted bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/ByteBuffer.h"
#include "platform/Object.h"

class NSError;
class NSURL;

class NSData : public wq::Object {
public:
    // Empty.
    NSData() = default;

    // Takes the bytes over or copies them.
    static Ref<NSData> dataWithBytes(std::string bytes);

    // Reads a whole resource: file, http and https, and no other protocol. Null, and the error set
    // if one is given, when it cannot be read; an empty resource is empty data, not null. A
    // folder is an error, and so is a URL without scheme. Null URL: null, with an error.
    static Ref<NSData> dataWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error);

    // How many bytes such a read accepts: 2^31 - 1, the size of the largest document, unless an
    // application sets another limit. A larger resource is an error. Returns the limit that was in place.
    static uint64_t setSizeLimit(uint64_t bytes);

    // The bytes, valid as long as this object and until the next append. Null: empty.
    std::string_view view() const { return bytes ? bytes->view() : std::string_view(); }
    size_t length() const { return view().size(); }  // bytes

    // Null: nothing.
    void append(std::string_view more);

    // The bytes as they are now, for whoever reads them in place: a later append leaves these alone.
    // Null without any.
    std::shared_ptr<const wq::ByteBuffer> snapshot() const { return bytes; }

private:
    explicit NSData(std::shared_ptr<wq::ByteBuffer> kept) : bytes(std::move(kept)) {}

    std::shared_ptr<wq::ByteBuffer> bytes;
};
