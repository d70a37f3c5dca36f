#include "examples/shared/Opening.h"

#include <fmt/format.h>
#include <libxml/xmlerror.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "platform/WQXMLException.h"

namespace {

// HTML begins with its DOCTYPE or its root, has no XML declaration, and does not call itself XHTML.
bool looksLikeHTML(std::string_view bytes) {
    std::string head(bytes.substr(0, 1024));
    std::transform(head.begin(), head.end(), head.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (head.find("<?xml") != std::string::npos || head.find("xhtml") != std::string::npos) return false;
    return head.find("<!doctype html") != std::string::npos || head.find("<html") != std::string::npos;
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
    const auto arguments = NSDictionary::dictionary();
    if (elementClasses) arguments->setObject_forKey(elementClasses, DefaultElementClassesKey);
    if (looksLikeHTML(data->view())) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    try {
        auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, url, arguments, nullptr);
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
