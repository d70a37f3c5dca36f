// Where a writer writes, what each operation writes, and which namespaces it knows.
#include "dom/WQXMLWriter.h"

#include <filesystem>

#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

using Writer = Ref<WQXMLWriter>;
using W = const Writer&;

std::string view(const Writer& writer) { return std::string(writer->XMLData()->view()); }
std::string flushed(const Writer& writer) {
    EXPECT_NE(writer->flush(), -1);
    return view(writer);
}
// What arrives in memory.
std::string written(auto&& work) {
    const Writer writer = WQXMLWriter::newToMemory();
    work(writer);
    return flushed(writer);
}

// Neither raises nor fails an assertion.
void quietly(auto&& work) {
    const Assertions assertions;
    EXPECT_EQ(raised(work), "");
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

// Cannot open its destination.
Writer closed() { return WQXMLWriter::newWithURL(fileURL(testing::TempDir() + "/no/such/document.xml")); }

std::string names(const Writer& writer) {
    std::string text;
    for (const auto& element : writer->elements().value()) text += "/" + wq::toUTF8(wq::printed(element->name()));
    return text;
}

void start(const Writer& writer, const NSString& name, const NSString& prefix, const NSString& uri) {
    EXPECT_NE(writer->startElement_prefix_namespace(name, prefix, uri), -1);
}
void end(const Writer& writer, int count = 1) {
    while (count--) EXPECT_NE(writer->endElement(), -1);
}

// Each operation that answers libxml2's number.
struct Operation {
    int32_t (*call)(W);
    const char* name;
};
#define OPERATION(name, ...)                            \
    Operation {                                         \
        [](W w) { return w->name(__VA_ARGS__); }, #name \
    }
constexpr Operation kOperations[] = {
    OPERATION(startDocumentWithVersion_encoding_standalone, u"1.0", u"utf-8", u"no"),
    OPERATION(endDocument),
    OPERATION(startComment),
    OPERATION(endComment),
    OPERATION(writeComment, u"c"),
    OPERATION(startPI, u"t"),
    OPERATION(endPI),
    OPERATION(writePI_content, u"t", u"c"),
    OPERATION(startCDATA),
    OPERATION(endCDATA),
    OPERATION(writeCDATA, u"c"),
    OPERATION(startDTD_pubid_sysid, u"d", u"p", u"s"),
    OPERATION(endDTD),
    OPERATION(writeDTD_pubid_sysid_subset, u"d", u"p", u"s", u""),
    OPERATION(startElement, u"a"),
    OPERATION(startElement_prefix_namespace, u"a", u"p", u"u:1"),
    OPERATION(endElement),
    OPERATION(fullEndElement),
    OPERATION(writeElement_content, u"a", u"c"),
    OPERATION(writeElement_prefix_namespace_content, u"a", u"p", u"u:1", u"c"),
    OPERATION(writeRaw, u"c"),
    OPERATION(writeString, u"c"),
    OPERATION(writeBase64, data("c")),
    OPERATION(writeBinHex, data("c")),
    OPERATION(startAttribute, u"k"),
    OPERATION(startAttribute_prefix_namespace, u"k", u"p", u"u:1"),
    OPERATION(endAttribute),
    OPERATION(writeAttribute_content, u"k", u"v"),
    OPERATION(writeAttribute_prefix_namespace_content, u"k", u"p", u"u:1", u"v"),
    OPERATION(setIndent, true),
    OPERATION(setIndentString, u" "),
    OPERATION(flush),
};

// ---- Making one

TEST(WQXMLWriterTest, AWriterToMemoryHasDataAndNoDocument) {
    const auto writer = WQXMLWriter::newToMemory();
    ASSERT_TRUE(writer->XMLData());
    EXPECT_EQ(writer->XMLData(), writer->XMLData());
    EXPECT_FALSE(writer->XMLDocument());
    EXPECT_EQ(names(writer), "");
}

TEST(WQXMLWriterTest, AWriterToADocumentHasTheDocumentAndNoData) {
    const auto writer = WQXMLWriter::newToXMLDocument();
    ASSERT_TRUE(writer->XMLDocument());
    EXPECT_EQ(writer->XMLDocument(), writer->XMLDocument());
    EXPECT_EQ(writer->XMLDocument()->nodeType(), 9);
    EXPECT_FALSE(writer->XMLData());
    EXPECT_EQ(names(writer), "");
}

TEST(WQXMLWriterTest, AWriterToAFileHasNeither) {
    const Folder folder;
    const auto writer = WQXMLWriter::newWithURL(fileURL(folder.file("a.xml")));
    EXPECT_FALSE(writer->XMLData());
    EXPECT_FALSE(writer->XMLDocument());
    EXPECT_EQ(names(writer), "");
}

TEST(WQXMLWriterTest, AWriterBelowAnElementHasNeitherAndRemembersNoElements) {
    const auto document = parse("<a/>");
    const auto writer = WQXMLWriter::newToElement(document->documentElement());
    EXPECT_FALSE(writer->XMLData());
    EXPECT_FALSE(writer->XMLDocument());
    EXPECT_EQ(writer->elements(), std::nullopt);
    EXPECT_NE(writer->startElement(u"b"), -1);
    EXPECT_EQ(writer->elements(), std::nullopt);
    EXPECT_NE(writer->endElement(), -1);
}

TEST(WQXMLWriterTest, BelowNothingAndBelowAnElementWithoutADocumentThereIsNoWriter) {
    EXPECT_FALSE(WQXMLWriter::newToElement(nullptr));
    EXPECT_FALSE(WQXMLWriter::newToElement(WQXMLElement::elementWithName(u"a")));
    const auto dead = parse("<a/>")->documentElement();
    EXPECT_FALSE(WQXMLWriter::newToElement(dead));
}

TEST(WQXMLWriterTest, ASubclassMayRefuse) {
    struct Refusing : WQXMLWriter {
        bool initToMemory() override { return false; }
    };
    EXPECT_FALSE(WQXMLWriter::newToMemory<Refusing>());
}

// ---- To memory

TEST(WQXMLWriterTest, WithNothingWrittenTheDataAreEmpty) {
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_EQ(view(writer), "");
    EXPECT_EQ(writer->flush(), 0);
    EXPECT_EQ(view(writer), "");
}

TEST(WQXMLWriterTest, AfterAFlushTheLiveDataHoldAllThatWasWritten) {
    const auto writer = WQXMLWriter::newToMemory();
    const auto bytes = writer->XMLData();
    writer->writeElement_content(u"a", u"1");
    writer->flush();
    EXPECT_EQ(bytes->view(), "<a>1</a>");
    writer->writeElement_content(u"b", u"2");
    writer->flush();
    EXPECT_EQ(bytes->view(), "<a>1</a><b>2</b>");
    EXPECT_EQ(writer->XMLData(), bytes);
}

TEST(WQXMLWriterTest, TheEndOfAWriterFlushes) {
    auto writer = WQXMLWriter::newToMemory();
    const auto bytes = writer->XMLData();
    writer->writeElement_content(u"a", u"1");
    writer = nullptr;
    EXPECT_EQ(bytes->view(), "<a>1</a>");
}

TEST(WQXMLWriterTest, TheEndOfAWriterClosesNoElement) {
    auto writer = WQXMLWriter::newToMemory();
    const auto bytes = writer->XMLData();
    writer->startElement(u"a");
    writer->startElement(u"b");
    writer = nullptr;
    EXPECT_EQ(bytes->view(), "<a><b");
}

TEST(WQXMLWriterTest, AnswersAreTheNumbersOfLibxml2) {
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_EQ(writer->writeRaw(u"<a/>"), 0);  // it stays in the buffer
    EXPECT_EQ(writer->flush(), 4);
    EXPECT_EQ(writer->flush(), 0);
    EXPECT_EQ(writer->endDocument(), 1);
    EXPECT_EQ(writer->endElement(), -1);
}

// ---- To a file

TEST(WQXMLWriterTest, AFileIsCompleteAfterTheEndOfItsWriter) {
    const Folder folder;
    WQXMLWriter::newWithURL(fileURL(folder.file("a.xml")))->writeElement_content(u"a", u"\u00E9");
    EXPECT_EQ(contentsOf(folder.file("a.xml")), "<a>\xC3\xA9</a>");
}

TEST(WQXMLWriterTest, AFileIsMadeAlsoIfNothingIsWrittenAndReplacesAnOldOne) {
    const Folder folder;
    WQXMLWriter::newWithURL(fileURL(folder.file("a.xml")))->writeRaw(u"much text");
    WQXMLWriter::newWithURL(fileURL(folder.file("a.xml")));
    EXPECT_TRUE(std::filesystem::exists(folder.file("a.xml")));
    EXPECT_EQ(contentsOf(folder.file("a.xml")), "");
}

TEST(WQXMLWriterTest, AFileNameMayHoldABlank) {
    const Folder folder;
    WQXMLWriter::newWithURL(fileURL(folder.file("a b.xml")))->writeRaw(u"<a/>");
    EXPECT_EQ(contentsOf(folder.file("a b.xml")), "<a/>");
}

TEST(WQXMLWriterTest, ADestinationThatCannotBeOpenedGivesAWriterThatAnswersMinusOne) {
    const Folder folder;
    for (const Ref<NSURL>& refused : {fileURL(folder.file("no/such.xml")), fileURL(folder.path), Ref<NSURL>()}) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(refused->absoluteString())));
        Writer writer;
        quietly([&] { writer = WQXMLWriter::newWithURL(refused); });
        ASSERT_TRUE(writer);
        for (const Operation& operation : kOperations) {
            SCOPED_TRACE(operation.name);
            quietly([&] { EXPECT_EQ(operation.call(writer), -1); });
        }
        EXPECT_FALSE(writer->XMLData());
        EXPECT_FALSE(writer->XMLDocument());
    }
}

TEST(WQXMLWriterTest, AWriterWithoutADestinationStillKnowsWhatIsOpen) {
    const auto writer = closed();
    EXPECT_EQ(writer->startElement_prefix_namespace(u"a", u"p", u"u:1"), -1);
    EXPECT_EQ(names(writer), "/a");
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_EQ(writer->endElement(), -1);
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

// Few bytes stay with the C library, whatever is flushed, and what is lost then nobody tells.
TEST(WQXMLWriterTest, ADestinationThatTakesNoBytesFailsAtTheFlushOfManyAndIsSilentAtTheEnd) {
    const auto full = NSURL::URLWithString(u"file:///dev/full");
    const auto work = [&] {
        auto writer = WQXMLWriter::newWithURL(full);
        writer->writeElement_content(u"a", std::u16string(3000, u'x'));
        writer->writeElement_content(u"b", std::u16string(3000, u'x'));
        EXPECT_EQ(writer->flush(), -1);
        writer.reset();
        WQXMLWriter::newWithURL(full)->writeElement_content(u"a", u"few");
    };
    quietly(work);
}

TEST(WQXMLWriterTest, NullAnswersZeroToEveryOperation) {
    const Assertions assertions;
    const Writer none;
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(operation.call(none), 0);
    }
    EXPECT_EQ(none->writeAttribute_content(u"k", nullptr), 0);
    EXPECT_FALSE(none->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_EQ(none->elements(), std::nullopt);
    EXPECT_FALSE(none->XMLData());
    EXPECT_FALSE(none->XMLDocument());
    EXPECT_FALSE(none->initToMemory());
    EXPECT_FALSE(none->initToXMLDocument());
    EXPECT_FALSE(none->initToElement(parse("<a/>")->documentElement()));
    EXPECT_FALSE(none->initWithURL(nullptr));
    EXPECT_FALSE(none->XMLData());
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WQXMLWriterTest, EveryOperationStandsInTheTable) {
    std::set<std::string> operations = publicOperations(sourceFolder() / "dom/WQXMLWriter.h");
    EXPECT_GT(operations.size(), 30u);
    for (const char* other :
         {"XMLDocument", "XMLData", "isDefined_namespaceURI", "elements", "initWithURL", "initToMemory", "initToXMLDocument",
          "initToElement"})
        operations.erase(std::string("WQXMLWriter::") + other);
    for (const Operation& operation : kOperations) operations.erase(std::string("WQXMLWriter::") + operation.name);
    EXPECT_THAT(operations, IsEmpty());
}

// ---- To a new document

TEST(WQXMLWriterTest, ADocumentIsCompleteAfterAFlush) {
    const auto writer = WQXMLWriter::newToXMLDocument();
    const auto document = writer->XMLDocument();
    EXPECT_FALSE(document->documentElement());
    writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", nullptr);
    writer->startElement_prefix_namespace(u"a", u"p", u"u:1");
    writer->writeAttribute_content(u"k", u"<\u00E9>");
    writer->writeString(u"1 & 2");
    writer->writeElement_content(u"b", nullptr);
    writer->endElement();
    EXPECT_NE(writer->endDocument(), -1);
    EXPECT_NE(writer->flush(), -1);
    EXPECT_EQ(dump(document), "p:a[\"1 & 2\",b]");
    EXPECT_EQ(document->documentElement()->getAttribute(u"k"), u"<\u00E9>");
    EXPECT_EQ(document->documentElement()->namespaceURI(), u"u:1");
    EXPECT_EQ(document->documentElement()->parentNode(), document);
    EXPECT_EQ(writer->XMLDocument(), document);
}

TEST(WQXMLWriterTest, AWriterMayGoBeforeItsDocument) {
    auto writer = WQXMLWriter::newToXMLDocument();
    auto document = writer->XMLDocument();
    writer->writeElement_content(u"a", u"text");
    writer = nullptr;
    EXPECT_EQ(dump(document), "a[\"text\"]");
    const auto root = document->documentElement();
    root->appendChild(document->createElement(u"b"));
    EXPECT_EQ(dump(document), "a[\"text\",b]");
    document = nullptr;
    EXPECT_EQ(root->nodeName(), nullptr);
}

TEST(WQXMLWriterTest, ADocumentThatNobodyTookGoesWithItsWriter) {
    auto writer = WQXMLWriter::newToXMLDocument();
    writer->writeElement_content(u"a", u"text");
    writer->flush();
    const auto root = writer->XMLDocument()->documentElement();
    EXPECT_EQ(root->nodeName(), u"a");
    writer = nullptr;
    EXPECT_EQ(root->nodeName(), nullptr);
}

TEST(WQXMLWriterTest, WhatIsNotWellFormedMakesTheFlushOfADocumentFail) {
    for (const char16_t* markup :
         {u"<a/><b/>", u"<a></b>", u"<p:a/>", u"<a k='1' k='2'/>", u"<a>&none;</a>", u"<a xmlns='relative'/>", u"<a>\1</a>", u"text"}) {
        SCOPED_TRACE(wq::toUTF8(markup));
        quietly([&] {
            auto writer = WQXMLWriter::newToXMLDocument();
            const auto document = writer->XMLDocument();
            writer->writeRaw(markup);
            EXPECT_EQ(writer->flush(), -1);
            writer = nullptr;
            EXPECT_EQ(document->nodeType(), 9);
        });
    }
}

TEST(WQXMLWriterTest, WhatIsNotWellFormedIsSilentAtTheEndOfAWriter) {
    for (const char16_t* markup : {u"", u"<a>", u"<a><b>", u"<a", u"<a/><b/>", u"<p:a/>", u"text", u"<!--", u"<a/><b>text</b>"}) {
        SCOPED_TRACE(wq::toUTF8(markup));
        quietly([&] {
            auto writer = WQXMLWriter::newToXMLDocument();
            const auto document = writer->XMLDocument();
            writer->writeRaw(markup);
            writer.reset();
            EXPECT_EQ(document->nodeType(), 9);
        });
    }
}

TEST(WQXMLWriterTest, AfterAFlushThatFailedAWriterCanBeUsedAndDropped) {
    const auto writer = WQXMLWriter::newToXMLDocument();
    writer->writeRaw(u"<a></b>");
    EXPECT_EQ(writer->flush(), -1);
    quietly([&] {
        for (const Operation& operation : kOperations) operation.call(writer);
        writer->flush();
    });
    EXPECT_EQ(dump(parse("<a/>")), "a");  // and the next parse knows nothing of it
}

TEST(WQXMLWriterTest, DocumentsAreWrittenAndParsedSideBySide) {
    const auto one = WQXMLWriter::newToXMLDocument(), two = WQXMLWriter::newToXMLDocument();
    for (const auto& writer : {one, two}) {
        start(writer, u"a", u"p", u"u:1");
        writer->writeElement_content(u"b", nullptr);
        EXPECT_NE(writer->flush(), -1);
        EXPECT_EQ(dump(parse("<x><y/></x>")), "x[y]");
    }
    EXPECT_THAT(raised([] { parse("<x>"); }), testing::StartsWith("XML Exception: "));
    two->writeElement_content(u"c", nullptr);
    one->endElement();
    two->endElement();
    for (const auto& writer : {one, two}) EXPECT_NE(writer->flush(), -1);
    EXPECT_EQ(dump(one->XMLDocument()), "p:a[b]");
    EXPECT_EQ(dump(two->XMLDocument()), "p:a[b,c]");
}

TEST(WQXMLWriterTest, ADocumentIsOnlySoDeep) {
    for (const auto& [depth, answer] : {std::pair{200, 0}, std::pair{300, -1}}) {
        const auto writer = WQXMLWriter::newToXMLDocument();
        for (int level = 0; level < depth; ++level) writer->startElement(u"a");
        for (int level = 0; level < depth; ++level) writer->endElement();
        EXPECT_EQ(std::min(writer->flush(), 0), answer);
    }
}

TEST(WQXMLWriterTest, ALongTextArrivesInADocumentAsOneNode) {
    const auto writer = WQXMLWriter::newToXMLDocument();
    const std::u16string text(1 << 20, u'&');
    writer->writeElement_content(u"a", text);
    EXPECT_NE(writer->flush(), -1);
    const auto root = writer->XMLDocument()->documentElement();
    EXPECT_EQ(root->numberOfChildren(), 1u);
    EXPECT_TRUE(root->firstChild()->nodeValue().view() == text);
}

// ---- Below an element

TEST(WQXMLWriterTest, BelowAnElementOneChildIsAppended) {
    const auto document = parse("<r><a/>text</r>");
    const auto root = document->documentElement();
    const auto before = root->firstChild();
    auto writer = WQXMLWriter::newToElement(root);
    writer->startElement(u"b");
    writer->writeAttribute_content(u"k", u"v");
    writer->writeString(u"1");
    writer->writeElement_content(u"c", nullptr);
    writer->endElement();
    EXPECT_NE(writer->flush(), -1);
    writer = nullptr;
    EXPECT_EQ(serialised(root), "<r><a/>text<b k=\"v\">1<c/></b></r>");
    EXPECT_EQ(root->firstChild(), before);
    EXPECT_EQ(root->lastChild()->ownerDocument(), document);
    EXPECT_EQ(root->lastChild()->parentNode(), root);
}

TEST(WQXMLWriterTest, WhatWasWrittenBelowAnElementIsAnOrdinaryPartOfItsTree) {
    auto document = parse("<r/>");
    auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->writeElement_content(u"a", u"1");
    writer->flush();
    writer = nullptr;
    const auto child = document->documentElement()->firstChild();
    document->documentElement()->removeChild(child);
    document = nullptr;
    EXPECT_EQ(serialised(child), "<a>1</a>");
}

TEST(WQXMLWriterTest, AnElementBelowWhichIsWrittenOutlivesItsReferences) {
    auto document = parse("<r/>");
    auto root = document->documentElement();
    auto writer = WQXMLWriter::newToElement(root);
    root = nullptr;
    document = nullptr;
    writer->writeElement_content(u"a", u"1");
    EXPECT_NE(writer->flush(), -1);
}

TEST(WQXMLWriterTest, BelowAnElementClassesComeFromTheMapOfItsDocument) {
    struct Paragraph : WQXMLElement {};
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}})}});
    const auto document = parse("<r/>", NSDictionary::dictionary({{DefaultElementClassesKey, classes}}));
    const auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->startElement(u"p");
    writer->writeElement_content(u"p", nullptr);
    writer->endElement();
    EXPECT_NE(writer->flush(), -1);
    const auto outer = document->documentElement()->firstChild();
    EXPECT_TRUE(wq::cast<Paragraph>(outer));
    EXPECT_TRUE(wq::cast<Paragraph>(outer->firstChild()));
}

TEST(WQXMLWriterTest, AnElementThatRaisesWhileItIsMadeMakesTheFlushFail) {
    struct Raising : WQXMLElement {
        bool initWithXMLNode(_xmlNode*) override { throw WQXMLException(u"Refused", u"no such element"); }
    };
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary({{u"p", &wq::Class::of<Raising>()}})}});
    const auto document = parse("<r/>", NSDictionary::dictionary({{DefaultElementClassesKey, classes}}));
    quietly([&] {
        const auto writer = WQXMLWriter::newToElement(document->documentElement());
        writer->startElement(u"p");
        writer->writeElement_content(u"q", nullptr);
        writer->endElement();
        EXPECT_EQ(writer->flush(), -1);
    });
}

TEST(WQXMLWriterTest, BelowAnElementTextAndASecondChildAreRefused) {
    for (const char16_t* markup : {u"text", u"<a/><b/>", u"<a/>text", u"<a></b>", u"<p:a/>"}) {
        SCOPED_TRACE(wq::toUTF8(markup));
        const auto document = parse("<r/>");
        quietly([&] {
            auto writer = WQXMLWriter::newToElement(document->documentElement());
            writer->writeRaw(markup);
            EXPECT_EQ(writer->flush(), -1);
            writer.reset();
        });
        EXPECT_EQ(document->documentElement()->nodeName(), u"r");
    }
}

TEST(WQXMLWriterTest, BelowAnElementTheEndIsSilent) {
    for (const char16_t* markup : {u"", u"text", u"<a>", u"<a/><b/>", u"<a"}) {
        SCOPED_TRACE(wq::toUTF8(markup));
        const auto document = parse("<r/>");
        quietly([&] {
            auto writer = WQXMLWriter::newToElement(document->documentElement());
            writer->writeRaw(markup);
            writer.reset();
        });
        EXPECT_EQ(document->documentElement()->nodeName(), u"r");
    }
}

TEST(WQXMLWriterTest, BelowAnElementEveryPrefixIsDeclaredAnew) {
    const auto document = parse("<r/>");
    const auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->startElement_prefix_namespace(u"a", u"p", u"u:1");
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    writer->startElement_prefix_namespace(u"b", u"p", u"u:1");
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    writer->endElement();
    writer->endElement();
    writer->flush();
    EXPECT_EQ(serialised(document->documentElement()), "<r><p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:1\"/></p:a></r>");
}

// ---- What each operation writes

struct Output {
    std::string expected;
    void (*write)(W);
};

void expectOutputs(std::initializer_list<Output> rows) {
    for (const Output& row : rows) {
        SCOPED_TRACE(row.expected);
        quietly([&] { EXPECT_EQ(written(row.write), row.expected); });
    }
}

TEST(WQXMLWriterTest, DocumentsAreWritten) {
    expectOutputs({
        {"<?xml version=\"1.0\"?>\n", [](W w) { w->startDocumentWithVersion_encoding_standalone(nullptr, nullptr, nullptr); }},
        {"<?xml version=\"1.1\"?>\n", [](W w) { w->startDocumentWithVersion_encoding_standalone(u"1.1", nullptr, nullptr); }},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n",
         [](W w) { w->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", u"yes"); }},
        {"<?xml version=\"1.0\"?>\n<?xml version=\"1.0\"?>\n",
         [](W w) {
             for (int i = 0; i < 2; ++i) EXPECT_EQ(w->startDocumentWithVersion_encoding_standalone(nullptr, nullptr, nullptr), 0);
         }},
        {"\n", [](W w) { w->endDocument(); }},
        {"<a><b/></a>\n", [](W w) { w->startElement(u"a"), w->startElement(u"b"), w->endDocument(); }},
    });
}

TEST(WQXMLWriterTest, TheEncodingOfTheDocumentIsThatOfTheBytes) {
    expectOutputs({{"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a>\xE9&#8364;</a>", [](W w) {
                        w->startDocumentWithVersion_encoding_standalone(nullptr, u"iso-8859-1", nullptr),
                            w->writeElement_content(u"a", u"\u00E9\u20AC");
                    }}});
}

TEST(WQXMLWriterTest, EndingADocumentLeavesTheRecords) {
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement_prefix_namespace(u"a", u"p", u"u:1");
    writer->endDocument();
    EXPECT_EQ(names(writer), "/a");
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

TEST(WQXMLWriterTest, CommentsAreWritten) {
    expectOutputs({
        {"<!--a & <b>-->", [](W w) { w->writeComment(u"a & <b>"); }},
        {"<!---->", [](W w) { w->writeComment(u""); }},
        {"<!--a--b-->", [](W w) { w->writeComment(u"a--b"); }},  // nobody checks
        {"<!--a & b-->", [](W w) { w->startComment(), w->writeString(u"a & b"), w->endComment(); }},
        {"<a><!--c--></a>", [](W w) { w->startElement(u"a"), w->writeComment(u"c"), w->endElement(); }},
    });
}

TEST(WQXMLWriterTest, InstructionsAreWritten) {
    expectOutputs({
        {"<?t a & <b>?>", [](W w) { w->writePI_content(u"t", u"a & <b>"); }},
        {"<?t?>", [](W w) { w->writePI_content(u"t", nullptr); }},
        {"<?t c?>", [](W w) { w->startPI(u"t"), w->writeString(u"c"), w->endPI(); }},
        {"<?t?>", [](W w) { w->startPI(u"t"), w->endPI(); }},
    });
}

TEST(WQXMLWriterTest, SectionsAreWritten) {
    expectOutputs({
        {"<![CDATA[a & <b>]]>", [](W w) { w->writeCDATA(u"a & <b>"); }},
        {"<![CDATA[]]>", [](W w) { w->writeCDATA(nullptr); }},
        {"<![CDATA[a]]>b]]>", [](W w) { w->writeCDATA(u"a]]>b"); }},  // nobody checks
        {"<a><![CDATA[<&]]></a>",
         [](W w) { w->startElement(u"a"), w->startCDATA(), w->writeString(u"<&"), w->endCDATA(), w->endElement(); }},
    });
}

TEST(WQXMLWriterTest, DocumentTypesAreWritten) {
    expectOutputs({
        {"<!DOCTYPE d>", [](W w) { w->startDTD_pubid_sysid(u"d", nullptr, nullptr), w->endDTD(); }},
        {"<!DOCTYPE d SYSTEM \"s\">", [](W w) { w->startDTD_pubid_sysid(u"d", nullptr, u"s"), w->endDTD(); }},
        {"<!DOCTYPE d PUBLIC \"p\" \"s\">", [](W w) { w->startDTD_pubid_sysid(u"d", u"p", u"s"), w->endDTD(); }},
        {"<!DOCTYPE d [<!ELEMENT d ANY>]>",
         [](W w) { w->startDTD_pubid_sysid(u"d", nullptr, nullptr), w->writeString(u"<!ELEMENT d ANY>"), w->endDTD(); }},
        {"<!DOCTYPE d [<!ELEMENT d ANY>]>", [](W w) { w->writeDTD_pubid_sysid_subset(u"d", nullptr, nullptr, u"<!ELEMENT d ANY>"); }},
        {"<!DOCTYPE d PUBLIC \"p\" \"s\">", [](W w) { w->writeDTD_pubid_sysid_subset(u"d", u"p", u"s", nullptr); }},
        {"<!DOCTYPE d PUBLIC \"p\" \"s\" [<!---->]>", [](W w) { w->writeDTD_pubid_sysid_subset(u"d", u"p", u"s", u"<!---->"); }},
    });
}

TEST(WQXMLWriterTest, ElementsAreWritten) {
    expectOutputs({
        {"<a/>", [](W w) { w->startElement(u"a"), w->endElement(); }},
        {"<a></a>", [](W w) { w->startElement(u"a"), w->fullEndElement(); }},
        {"<a></a>", [](W w) { w->startElement(u"a"), w->writeString(u""), w->endElement(); }},
        {"<p:a/>", [](W w) { w->startElement(u"p:a"), w->endElement(); }},
        {"<a><b/>1</a>", [](W w) { w->startElement(u"a"), w->startElement(u"b"), w->endElement(), w->writeString(u"1"), w->endElement(); }},
        {"<a>1 &lt; 2</a>", [](W w) { w->writeElement_content(u"a", u"1 < 2"); }},
        {"<a/>", [](W w) { w->writeElement_content(u"a", nullptr); }},
        {"<a></a>", [](W w) { w->writeElement_content(u"a", u""); }},
        {"<p:a xmlns:p=\"u:1\">&amp;</p:a>", [](W w) { w->writeElement_prefix_namespace_content(u"a", u"p", u"u:1", u"&"); }},
        {"<a xmlns=\"u:1\">1</a>", [](W w) { w->writeElement_prefix_namespace_content(u"a", nullptr, u"u:1", u"1"); }},
        {"<p:a>1</p:a>", [](W w) { w->writeElement_prefix_namespace_content(u"a", u"p", nullptr, u"1"); }},
        {"<p:a xmlns:p=\"u:1\"></p:a>", [](W w) { w->writeElement_prefix_namespace_content(u"a", u"p", u"u:1", u""); }},
    });
}

TEST(WQXMLWriterTest, TextIsEscapedWithinElements) {
    expectOutputs({
        {"<a>&lt;b&gt; &amp; &quot;'</a>", [](W w) { w->startElement(u"a"), w->writeString(u"<b> & \"'"), w->endElement(); }},
        {"<a>]]&gt;</a>", [](W w) { w->startElement(u"a"), w->writeString(u"]]>"), w->endElement(); }},
        {"<a>\t\n&#13;\n</a>", [](W w) { w->startElement(u"a"), w->writeString(u"\t\n\r\n"), w->endElement(); }},
        {"<a>\xC3\xA9\xF0\x9F\x98\x80</a>", [](W w) { w->startElement(u"a"), w->writeString(u"\u00E9\U0001F600"), w->endElement(); }},
        {"<a><&]]>\"</a>", [](W w) { w->startElement(u"a"), w->writeRaw(u"<&]]>\""), w->endElement(); }},
        {"<&", [](W w) { w->writeString(u"<&"); }},  // outside of them it is not
    });
}

TEST(WQXMLWriterTest, DataAreWritten) {
    expectOutputs({
        {"", [](W w) { w->writeBase64(data("")); }},
        {"TQ==", [](W w) { w->writeBase64(data("M")); }},
        {"TWE=", [](W w) { w->writeBase64(data("Ma")); }},
        {"TWFu", [](W w) { w->writeBase64(data("Man")); }},
        {"AP8A", [](W w) { w->writeBase64(data(std::string_view("\0\xFF\0", 3))); }},
        {"TU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1NTU1N\r\nTQ==",
         [](W w) { w->writeBase64(data(std::string_view("MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM"))); }},
        {"", [](W w) { w->writeBinHex(data("")); }},
        {"00AB7F", [](W w) { w->writeBinHex(data(std::string_view("\0\xAB\x7F", 3))); }},
        {"<a>4D</a>", [](W w) { w->startElement(u"a"), w->writeBinHex(data("M")), w->endElement(); }},
    });
}

TEST(WQXMLWriterTest, AttributesAreWritten) {
    expectOutputs({
        {"<e a=\"1\" b=\"\"/>",
         [](W w) { w->startElement(u"e"), w->writeAttribute_content(u"a", u"1"), w->writeAttribute_content(u"b", u""), w->endElement(); }},
        {"<e a=\"12\"/>",
         [](W w) {
             w->startElement(u"e"), w->startAttribute(u"a"), w->writeString(u"1"), w->writeString(u"2"), w->endAttribute(), w->endElement();
         }},
        {"<e a=\"\"/>", [](W w) { w->startElement(u"e"), w->startAttribute(u"a"), w->endElement(); }},
        {"<e p:a=\"1\"/>", [](W w) { w->startElement(u"e"), w->writeAttribute_content(u"p:a", u"1"), w->endElement(); }},
        {"<e a=\"&lt;&gt;&amp;&quot;'&#9;&#10;&#13;\"/>",
         [](W w) { w->startElement(u"e"), w->writeAttribute_content(u"a", u"<>&\"'\t\n\r"), w->endElement(); }},
        {"<e a=\"&lt;&quot;\"/>", [](W w) { w->startElement(u"e"), w->startAttribute(u"a"), w->writeString(u"<\""), w->endElement(); }},
        {"<e a=\"&#xE9;&#x1F600;\"/>",
         [](W w) { w->startElement(u"e"), w->writeAttribute_content(u"a", u"\u00E9\U0001F600"), w->endElement(); }},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<e a=\"\xC3\xA9\xF0\x9F\x98\x80\"/>",
         [](W w) {
             w->startDocumentWithVersion_encoding_standalone(nullptr, u"utf-8", nullptr), w->startElement(u"e"),
                 w->writeAttribute_content(u"a", u"\u00E9\U0001F600"), w->endElement();
         }},
    });
}

TEST(WQXMLWriterTest, LayoutIsWritten) {
    expectOutputs({
        {"<a>\n <b>1</b>\n <c/>\n</a>\n",
         [](W w) {
             w->setIndent(true), w->startElement(u"a"), w->writeElement_content(u"b", u"1"), w->writeElement_content(u"c", nullptr),
                 w->endElement();
         }},
        {"<a>\n\t<b/>\n</a>\n",
         [](W w) {
             w->setIndent(true), w->setIndentString(u"\t"), w->startElement(u"a"), w->writeElement_content(u"b", nullptr), w->endElement();
         }},
        {"<a><b/></a>",
         [](W w) { w->setIndentString(u"\t"), w->startElement(u"a"), w->writeElement_content(u"b", nullptr), w->endElement(); }},
        {"<a><b/></a>",
         [](W w) {
             w->setIndent(true), w->setIndent(false), w->startElement(u"a"), w->writeElement_content(u"b", nullptr), w->endElement();
         }},
    });
}

// ---- Errors

struct Failure {
    std::string written;
    int32_t (*call)(W);
};

void expectFailures(std::initializer_list<Failure> rows) {
    for (const Failure& row : rows) {
        SCOPED_TRACE(&row - rows.begin());
        quietly([&] { EXPECT_EQ(written([&](W w) { EXPECT_EQ(row.call(w), -1); }), row.written); });
    }
}

TEST(WQXMLWriterTest, MisuseAnswersMinusOneAndRaisesNothing) {
    expectFailures({
        {"<a", [](W w) { return w->startElement(u"a"), w->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", nullptr); }},
        {"", [](W w) { return w->startDocumentWithVersion_encoding_standalone(u"1.0", u"no-such", nullptr); }},
        {"", [](W w) { return w->startPI(u"xml"); }},
        {"", [](W w) { return w->writePI_content(u"XmL", u"c"); }},
        {"<a", [](W w) { return w->startElement(u"a"), w->startDTD_pubid_sysid(u"d", nullptr, nullptr); }},
        {"<!DOCTYPE d", [](W w) { return w->startDTD_pubid_sysid(u"d", u"p", nullptr); }},
        {"", [](W w) { return w->endElement(); }},
        {"", [](W w) { return w->fullEndElement(); }},
        {"", [](W w) { return w->endAttribute(); }},
        {"", [](W w) { return w->endComment(); }},
        {"", [](W w) { return w->writeAttribute_content(u"k", u"v"); }},
        {"<a>1", [](W w) { return w->startElement(u"a"), w->writeString(u"1"), w->writeAttribute_content(u"k", u"v"); }},
        {"<?t", [](W w) { return w->startPI(u"t"), w->startElement(u"a"); }},
    });
}

TEST(WQXMLWriterTest, NullAndEmptyArgumentsAnswerMinusOne) {
    expectFailures({
        {"", [](W w) { return w->startElement(nullptr); }},
        {"", [](W w) { return w->startElement(u""); }},
        {"", [](W w) { return w->startElement_prefix_namespace(nullptr, u"p", u"u:1"); }},
        {"", [](W w) { return w->writeElement_content(nullptr, u"c"); }},
        {"", [](W w) { return w->writeElement_prefix_namespace_content(nullptr, u"p", u"u:1", u"c"); }},
        {"<p:a", [](W w) { return w->writeElement_prefix_namespace_content(u"a", u"p", u"u:1", nullptr); }},  // and it stays open
        {"", [](W w) { return w->writeRaw(nullptr); }},
        {"", [](W w) { return w->writeString(nullptr); }},
        {"", [](W w) { return w->writeBase64(nullptr); }},
        {"", [](W w) { return w->writeBinHex(nullptr); }},
        {"", [](W w) { return w->startPI(nullptr); }},
        {"", [](W w) { return w->writePI_content(nullptr, u"c"); }},
        {"", [](W w) { return w->startDTD_pubid_sysid(nullptr, nullptr, nullptr); }},
        {"", [](W w) { return w->setIndentString(nullptr); }},
        {"<!--", [](W w) { return w->writeComment(nullptr); }},
        {"<e", [](W w) { return w->startElement(u"e"), w->startAttribute(nullptr); }},
        {"<e", [](W w) { return w->startElement(u"e"), w->writeAttribute_content(nullptr, u"v"); }},
        // it fails no assertion where a namespace is given
        {"<e p:a=\"", [](W w) { return w->startElement(u"e"), w->writeAttribute_prefix_namespace_content(u"a", u"p", u"u:1", nullptr); }},
    });
}

TEST(WQXMLWriterTest, ANullAttributeContentFailsAnAssertionBeforeAnythingIsWritten) {
    EXPECT_EQ(
        written([](const Writer& writer) {
            writer->startElement(u"e");
            EXPECT_EQ(
                raised([&] { writer->writeAttribute_content(u"a", nullptr); }),
                "NSInternalInconsistencyException: Invalid parameter not satisfying: content");
            writer->endElement();
        }),
        "<e/>");
}

TEST(WQXMLWriterTest, ANullAttributeContentStillReachesLibxml2AfterAHandlerThatReturns) {
    const Assertions assertions;
    EXPECT_EQ(
        written([](const Writer& writer) {
            writer->startElement(u"e");
            EXPECT_EQ(writer->writeAttribute_content(u"a", nullptr), -1);
            writer->endElement();
        }),
        "<e a=\"\"/>");
    EXPECT_THAT(assertions.descriptions, ElementsAre("Invalid parameter not satisfying: content"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLWriter"));
    EXPECT_THAT(assertions.operations, ElementsAre("writeAttribute_content"));
}

TEST(WQXMLWriterTest, ANullAttributeContentFailsItsAssertionAlsoWithoutADestination) {
    EXPECT_EQ(
        raised([] { closed()->writeAttribute_content(u"a", nullptr); }),
        "NSInternalInconsistencyException: Invalid parameter not satisfying: content");
    const Assertions assertions;
    EXPECT_EQ(closed()->writeAttribute_content(u"a", nullptr), -1);
    EXPECT_THAT(assertions.descriptions, ElementsAre("Invalid parameter not satisfying: content"));
}

// ---- Namespaces of elements

TEST(WQXMLWriterTest, NamespacesAreDeclaredWhereTheyAreNotYetDefined) {
    expectOutputs({
        // a pair once
        {"<p:a xmlns:p=\"u:1\"><p:b><p:c/></p:b></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), start(w, u"b", u"p", u"u:1"), start(w, u"c", u"p", u"u:1"), end(w, 3); }},
        // with an element of no namespace between
        {"<p:a xmlns:p=\"u:1\"><b><p:c/></b></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), w->startElement(u"b"), start(w, u"c", u"p", u"u:1"), end(w, 3); }},
        // the prefix with another namespace, and the namespace with another prefix
        {"<p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:2\"/></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), start(w, u"b", u"p", u"u:2"), end(w, 2); }},
        {"<p:a xmlns:p=\"u:1\"><q:b xmlns:q=\"u:1\"/></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), start(w, u"b", u"q", u"u:1"), end(w, 2); }},
        // after its element has ended
        {"<r><p:a xmlns:p=\"u:1\"/><p:b xmlns:p=\"u:1\"/></r>",
         [](W w) { w->startElement(u"r"), start(w, u"a", u"p", u"u:1"), end(w), start(w, u"b", u"p", u"u:1"), end(w, 2); }},
        // an element between that binds the prefix anew is not seen: p:c is of u:2
        {"<p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:2\"><p:c/></p:b></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), start(w, u"b", u"p", u"u:2"), start(w, u"c", u"p", u"u:1"), end(w, 3); }},
        // no prefix, and an empty one
        {"<a xmlns=\"u:1\"><b xmlns=\"u:1\"/></a>",
         [](W w) { start(w, u"a", nullptr, u"u:1"), start(w, u"b", nullptr, u"u:1"), end(w, 2); }},
        {"<a xmlns=\"u:1\"><b xmlns=\"u:1\"/></a>", [](W w) { start(w, u"a", u"", u"u:1"), start(w, u"b", u"", u"u:1"), end(w, 2); }},
        {"<a/>", [](W w) { start(w, u"a", nullptr, nullptr), end(w); }},
        {"<a/>", [](W w) { start(w, u"a", u"", nullptr), end(w); }},
        // no namespace
        {"<p:a><p:b/></p:a>", [](W w) { start(w, u"a", u"p", nullptr), start(w, u"b", u"p", nullptr), end(w, 2); }},
        // a name with a colon defines nothing
        {"<p:a><p:b xmlns:p=\"u:1\"/></p:a>", [](W w) { w->startElement(u"p:a"), start(w, u"b", u"p", u"u:1"), end(w, 2); }},
        // whole elements neither look nor are seen
        {"<p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:1\">1</p:b></p:a>",
         [](W w) { start(w, u"a", u"p", u"u:1"), w->writeElement_prefix_namespace_content(u"b", u"p", u"u:1", u"1"), end(w); }},
        {"<r><p:a xmlns:p=\"u:1\">1</p:a><p:b xmlns:p=\"u:1\"/></r>",
         [](W w) {
             w->startElement(u"r"), w->writeElement_prefix_namespace_content(u"a", u"p", u"u:1", u"1"), start(w, u"b", u"p", u"u:1"),
                 end(w, 2);
         }},
        // a full end leaves the record, so p:b is not declared
        {"<r><p:a xmlns:p=\"u:1\"></p:a><p:b/></r>",
         [](W w) { w->startElement(u"r"), start(w, u"a", u"p", u"u:1"), w->fullEndElement(), start(w, u"b", u"p", u"u:1"), end(w, 2); }},
    });
}

TEST(WQXMLWriterTest, OpenElementsAreRememberedTheInnermostLast) {
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"p:a");
    writer->startElement_prefix_namespace(u"b", u"p", u"u:1");
    writer->startElement_prefix_namespace(u"c", u"p", u"u:1");  // the pair is its own as well
    EXPECT_EQ(names(writer), "/p:a/b/c");
    const auto& elements = *writer->elements();
    EXPECT_TRUE(elements[0]->nsDefs().empty());
    EXPECT_TRUE(elements[1]->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_TRUE(elements[2]->isDefined_namespaceURI(u"p", u"u:1"));
    writer->endElement();
    EXPECT_EQ(names(writer), "/p:a/b");
    writer->fullEndElement();
    EXPECT_EQ(names(writer), "/p:a/b");
    writer->endElement();
    EXPECT_EQ(names(writer), "/p:a");
}

TEST(WQXMLWriterTest, WholeElementsAndAttributesAreNotRemembered) {
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"a");
    writer->writeAttribute_prefix_namespace_content(u"k", u"p", u"u:1", u"v");
    writer->writeElement_content(u"b", u"1");
    writer->writeElement_prefix_namespace_content(u"c", u"p", u"u:1", u"1");
    EXPECT_EQ(names(writer), "/a");
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

TEST(WQXMLWriterTest, AnElementThatCannotBeStartedIsRememberedAllTheSame) {
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_EQ(writer->startElement(nullptr), -1);
    EXPECT_EQ(writer->startElement_prefix_namespace(u"", u"p", u"u:1"), -1);
    EXPECT_EQ(names(writer), "/(null)/");
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

TEST(WQXMLWriterTest, EndingMoreThanWasStartedIsHarmless) {
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_EQ(writer->endElement(), -1);
    writer->startElement(u"a");
    EXPECT_NE(writer->endElement(), -1);
    EXPECT_EQ(writer->endElement(), -1);
    EXPECT_EQ(names(writer), "");
}

TEST(WQXMLWriterTest, APairIsDefinedWhileAnElementThatHasItIsOpen) {
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    start(writer, u"a", u"p", u"u:1");
    start(writer, u"b", nullptr, u"u:2");
    start(writer, u"c", u"", u"u:3");
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:2"));
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", nullptr));
    EXPECT_FALSE(writer->isDefined_namespaceURI(nullptr, u"u:2"));
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"", u"u:3"));
    EXPECT_FALSE(writer->isDefined_namespaceURI(nullptr, nullptr));
    end(writer, 2);
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    end(writer);
    EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

TEST(WQXMLWriterTest, AFullEndLeavesThePairDefined) {
    const auto writer = WQXMLWriter::newToMemory();
    start(writer, u"a", u"p", u"u:1");
    writer->fullEndElement();
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
}

// ---- Namespaces of attributes

// Writes it in one call, or in parts.
int32_t attribute(const Writer& writer, bool whole, const NSString& name, const NSString& prefix, const NSString& uri) {
    if (whole) return writer->writeAttribute_prefix_namespace_content(name, prefix, uri, u"v");
    const int32_t answer = writer->startAttribute_prefix_namespace(name, prefix, uri);
    if (answer != -1) {
        EXPECT_NE(writer->writeString(u"v"), -1);
        EXPECT_NE(writer->endAttribute(), -1);
    }
    return answer;
}

struct Attribute {
    const char16_t *name, *prefix, *uri;
};

TEST(WQXMLWriterTest, AttributesDeclareWhatNoOpenElementHas) {
    const char16_t* const no = nullptr;
    struct Row {
        std::string expected;
        Attribute outer, inner;  // elements
        std::vector<Attribute> attributes;
        int32_t lastAnswer = 0;
    };
    const Attribute plain{u"e", no, no}, one{u"e", u"p", u"u:1"};
    const std::vector<Row> rows = {
        {"<e><e k=\"v\"/></e>", plain, plain, {{u"k", no, no}}},
        {"<e><e p:k=\"v\" xmlns:p=\"u:1\"/></e>", plain, plain, {{u"k", u"p", u"u:1"}}},
        {"<e><e p:k=\"v\" p:l=\"v\" xmlns:p=\"u:1\"/></e>", plain, plain, {{u"k", u"p", u"u:1"}, {u"l", u"p", u"u:1"}}},
        // the last declaration first
        {"<e><e p:k=\"v\" q:l=\"v\" xmlns:q=\"u:2\" xmlns:p=\"u:1\"/></e>", plain, plain, {{u"k", u"p", u"u:1"}, {u"l", u"q", u"u:2"}}},
        // known from the element itself, and from further out
        {"<e><p:e p:k=\"v\" xmlns:p=\"u:1\"/></e>", plain, one, {{u"k", u"p", u"u:1"}}},
        {"<p:e xmlns:p=\"u:1\"><e p:k=\"v\"/></p:e>", one, plain, {{u"k", u"p", u"u:1"}}},
        {"<p:e xmlns:p=\"u:1\"><p:e p:k=\"v\"/></p:e>", one, one, {{u"k", u"p", u"u:1"}}},
        // another namespace for the prefix: further out it is declared again, on the element itself it cannot be
        {"<p:e xmlns:p=\"u:1\"><e p:k=\"v\" xmlns:p=\"u:2\"/></p:e>", one, plain, {{u"k", u"p", u"u:2"}}},
        {"<e><p:e xmlns:p=\"u:1\"/></e>", plain, one, {{u"k", u"p", u"u:2"}}, -1},
        // without a prefix the namespace becomes the element's default one
        {"<e><e k=\"v\" xmlns=\"u:1\"/></e>", plain, plain, {{u"k", no, u"u:1"}}},
        {"<e><e xmlns=\"u:1\"/></e>", plain, {u"e", no, u"u:1"}, {{u"k", no, u"u:2"}}, -1},
        // an empty prefix is one: what comes out is not well-formed
        {"<e><e :k=\"v\" xmlns:=\"u:1\"/></e>", plain, plain, {{u"k", u"", u"u:1"}}},
        {"<e><e p:k=\"v\"/></e>", plain, plain, {{u"k", u"p", no}}},
        {"<e><e xml:lang=\"v\" xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"/></e>",
         plain,
         plain,
         {{u"lang", u"xml", u"http://www.w3.org/XML/1998/namespace"}}},
    };
    for (const Row& row : rows)
        for (const bool whole : {true, false}) {
            SCOPED_TRACE(row.expected + (whole ? ", whole" : ", in parts"));
            const Writer writer = WQXMLWriter::newToMemory();
            for (const Attribute& element : {row.outer, row.inner}) start(writer, element.name, element.prefix, element.uri);
            int32_t answer = 0;
            for (const Attribute& each : row.attributes) answer = attribute(writer, whole, each.name, each.prefix, each.uri);
            EXPECT_EQ(answer, row.lastAnswer);
            end(writer, 2);
            EXPECT_EQ(flushed(writer), row.expected);
        }
}

TEST(WQXMLWriterTest, WhatAnAttributeDeclaresIsNotKnownFurtherIn) {
    for (const bool whole : {true, false}) {
        const Writer writer = WQXMLWriter::newToMemory();
        writer->startElement(u"a");
        attribute(writer, whole, u"k", u"p", u"u:1");
        EXPECT_FALSE(writer->isDefined_namespaceURI(u"p", u"u:1"));
        start(writer, u"b", u"p", u"u:1");
        end(writer, 2);
        EXPECT_EQ(flushed(writer), "<a p:k=\"v\" xmlns:p=\"u:1\"><p:b xmlns:p=\"u:1\"/></a>");
    }
}

// ---- Characters that XML cannot hold

bool isIllegal(uint32_t unit) { return (unit < 0x20 && unit != 9 && unit != 10 && unit != 13) || (unit >= 0x7F && unit < 0xA0); }

TEST(WQXMLWriterTest, IllegalAreTheControlsButForTabAndLineEnds) {
    const auto& set = WQXMLWriter::illegalXMLCharacterSet();
    for (uint32_t unit = 0; unit <= 0xFFFF; ++unit) EXPECT_EQ(set.characterIsMember(static_cast<char16_t>(unit)), isIllegal(unit)) << unit;
    EXPECT_EQ(&WQXMLWriter::illegalXMLCharacterSet(), &set);
}

TEST(WQXMLWriterTest, CleaningTakesOutEachIllegalCharacterAndNothingElse) {
    for (uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string string{u'a', static_cast<char16_t>(unit), u'b'};
        EXPECT_EQ(WQXMLWriter::cleanString(string), isIllegal(unit) ? u"ab"_ns : NSString(string)) << unit;
    }
}

TEST(WQXMLWriterTest, CleaningStrings) {
    const std::pair<NSString, NSString> rows[] = {
        {nullptr, nullptr},
        {u"", u""},
        {u"plain", u"plain"},
        {u"\t\n\r", u"\t\n\r"},
        {u"\1", u""},
        {u"\1\2\3", u""},
        {u"\1a", u"a"},
        {u"a\1", u"a"},
        {u"a\1\2b\3c", u"abc"},
        {u"a\0b\0"_ns, u"ab"},
        {u"\x7F\x80\x9F\xA0", u"\xA0"},
        {u"\1\U0001F600\2\U0001F600\3", u"\U0001F600\U0001F600"},
        {std::u16string{0xD83D, 1, 0xDE00}, std::u16string{0xD83D, 0xDE00}},
        {std::u16string{0xDE00, 1, 0xD83D}, std::u16string{0xDE00, 0xD83D}},
        {u"\uFFFE\uFFFF", u"\uFFFE\uFFFF"},
    };
    for (const auto& [string, clean] : rows) EXPECT_EQ(WQXMLWriter::cleanString(string), clean);
}

TEST(WQXMLWriterTest, CleaningALongStringLeavesTheRest) {
    std::u16string dirty, clean(1 << 20, u'a');
    for (int count = 0; count < 1 << 20; ++count) dirty += u"a\1";
    EXPECT_TRUE(WQXMLWriter::cleanString(dirty) == clean);
}

TEST(WQXMLWriterTest, OnlyStringsAreCleaned) {
    expectOutputs({
        {"<a>\tb&lt;</a>", [](W w) { w->startElement(u"a"), w->writeString(u"\1\t\2b\x7F<\x85"), w->endElement(); }},
        {"<a></a>", [](W w) { w->startElement(u"a"), w->writeString(u"\1"), w->endElement(); }},
        {"<a k=\"b\"/>", [](W w) { w->startElement(u"a"), w->startAttribute(u"k"), w->writeString(u"\1b"), w->endElement(); }},
        {"\1b", [](W w) { w->writeRaw(u"\1b"); }},
        {"<![CDATA[\1b]]>", [](W w) { w->writeCDATA(u"\1b"); }},
        {"<!--\1b-->", [](W w) { w->writeComment(u"\1b"); }},
        {"<?t \1b?>", [](W w) { w->writePI_content(u"t", u"\1b"); }},
        {"<a>\1b</a>", [](W w) { w->writeElement_content(u"a", u"\1b"); }},
        {"<a>\1b</a>", [](W w) { w->writeElement_prefix_namespace_content(u"a", nullptr, nullptr, u"\1b"); }},
        {"<a k=\"\1b\"/>", [](W w) { w->startElement(u"a"), w->writeAttribute_content(u"k", u"\1b"), w->endElement(); }},
        {"<a k=\"\1b\"/>",
         [](W w) { w->startElement(u"a"), w->writeAttribute_prefix_namespace_content(u"k", nullptr, nullptr, u"\1b"), w->endElement(); }},
    });
}

TEST(WQXMLWriterTest, TextEndsAtANulButForStrings) {
    expectOutputs({
        {"ab", [](W w) { w->writeString(u"a\0b"_ns); }},
        {"a", [](W w) { w->writeRaw(u"a\0b"_ns); }},
        {"<!--a-->", [](W w) { w->writeComment(u"a\0b"_ns); }},
        {"<![CDATA[a]]>", [](W w) { w->writeCDATA(u"a\0b"_ns); }},
        {"<?a a?>", [](W w) { w->writePI_content(u"a\0b"_ns, u"a\0b"_ns); }},
        {"<a>a</a>", [](W w) { w->writeElement_content(u"a\0b"_ns, u"a\0b"_ns); }},
        {"<a a=\"a\"/>", [](W w) { w->startElement(u"a\0b"_ns), w->writeAttribute_content(u"a\0b"_ns, u"a\0b"_ns), w->endElement(); }},
    });
}

TEST(WQXMLWriterTest, LoneSurrogatesAreReplacedAndNoncharactersPass) {
    expectOutputs({
        {"x\xEF\xBF\xBDx",
         [](W w) {
             w->writeString(std::u16string{u'x', 0xD83D, u'x'});
         }},
        {"\xEF\xBF\xBD", [](W w) { w->writeRaw(std::u16string{0xDE00}); }},
        {"<\xEF\xBF\xBD/>", [](W w) { w->writeElement_content(std::u16string{0xDE00}, nullptr); }},
        {"\xEF\xBF\xBE", [](W w) { w->writeString(std::u16string{0xFFFE}); }},
    });
}

// ---- Size

std::string repeated(const std::string& text, int count) {
    std::string all;
    while (count--) all += text;
    return all;
}

TEST(WQXMLWriterTest, ElementsNestDeeply) {
    constexpr int depth = 20000;
    const Writer writer = WQXMLWriter::newToMemory();
    start(writer, u"r", u"p", u"u:1");
    for (int level = 0; level < depth; ++level) writer->startElement(u"a");
    EXPECT_TRUE(writer->isDefined_namespaceURI(u"p", u"u:1"));
    start(writer, u"b", u"p", u"u:1");
    end(writer, depth + 2);
    EXPECT_TRUE(flushed(writer) == "<p:r xmlns:p=\"u:1\">" + repeated("<a>", depth) + "<p:b/>" + repeated("</a>", depth) + "</p:r>");
}

TEST(WQXMLWriterTest, ADocumentEndsManyElements) {
    constexpr int depth = 20000;
    const Writer writer = WQXMLWriter::newToMemory();
    for (int level = 0; level < depth; ++level) writer->startElement(u"a");
    EXPECT_NE(writer->endDocument(), -1);
    EXPECT_TRUE(flushed(writer) == repeated("<a>", depth - 1) + "<a/>" + repeated("</a>", depth - 1) + "\n");
}

TEST(WQXMLWriterTest, TextsMayBeLong) {
    const std::u16string text(1 << 20, u'<');
    const std::string escaped = repeated("&lt;", 1 << 20);
    const Writer writer = WQXMLWriter::newToMemory();
    writer->startElement(u"a");
    EXPECT_NE(writer->writeAttribute_content(u"k", text), -1);
    EXPECT_NE(writer->writeString(text), -1);
    EXPECT_NE(writer->writeRaw(text), -1);
    end(writer);
    EXPECT_TRUE(flushed(writer) == "<a k=\"" + escaped + "\">" + escaped + std::string(1 << 20, '<') + "</a>");
}

// ---- What moves under a writer

TEST(WQXMLWriterTest, TheBufferOfTheWriterItselfIsWrittenAsItStands) {
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"a");
    for (int i = 0; i < 3000; ++i) writer->writeString(u"hello world");
    writer->flush();
    const std::string before = view(writer);
    EXPECT_GT(writer->writeBinHex(writer->XMLData()), 0);
    writer->flush();
    std::string expected = before;
    for (const char byte : before) {
        constexpr const char* digits = "0123456789ABCDEF";
        expected += digits[(byte >> 4) & 15];
        expected += digits[byte & 15];
    }
    EXPECT_EQ(view(writer), expected);
}

TEST(WQXMLWriterTest, AnElementThatDiesEndsTheWriterBelowIt) {
    const auto document = parse("<a><e/></a>");
    const auto writer = WQXMLWriter::newToElement(wq::cast<WQXMLElement>(find(document, u"e")));
    document->setDocumentElement(document->createElement(u"z"));
    EXPECT_EQ(writer->startElement(u"x"), -1);
    EXPECT_EQ(writer->flush(), -1);
    EXPECT_EQ(dump(document), "z");
}

TEST(WQXMLWriterTest, AnOpenElementThatIsTakenAwayIsWrittenOn) {
    for (bool below : {false, true}) {
        auto document = below ? parse("<a/>") : nullptr;
        const auto writer = below ? WQXMLWriter::newToElement(document->documentElement()) : WQXMLWriter::newToXMLDocument();
        if (!below) document = writer->XMLDocument();
        writer->startElement(u"x");
        writer->startElement(u"y");
        writer->writeString(u"t");
        writer->flush();
        const auto x = find(document, u"x");
        const auto kept = below ? x->firstChild() : nullptr;
        x->removeChildren();
        writer->writeString(u"more");
        writer->endElement();
        writer->writeElement_content(u"z", nullptr);
        writer->endElement();
        writer->flush();
        EXPECT_EQ(dump(x), "x[z]");
        EXPECT_EQ(kept ? dump(kept) : "", below ? "y[\"tmore\"]" : "");
    }
}

TEST(WQXMLWriterTest, ATextThatWasEditedIsGoneOnWith) {
    const auto writer = WQXMLWriter::newToXMLDocument();
    writer->startElement(u"x");
    writer->writeString(u"a rather long text, so that the parser has something to remember");
    writer->writeRaw(u"<y/>z");
    writer->writeRaw(u"<w/>");
    writer->flush();
    const auto x = find(writer->XMLDocument(), u"x");
    wq::cast<WQXMLText>(x->firstChild())->setString(u"short");
    x->removeChild(x->lastChild());
    writer->writeString(u"more");
    writer->endElement();
    writer->endDocument();
    writer->flush();
    EXPECT_EQ(dump(x), "x[\"short\",y,\"zmore\"]");
}

TEST(WQXMLWriterTest, ADocumentTypeBelowAnElementReplacesTheOneOfItsDocument) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a><b>&e;</b></a>");
    const auto reference = find(document, u"b")->firstChild();
    {
        const auto writer = WQXMLWriter::newToElement(document->documentElement());
        writer->writeDTD_pubid_sysid_subset(u"a", nullptr, nullptr, u"<!ENTITY f 'y'>");
        writer->writeElement_content(u"c", u"t");
        writer->flush();
    }
    EXPECT_EQ(dump(document), "a[b[<!>],c[\"t\"]]");
    EXPECT_FALSE(reference->firstChild());
    EXPECT_EQ(reference->next()->nodeName(), u"c");
}

TEST(WQXMLWriterTest, ADeclarationBelowAnElementSetsTheEncodingOfItsDocument) {
    const auto document = parse("<a>\xC3\xA9</a>");
    EXPECT_EQ(document->XMLData()->view(), "<?xml version=\"1.0\"?>\n<a>&#xE9;</a>\n");
    auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", nullptr);
    writer->writeElement_content(u"c", u"t");
    writer = nullptr;
    EXPECT_EQ(document->XMLData()->view(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\xC3\xA9<c>t</c></a>\n");
}

}  // namespace
