// manuscript-tour FILE [SHEET]: opens a document, prints its outline and the styles that the sheet gives its
// nodes, edits it while a listener hears of every edit, edits it through ranges, asks it for nodes, writes it in
// four ways and reads it again, with a short account of each.
//
// XML and XHTML are read as XML; HTML, told by how it begins, is read by the HTML 4 parser.
// Exit code 1, and one line on standard error, for a file that cannot be read; so too for a sheet with
// a syntax error, where hard assertions are off.
#include <fmt/format.h>

#include "examples/shared/Opening.h"
#include "examples/tour/Edits.h"
#include "examples/tour/Outline.h"
#include "examples/tour/Queries.h"
#include "examples/tour/Section.h"
#include "examples/tour/Selections.h"
#include "examples/tour/Styles.h"
#include "examples/tour/Writing.h"

namespace {

void tour(const std::string& path, const std::string& sheetPath) {
    const Ref<WQXMLDocument> document = openDocument(path, sectionClasses());
    fmt::print("{}\n", path);
    printOutline(document);
    resolveStyles(document, sheetPath);
    moveAndRemove(document);
    fmt::print("\nThe outline now:\n");
    printOutline(document);
    rewrite(document);
    select(document);
    query(document);
    write(document);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        fmt::print(stderr, "usage: manuscript-tour FILE [SHEET]\n");
        return 2;
    }
    try {
        tour(argv[1], argc > 2 ? argv[2] : "");
        return 0;
    } catch (const CannotOpen& failure) {
        fmt::print(stderr, "{}\n", failure.line);
    }
    return 1;
}
