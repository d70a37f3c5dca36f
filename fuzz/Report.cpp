// What the engine makes of texts, for comparing two builds of it: tools/compare-builds.sh.
//
//     report KIND FOLDER...
//
// KIND is scanner, declarations, sheet or cascade. Prints for each file of the folders a line "== NAME" behind a record
// separator, and what became of its text, with all that the engine prints to standard output; "ended" where that is the end
// of the process, as a text that is not in the language is where hard assertions are on.
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/core/css/Parser.h"
#include "dom/WQXMLDocument.h"
#include "html/WQHTMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/NSMutableAttributedString.h"

namespace {

constexpr const char* kDocument =
    "<book class='first' lang='en-GB'><p id='x' class='first last'>plain <b style='color: red; font: italic 9pt/1.5 a, b'>bold "
    "<i class='b' xml:lang='de'/></b></p><ul style='list-style-type: square'><li title='t'/>&amp;<li class='last' "
    "style='margin: 1pt 2% auto'>item</li></ul></book>";

void reportScanner(const std::string& text) {
    CSS::Scanner scanner;
    scanner.SetString(text);
    size_t ends = 0;  // a NUL is one that can be read on behind
    for (int token = scanner.yylex(); token || ends++ < text.size(); token = scanner.yylex())
        fmt::print("{} {:?}\n", token, token ? std::string(scanner.YYText(), static_cast<size_t>(scanner.YYLeng())) : "");
}

void reportDeclarations(const std::string& text) {
    CSS::MutableStyleDeclaration declaration;
    declaration.setCssText(text);
    for (size_t i = 0; i < declaration.length(); ++i) {
        const auto property = declaration.propertyAtIndex(i);
        fmt::print("{} {} {:?}\n", static_cast<int>(property->id), property->important, property->cssText());
    }
}

void reportRules(const std::vector<SharedPtr<CSS::StyleRule>>& rules) {
    for (const auto& rule : rules) {
        fmt::print("{:?}", rule->GetSelectorText());
        for (const auto& selector : rule->selectors) fmt::print(" {}", selector->Specificity());
        fmt::print(" {:?}\n", rule->declaration->cssText());
    }
}

void reportSheet(const std::string& text) {
    const SharedPtr<CSS::Stylesheet> sheet(CSS::Stylesheet::CreateWithData(text));
    if (!sheet) return fmt::print("none\n");
    reportRules(sheet->styleRules);
    for (const auto& rule : sheet->mediaRules) reportRules(rule->rules);
    for (const auto& rule : sheet->pageRules) fmt::print("page {:?}\n", rule->declaration->cssText());
    fmt::print("{} imports\n", sheet->importRules.size());
}

// The style of each node, its attributes, and the HTML of all texts.
void reportCascade(const std::string& text) {
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(kDocument), nullptr, nullptr, nullptr);
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::newWithCSSStyleSheet(CSS::Stylesheet::CreateWithData(text)));
    std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>> styles;
    const auto words = NSMutableAttributedString::newWithString(u"");
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        if (node->nodeType() != 1 && node->nodeType() != 3) continue;
        const auto style = resolver->resolveStyle_parentStyle(node, styles[node->parentNode().get()]);
        styles[node.get()] = style;
        const auto declaration = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(style);
        fmt::print("{} {:?}\n", wq::toUTF8(node->XPath()), wq::toUTF8(declaration->cssText()));
        if (node->nodeType() == 3)
            words->appendAttributedString(NSAttributedString::newWithString_attributes(node->nodeValue(), style->attributes()));
    }
    const auto writer = WQXMLWriter::newToMemory();
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(words, writer);
    writer->flush();
    fmt::print("{}\n", writer->XMLData()->view());
}

using Report = void (*)(const std::string&);
const std::map<std::string, Report> kReports = {
    {"scanner", reportScanner},
    {"declarations", reportDeclarations},
    {"sheet", reportSheet},
    {"cascade", reportCascade}};

using Files = std::vector<std::filesystem::path>;

void reportFile(Report report, const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    fmt::print("\x1e== {}\n", path.filename().string());
    std::fflush(stdout);
    report(text);
    std::fflush(stdout);
}

// In a process of its own, which one of them may end: the number of those that were begun.
size_t reportInAProcess(Report report, const Files& files, size_t first) {
    void* shared = mmap(nullptr, sizeof(size_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) std::abort();
    auto* begun = new (shared) size_t{first};
    const pid_t child = fork();
    if (child == -1) std::abort();
    if (child == 0) {
        if (!std::freopen("/dev/null", "w", stderr)) _exit(2);
        while (*begun < files.size()) reportFile(report, files[(*begun)++]);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const size_t next = *begun;
    munmap(shared, sizeof(size_t));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) fmt::print("ended\n");
    std::fflush(stdout);
    return next;
}

}  // namespace

int main(int argc, char** argv) {
    const auto report = argc > 2 ? kReports.find(argv[1]) : kReports.end();
    if (report == kReports.end()) {
        fmt::print(stderr, "usage: report scanner|declarations|sheet|cascade FOLDER...\n");
        return 2;
    }
    Files files;
    for (int i = 2; i < argc; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (size_t next = 0; next < files.size();) next = reportInAProcess(report->second, files, next);
    return files.empty() ? 1 : 0;
}
