// load-edit-save [FOLDER]: opens a document, edits and saves it, and meets two files that cannot be opened.
// Its files stay in FOLDER; without one they go into a temporary folder, which is removed in the end.
#include <fmt/format.h>
#include <libxml/xmlerror.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "platform/WQXMLException.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kNovel =
    "<?xml version='1.0' encoding='UTF-8'?>\n"
    "<novel><chapter title='The Ferry'><p>The boat was late.</p></chapter><!-- cut? --><chapter title='The Café'/></novel>\n";

// [load]
Ref<WQXMLDocument> load(const fs::path& path) try {
    Ref<NSError> error;
    const auto url = NSURL::fileURLWithPath(wq::fromUTF8(path.string()));
    auto document = WQXMLDocument::newWithContentsOfURL_arguments_error(url, nullptr, &error);
    if (error) throw std::runtime_error(wq::toUTF8(error->localizedDescription()));  // which names the file
    if (!document) throw std::runtime_error(path.filename().string() + " is empty");
    return document;
} catch (const WQXMLException& exception) {
    std::string reason = wq::toUTF8(exception.reason());
    reason.erase(reason.find_last_not_of('\n') + 1);
    throw std::runtime_error(fmt::format("{}:{}: {}", path.filename().string(), xmlGetLastError()->line, reason));
}
// [end]

// [changes]
constexpr int32_t kEveryEdit = 1 | 2 | 4 | 8;  // attribute set, text changed, node inserted, node removed

struct Changes : WQXMLEventListener {
    explicit Changes(const Ref<WQXMLDocument>& edited) : document(edited) {
        document->addListener_forEvent_useCapture(this, kEveryEdit, true);
    }
    ~Changes() override { document->removeListener_forEvent_useCapture(this, kEveryEdit, true); }
    Changes(const Changes&) = delete;
    void handleEvent(const Ref<WQXMLEvent>&) override { ++count; }

    const Ref<WQXMLDocument> document;
    int count = 0;
};
// [end]

// [edit]
void edit(const Ref<WQXMLDocument>& document) {
    const auto chapters = document->nodesForXPath(u"/novel/chapter");
    if (!chapters || chapters->size() < 2) return;
    const auto ferry = wq::cast<WQXMLElement>(chapters->at(0));
    const Ref<WQXMLNode> sentence = ferry->firstChild();
    const auto text = wq::cast<WQXMLText>(sentence->firstChild());
    if (!text) return;
    ferry->setAttribute_value(u"title", u"Early");
    text->setString(u"The boat was early.");
    ferry->removeChild(sentence);
    chapters->at(1)->appendChild(sentence);
    const auto paragraph = document->createElement(u"p");
    paragraph->appendChild(document->createTextNode(u"Nobody had told Anna & Jo."));
    ferry->insertChild_before(paragraph, ferry->firstChild());
}
// [end]

// [save]
void save(const Ref<WQXMLDocument>& document, const fs::path& path) {
    const fs::path unfinished = fs::path(path).concat(".unfinished");
    std::ofstream file(unfinished, std::ios::binary);
    file << document->XMLData()->view();
    file.close();
    if (!file) throw std::runtime_error(unfinished.string() + " cannot be written");
    fs::rename(unfinished, path);
}
// [end]

}  // namespace

int main(int argc, char** argv) try {
    std::string pattern = (fs::temp_directory_path() / "novel-XXXXXX").string();
    if (argc < 2 && !mkdtemp(pattern.data())) return 1;
    const fs::path folder = argc < 2 ? pattern : argv[1];
    std::ofstream(folder / "novel.xml") << kNovel;
    std::ofstream(folder / "broken.xml") << "<novel>\n  <chapter>\n</novel>\n";
    // [main]
    const auto document = load(folder / "novel.xml");
    const Changes changes(document);
    edit(document);
    if (changes.count > 0) save(document, folder / "novel.xml");
    fmt::print("{} changes\n{}", changes.count, load(folder / "novel.xml")->XMLData()->view());

    for (const fs::path& path : {folder / "broken.xml", fs::path("/no/such/novel.xml")}) {
        try {
            load(path);
        } catch (const std::runtime_error& failure) {
            fmt::print("{}\n", failure.what());
        }
    }
    // [end]
    if (argc < 2) fs::remove_all(folder);
} catch (const std::runtime_error& failure) {
    fmt::print(stderr, "{}\n", failure.what());
    return 1;
}
