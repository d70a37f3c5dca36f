#include "examples/shared/Opening.h"

#include <fmt/format.h>
#include <libxml/xmlerror.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "platform/WQXMLException.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Behind white space, comments and a byte order mark, in lower case, up to its end.
std::string firstMarkup(std::string_view bytes) {
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    while (!bytes.empty()) {
        bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
        if (!bytes.starts_with("<!--")) break;
        const size_t end = bytes.find("-->");
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 3);
    }
    std::string markup(bytes.substr(0, std::min(bytes.find('>'), bytes.size())));
    std::transform(markup.begin(), markup.end(), markup.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return markup;
}

enum class Kind { XML, HTML, Either };

// HTML says so in its document type. Only the root tells nothing: XML may have one of that name.
Kind kindOf(std::string_view bytes) {
    const std::string markup = firstMarkup(bytes);
    if (markup.find("xhtml") != std::string::npos) return Kind::XML;
    if (markup.starts_with("<!doctype html")) return markup.find("legacy-compat") == std::string::npos ? Kind::HTML : Kind::Either;
    return markup == "<html" || markup.starts_with("<html ") || markup.starts_with("<html\n") ? Kind::Either : Kind::XML;
}

// Where the parser would guess another encoding, a byte order mark tells it.
std::string withMarkOfUTF8(std::string_view bytes) {
    std::string head(bytes.substr(0, 2048));
    std::transform(head.begin(), head.end(), head.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const bool isUTF8 = wq::toUTF8(wq::fromUTF8(bytes)) == bytes;
    const bool saysNothing = head.find("charset") == std::string::npos && !bytes.starts_with(kByteOrderMark);
    return std::string(isUTF8 && saysNothing ? kByteOrderMark : "") + std::string(bytes);
}

// What the process writes to its standard error while this lives is kept back.
class StandardErrorKept {
public:
    StandardErrorKept() : file(std::tmpfile()), saved(dup(STDERR_FILENO)) {
        std::fflush(stderr);
        if (file) dup2(fileno(file), STDERR_FILENO);
    }
    ~StandardErrorKept() {
        release();
        if (file) std::fclose(file);
    }
    StandardErrorKept(const StandardErrorKept&) = delete;
    StandardErrorKept& operator=(const StandardErrorKept&) = delete;

    std::string text() {
        release();
        if (!file) return "";
        std::rewind(file);
        std::string text;
        for (int byte; (byte = std::fgetc(file)) != EOF;) text += static_cast<char>(byte);
        return text;
    }

private:
    void release() {
        if (saved < 0) return;
        std::fflush(stderr);
        dup2(saved, STDERR_FILENO);
        close(saved);
        saved = -1;
    }
    std::FILE* file;
    int saved;
};

}  // namespace

Ref<WQXMLDocument> openDocument(const std::string& path, const Ref<NSDictionary>& elementClasses) {
    const Ref<NSURL> url = NSURL::fileURLWithPath(wq::fromUTF8(path));
    Ref<NSError> error;
    const Ref<NSData> data = NSData::dataWithContentsOfURL_error(url, &error);
    if (!data) throw CannotOpen{oneLine(error->localizedDescription())};  // which names the file
    const auto parse = [&](const Ref<NSData>& bytes, bool asHTML) {
        const auto arguments = NSDictionary::dictionary();
        if (elementClasses) arguments->setObject_forKey(elementClasses, DefaultElementClassesKey);
        if (asHTML) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
        return WQXMLDocument::newWithData_baseURL_arguments_error(bytes, url, arguments, nullptr);
    };
    const auto parseHTML = [&] { return parse(NSData::dataWithBytes(withMarkOfUTF8(data->view())), true); };
    const auto parseEither = [&] {
        try {
            return parse(data, false);
        } catch (const WQXMLException&) {
            return parseHTML();
        }
    };
    try {
        const Kind kind = kindOf(data->view());
        auto document = kind == Kind::XML ? parse(data, false) : kind == Kind::HTML ? parseHTML() : parseEither();
        if (!document) throw CannotOpen{fmt::format("{}: the file is empty", path)};
        return document;
    } catch (const WQXMLException& exception) {
        const xmlError* last = xmlGetLastError();
        throw CannotOpen{fmt::format("{}:{}: {}", path, last ? last->line : 0, oneLine(exception.reason()))};
    }
}

Ref<WQCSSStyleSheet> openSheet(const std::string& path) {
    const auto url = NSURL::fileURLWithPath(wq::fromUTF8(path));
    Ref<NSError> error;
    const NSString text = NSString::stringWithContentsOfURL_encoding_error(url, NSUTF8StringEncoding, &error);
    if (error) throw CannotOpen{oneLine(error->localizedDescription())};  // which names the file
#ifdef WQ_NO_HARD_ASSERTIONS
    StandardErrorKept standardError;  // where the engine tells the syntax error
    const auto sheet = WQCSSStyleSheet::styleSheetWithString(text);
    const std::string message = standardError.text();
    if (!sheet) throw CannotOpen{fmt::format("{}: {}", path, oneLine(wq::fromUTF8(message)))};
    return sheet;
#else
    return WQCSSStyleSheet::styleSheetWithString(text);
#endif
}

std::string oneLine(const NSString& text) {
    std::string line = wq::toUTF8(text);
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back()))) line.pop_back();
    std::replace(line.begin(), line.end(), '\n', ' ');
    return line;
}
