#include "platform/NSData.h"

#include <curl/curl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "platform/NSError.h"
#include "platform/NSURL.h"

namespace {

constexpr long kConnectSeconds = 30;
constexpr long kRedirects = 10;
uint64_t sizeLimit = INT32_MAX;

using CurlString = std::unique_ptr<char, decltype(&curl_free)>;

// ---- Errors

Ref<NSError> makeError(const char16_t* domain, int code, const NSString& url, std::string reason) {
    std::replace(reason.begin(), reason.end(), '\n', ' ');  // one line, whatever a path holds
    return NSError::errorWithDomain_code_description(domain, code, wq::fromUTF8(fmt::format("{}: {}", wq::toUTF8(url), reason)));
}

Ref<NSError> fileError(int code, const NSString& url) {
    return makeError(NSPOSIXErrorDomain, code, url, std::generic_category().message(code));
}

Ref<NSError> curlError(CURLcode code, const NSString& url, const char* reason = "") {
    return makeError(u"libcurl", code, url, *reason ? reason : curl_easy_strerror(code));
}

// ---- Checks that libcurl does not make

bool hasScheme(const Ref<NSURL>& url, const char* scheme) { return curl_strequal(wq::toUTF8(url->scheme()).c_str(), scheme); }

// libcurl would guess: it takes a text without scheme for a host name, "mailto:a@b.org" for user
// and host, and looks for the host of "http:///path" in the path.
Ref<NSError> refusal(const Ref<NSURL>& url) {
    if (!url) return curlError(CURLE_URL_MALFORMAT, wq::nullText, "No URL");
    const NSString& text = url->absoluteString();
    if (!url->scheme()) return curlError(CURLE_URL_MALFORMAT, text, "The URL has no scheme");
    if (url->isFileURL()) return nullptr;
    if (!hasScheme(url, "http") && !hasScheme(url, "https")) {
        const std::string scheme = wq::toUTF8(url->scheme());
        return curlError(CURLE_UNSUPPORTED_PROTOCOL, text, fmt::format("Protocol \"{}\" is not supported", scheme).c_str());
    }
    return url->host() ? nullptr : curlError(CURLE_URL_MALFORMAT, text, "The URL has no host");
}

// The path that libcurl will open for a file URL; empty if it will refuse the URL.
std::string pathToBeOpened(const std::string& url) {
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> parts(curl_url(), &curl_url_cleanup);
    char* escaped = nullptr;
    if (curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) return "";
    if (curl_url_get(parts.get(), CURLUPART_PATH, &escaped, 0) != CURLUE_OK) return "";
    const CurlString keptEscaped(escaped, &curl_free);
    int length = 0;
    const CurlString path(curl_easy_unescape(nullptr, escaped, 0, &length), &curl_free);
    std::string bytes(path.get(), static_cast<size_t>(length));
    return bytes.starts_with('/') && bytes.find('\0') == std::string::npos ? bytes : "";
}

// libcurl reads a folder as zero bytes of success and does not tell a missing file from one that is
// not permitted.
Ref<NSError> fileProblem(const Ref<NSURL>& url) {
    const NSString& text = url->absoluteString();
    const std::string path = url->isFileURL() ? pathToBeOpened(wq::toUTF8(text)) : "";
    if (path.empty()) return nullptr;
    struct stat file;
    if (stat(path.c_str(), &file) != 0) return fileError(errno, text);
    if (S_ISDIR(file.st_mode)) return fileError(EISDIR, text);
    if (access(path.c_str(), R_OK) != 0) return fileError(errno, text);
    return nullptr;
}

// ---- The transfer

struct Transfer {
    std::shared_ptr<wq::ByteBuffer> bytes = std::make_shared<wq::ByteBuffer>();
    bool isTooLarge = false, isShortOfMemory = false;
    char reason[CURL_ERROR_SIZE] = "";
};

// Called by libcurl, through which nothing may be raised.
size_t receive(char* part, size_t unit, size_t count, void* context) {
    auto& transfer = *static_cast<Transfer*>(context);
    const size_t size = unit * count;
    transfer.isTooLarge = size > sizeLimit || transfer.bytes->view().size() > sizeLimit - size;
    if (transfer.isTooLarge) return 0;
    try {
        transfer.bytes->append({part, size});
    } catch (const std::bad_alloc&) {
        transfer.isShortOfMemory = true;
        return 0;
    }
    return size;
}

CURLcode perform(const std::string& url, Transfer& transfer) {
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> curl(started == CURLE_OK ? curl_easy_init() : nullptr, &curl_easy_cleanup);
    if (!curl) return CURLE_FAILED_INIT;
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_PROTOCOLS_STR, "file,http,https");
    curl_easy_setopt(curl.get(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl.get(), CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_MAXREDIRS, kRedirects);
    curl_easy_setopt(curl.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    curl_easy_setopt(curl.get(), CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(curl.get(), CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(sizeLimit));
    curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, transfer.reason);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, &receive);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &transfer);
    return curl_easy_perform(curl.get());
}

Ref<NSError> read(const Ref<NSURL>& url, std::shared_ptr<wq::ByteBuffer>& bytes) {
    if (auto error = refusal(url)) return error;
    if (auto error = fileProblem(url)) return error;
    Transfer transfer;
    const CURLcode code = perform(wq::toUTF8(url->absoluteString()), transfer);
    if (transfer.isTooLarge) return curlError(CURLE_FILESIZE_EXCEEDED, url->absoluteString());
    if (transfer.isShortOfMemory) return curlError(CURLE_OUT_OF_MEMORY, url->absoluteString());
    if (code != CURLE_OK) return curlError(code, url->absoluteString(), transfer.reason);
    bytes = std::move(transfer.bytes);
    return nullptr;
}

}  // namespace

Ref<NSData> NSData::dataWithBytes(std::string bytes) { return Ref<NSData>(new NSData(std::make_shared<wq::ByteBuffer>(std::move(bytes)))); }

Ref<NSData> NSData::dataWithContentsOfURL_error(const Ref<NSURL>& url, Ref<NSError>* error) {
    std::shared_ptr<wq::ByteBuffer> bytes;
    Ref<NSError> problem = read(url, bytes);
    if (!problem) return Ref<NSData>(new NSData(std::move(bytes)));
    if (error) *error = std::move(problem);
    return nullptr;
}

void NSData::append(std::string_view more) {
    if (isNil()) return;
    if (bytes.use_count() != 1) {
        auto own = std::make_shared<wq::ByteBuffer>();
        own->append(view());
        own->append(more);  // which may be the old bytes
        bytes = std::move(own);
    } else {
        bytes->append(more);
    }
}

uint64_t NSData::setSizeLimit(uint64_t bytes) { return std::exchange(sizeLimit, bytes); }
