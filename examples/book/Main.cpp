// typeset-manuscript DOCUMENT SHEET [FOLDER]: a small writing application without a window. It opens a document, styles it by
// a sheet, typesets it, writes it as PDF, pictures and HTML, edits it, and writes what has become of it.
//
// DOCUMENT is XML, XHTML, or HTML that the HTML 4 parser reads without a report; SHEET says what is a block.
// Into FOLDER, "out" unless named, go for a document called name.xml:
//     name.pdf           the pages, with links and an outline
//     name-pages/        the pages as pictures
//     name-spread.png    two pages that face each other, the fullest ones
//     name.html          the text for browsers
//     name-edit.png      a page before and after some edits, which bars mark
//     name-edited.xml    the document after them
// Exit code 1, one line on standard error, and nothing new in FOLDER, for what cannot be read or written.
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "examples/book/EditingSession.h"
#include "examples/book/HtmlPage.h"
#include "examples/book/Output.h"
#include "examples/book/Steps.h"
#include "examples/shared/Opening.h"
#include "platform/WQXMLException.h"

namespace {

// What no sheet can say: a quotation has a rule beside it.
void dress(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
    if (element->localName() != u"quote" && element->localName() != u"blockquote") return;
    style->setBorderLeft({1, 0});
    style->setPaddingLeft({10, WQCSSLengthTypeAbsolute});
}

std::string languageOf(const Ref<WQXMLElement>& root) {
    for (const char16_t* name : {u"xml:lang", u"lang"})
        if (const NSString language = root->getAttribute(name)) return wq::toUTF8(language);
    return "";
}

class Application {
public:
    Application(const std::string& documentPath, const std::string& sheetPath, const std::string& folder)
        : documentName(documentPath), name(std::filesystem::path(documentPath).stem().string()), folderName(folder) {
        const auto resolver = WQCSSStyleResolver::newStyleResolver();
        steps.run("opening", [&](const Progress&) {
            document = openDocument(documentPath, nullptr);
            resolver->processRulesFromStyleSheet(openSheet(sheetPath));
        });
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) ++nodes;
        refuseToReplace(documentPath);
        baseURL = NSURL::URLWithString(document->baseURI());
        rules = resolver->cssStyleResolver()->processedRules.size();
        styles = std::make_unique<StyledTree>(document, resolver, dress);
        typesetter = std::make_unique<Typesetter>(PageFormat().measure(), languageOf(document->documentElement()));
    }

    void run() {
        steps.run("resolving styles", [&](const Progress& progress) { stylesMade = styles->resolve(progress); });
        fontsShared = styles->numberOfFonts();
        typeset();
        OutputFolder output(folderName);
        try {
            write(output);
            output.publish(files());
        } catch (const CannotWrite& failure) {
            throw CannotWrite{output.asPublished(failure.line)};
        } catch (const std::filesystem::filesystem_error& error) {
            throw CannotWrite{output.asPublished(fmt::format("{}: {}", error.path1().string(), error.code().message()))};
        }
    }

    void tell() const {
        fmt::print("{}\n", book.title.empty() ? name : book.title);
        const auto row = [](const std::string& what, const auto& number, const char* unit) {
            fmt::print("  {:<20} {:>8} {}\n", what, number, unit);
        };
        row("nodes", nodes, "");
        row("rules", rules, "");
        row("styles made", stylesMade, "");
        row("fonts shared", fontsShared, "");
        row("paragraphs", book.paragraphs.size(), "");
        row("pages", book.pages.size(), "");
        for (const auto& step : steps.taken()) row(step.name, fmt::format("{:.1f}", step.seconds * 1000), "ms");
        for (const auto& line : session.told) fmt::print("  {}\n", line);
        if (session.told.empty())
            fmt::print("  no two paragraphs stand side by side: there was nothing to edit\n");
        else
            row("styles made again", stylesMadeAgain, "");
        fmt::print("  all in {}\n", folderName);
    }

private:
    Ref<WQXMLElement> root() const { return wq::cast<WQXMLElement>(document->documentElement()); }

    // All but the folder of pages.
    std::vector<std::string> files() const {
        return {name + ".html", name + ".pdf", name + "-edited.xml", name + "-edit.png", name + "-spread.png"};
    }

    // The document is not written over, where it lies in the folder that its own output goes to.
    void refuseToReplace(const std::string& documentPath) const {
        for (const std::string& file : files()) {
            const auto place = std::filesystem::path(folderName) / file;
            std::error_code absent;
            if (std::filesystem::equivalent(place, documentPath, absent))
                throw CannotWrite{fmt::format("{}: is the document itself", place.string())};
        }
    }

    void write(const OutputFolder& output) {
        steps.run("drawing the PDF", [&](const Progress& progress) { writePDF(book, *typesetter, output / (name + ".pdf"), progress); });
        steps.run("drawing pictures", [&](const Progress& progress) {
            writePictures(book, *typesetter, output / (name + "-pages"), progress);
            if (const size_t left = fullestLeftPage(book))
                writeTwoPages({book, left, {}}, {book, left + 1, {}}, *typesetter, output / (name + "-spread.png"));
        });
        steps.run("writing HTML", [&](const Progress&) { writeHTML(output); });
        steps.run("editing", [&](const Progress& progress) { editAndCompare(output, progress); });
        steps.run("writing XML", [&](const Progress&) { writeBytes(document->XMLData()->view(), output / (name + "-edited.xml")); });
    }

    void typeset() {
        steps.run("styling text", [&](const Progress&) { paragraphs = styledParagraphs(root(), *styles, baseURL); });
        if (paragraphs.empty()) throw CannotOpen{fmt::format("{}: there is no text that the sheet shows", documentName)};
        steps.run("setting lines", [&](const Progress& progress) { book = makeBook(paragraphs, *typesetter, PageFormat(), progress); });
    }

    bool isBlock(const Ref<WQXMLNode>& node) const {
        const auto style = styles->styleOf(node);
        return style && style->display() == WQCSSDisplayBlock;
    }

    void writeHTML(const OutputFolder& output) {
        const NSString title = book.title.empty() ? wq::fromUTF8(name) : wq::fromUTF8(book.title);
        writeBytes(htmlPage(joinedWithoutMarkers(paragraphs), title, styles->styleOf(root()), baseURL), output / (name + ".html"));
    }

    void editAndCompare(const OutputFolder& output, const Progress& progress) {
        session = edit(document, [&](const Ref<WQXMLNode>& node) { return isBlock(node); });
        if (session.told.empty()) return;
        stylesMadeAgain = styles->resolveAgain();
        const Book edited = makeBook(styledParagraphs(root(), *styles, baseURL), *typesetter, PageFormat(), progress);
        const size_t before = pageOf(book, session.beforehand[0]), after = pageOf(edited, session.afterwards[0]);
        if (before == book.pages.size() || after == edited.pages.size()) return;  // the sheet does not show them
        writeTwoPages({book, before, session.beforehand}, {edited, after, session.afterwards}, *typesetter, output / (name + "-edit.png"));
    }

    const std::string documentName;
    const std::string name;  // of the document's file, without its ending
    const std::string folderName;
    Steps steps;
    Ref<WQXMLDocument> document;
    Ref<NSURL> baseURL;
    std::unique_ptr<StyledTree> styles;
    std::unique_ptr<Typesetter> typesetter;
    std::vector<StyledParagraph> paragraphs;
    Book book;
    EditingSession session;
    size_t nodes = 0, rules = 0, stylesMade = 0, fontsShared = 0, stylesMadeAgain = 0;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4 || std::any_of(argv + 1, argv + argc, [](const char* argument) { return *argument == 0; })) {
        fmt::print(stderr, "usage: typeset-manuscript DOCUMENT SHEET [FOLDER]\n");
        return 2;
    }
    try {
        Application application(argv[1], argv[2], argc > 3 ? argv[3] : "out");
        application.run();
        application.tell();
        if (std::fflush(stdout) == 0) return 0;
        fmt::print(stderr, "standard output: {}\n", std::strerror(errno));
    } catch (const CannotOpen& failure) {
        fmt::print(stderr, "{}\n", failure.line);
    } catch (const CannotWrite& failure) {
        fmt::print(stderr, "{}\n", failure.line);
    } catch (const WQXMLException& exception) {
        fmt::print(stderr, "{}: {}\n", argv[1], oneLine(exception.reason()));
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}: {}\n", argv[1], exception.what());
    }
    return 1;
}
