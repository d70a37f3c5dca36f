// What a process sees that has not used the library yet. Each test body runs in a fresh process.
#include <libxml/catalog.h>
#include <libxml/parser.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLExtensions.h"
#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "platform/NSBundle.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

const xmlChar* x(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

// Exit code 0 if every expectation of `work` holds.
void inAFreshProcess(const std::function<void()>& work) {
    EXPECT_EXIT(
        {
            work();
            std::fflush(nullptr);
            std::exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

void expectNotStarted() {
    EXPECT_EQ(xmlRegisterNodeDefault(nullptr), nullptr);
    EXPECT_EQ(xmlDeregisterNodeDefault(nullptr), nullptr);
    EXPECT_EQ(xmlStructuredError, nullptr);
}

void expectStarted() {
    EXPECT_EQ(xmlRegisterNodeDefault(xmlRegisterNode), xmlRegisterNode);
    EXPECT_EQ(xmlDeregisterNodeDefault(xmlDeregisterNode), xmlDeregisterNode);
    EXPECT_EQ(xmlStructuredError, wqStructuredErrorFunc);
    EXPECT_EQ(xmlStructuredErrorContext, nullptr);
}

void expectDefaultClasses() {
    EXPECT_EQ(DefaultElementClass, &wq::Class::of<WQXMLElement>());
    EXPECT_EQ(DefaultAttrClass, &wq::Class::of<WQXMLAttr>());
    EXPECT_EQ(DefaultTextClass, &wq::Class::of<WQXMLText>());
    EXPECT_EQ(DefaultNodeClass, &wq::Class::of<WQXMLNode>());
}

// A folder with one catalogue in it, and one small external DTD.
class CatalogFolder {
public:
    explicit CatalogFolder(const std::string& catalog) {
        char name[] = "/tmp/wq-startup-XXXXXX";
        path = mkdtemp(name);
        std::ofstream(path / "catalog.xml") << catalog;
        std::ofstream(path / "known.dtd") << "<!ATTLIST b key ID #IMPLIED>";
    }
    ~CatalogFolder() { std::filesystem::remove_all(path); }
    CatalogFolder(const CatalogFolder&) = delete;
    CatalogFolder& operator=(const CatalogFolder&) = delete;
    std::filesystem::path path;
};

}  // namespace

TEST(StartupTest, BeforeTheFirstUseNothingIsInstalled) {
    inAFreshProcess([] {
        EXPECT_TRUE(gRegisterNode);
        EXPECT_EQ(gCheckNode, nullptr);
        expectNotStarted();
        checkNode();
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_EQ(WQXMLNode::localNameForQName(u"a:b"), u"b");
        EXPECT_EQ(Ref<WQXMLDocument>()->documentElement()->firstChild()->nodeType(), 0);
    });
}

TEST(StartupTest, AnEmptyDocumentStartsTheLibrary) {
    inAFreshProcess([] {
        const auto d = WQXMLDocument::newDocument();
        ASSERT_TRUE(d);
        expectStarted();
        expectDefaultClasses();
        d->appendChild(d->createElement(u"a"));
        EXPECT_EQ(dump(d), "a");
    });
}

TEST(StartupTest, ADocumentWithArgumentsStartsTheLibrary) {
    inAFreshProcess([] {
        const auto d = WQXMLDocument::newWithArguments(NSDictionary::dictionary());
        ASSERT_TRUE(d);
        expectStarted();
        expectDefaultClasses();
    });
}

TEST(StartupTest, AParsedDocumentStartsTheLibraryAndHasItsWrappers) {
    inAFreshProcess([] {
        const auto d = parse("<a k='v'><b>t</b><!--c--></a>");
        expectStarted();
        expectDefaultClasses();
        EXPECT_EQ(dump(d), "a[b[\"t\"],<!>]");
        EXPECT_EQ(d->documentElement()->getAttribute(u"k"), u"v");
    });
}

TEST(StartupTest, AParsedHTMLDocumentStartsTheLibrary) {
    inAFreshProcess([] {
        EXPECT_EQ(dump(parseHTML("<html><body><p>t</p></body></html>")), "html[body[p[\"t\"]]]");
        expectStarted();
    });
}

TEST(StartupTest, ADocumentReadFromAFileStartsTheLibrary) {
    inAFreshProcess([] {
        const CatalogFolder folder("");
        std::ofstream(folder.path / "a.xml") << "<a><b/></a>";
        const auto url = NSURL::fileURLWithPath(wq::fromUTF8((folder.path / "a.xml").string()));
        EXPECT_EQ(dump(WQXMLDocument::newWithContentsOfURL_arguments_error(url, nullptr, nullptr)), "a[b]");
        expectStarted();
    });
}

TEST(StartupTest, AnErrorInTheVeryFirstParseIsRaised) {
    inAFreshProcess([] {
        EXPECT_EQ(raised([] { parse("<a><b></a>"); }), "XML Exception: Opening and ending tag mismatch: b line 1 and a\n");
        EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
    });
}

TEST(StartupTest, AnElementConstructorStartsTheLibrary) {
    inAFreshProcess([] {
        const auto e = WQXMLElement::newWithName(u"e");
        expectStarted();
        EXPECT_EQ(gCheckNode, nullptr);
        e->setAttribute_value(u"k", u"v");
        EXPECT_TRUE(wq::cast<WQXMLAttr>(e->firstAttribute()));
        EXPECT_TRUE(wq::cast<WQXMLText>(e->firstAttribute()->firstChild()));
        expectDefaultClasses();
    });
}

TEST(StartupTest, AQualifiedElementConstructorStartsTheLibrary) {
    inAFreshProcess([] {
        const auto e = WQXMLElement::elementWithQualifiedName_namespaceURI(u"p:e", u"u:1");
        expectStarted();
        e->setAttribute_namespaceURI_value(u"p:k", u"u:1", u"v");
        EXPECT_EQ(e->firstAttribute()->nodeName(), u"p:k");
    });
}

TEST(StartupTest, ATextConstructorStartsTheLibrary) {
    inAFreshProcess([] {
        const auto text = WQXMLText::newWithString(u"t");
        expectStarted();
        expectDefaultClasses();
        EXPECT_EQ(text->string(), u"t");
        const auto empty = WQXMLText::text();
        EXPECT_FALSE(empty->string());
    });
}

TEST(StartupTest, ATextMadeFirstCanGoIntoALaterDocument) {
    inAFreshProcess([] {
        const auto text = WQXMLText::textWithString(u"t");
        const auto d = parse("<a/>");
        d->documentElement()->appendChild(text);
        EXPECT_EQ(dump(d), "a[\"t\"]");
    });
}

TEST(StartupTest, AWriterStartsTheLibrary) {
    inAFreshProcess([] {
        const auto writer = WQXMLWriter::newToMemory();
        expectStarted();
        expectDefaultClasses();
        EXPECT_EQ(raised([&] { EXPECT_EQ(writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"none", nullptr), -1); }), "");
    });
}

TEST(StartupTest, AWriterToADocumentStartsTheLibraryAndItsNodesHaveWrappers) {
    inAFreshProcess([] {
        const auto writer = WQXMLWriter::newToXMLDocument();
        expectStarted();
        expectDefaultClasses();
        writer->writeElement_content(u"a", u"t");
        writer->flush();
        EXPECT_EQ(dump(writer->XMLDocument()), "a[\"t\"]");
    });
}

TEST(StartupTest, AWriterWhoseFileCannotBeOpenedStartsTheLibraryAndIsSilent) {
    inAFreshProcess([] {
        testing::internal::CaptureStderr();
        const auto writer = WQXMLWriter::newWithURL(NSURL::URLWithString(u"file:///no/such/folder/a.xml"));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        expectStarted();
        EXPECT_EQ(writer->startElement(u"a"), -1);
    });
}

TEST(StartupTest, AReaderStartsTheLibrary) {
    inAFreshProcess([] {
        const auto reader = WQXMLReader::newWithData_baseURL_error(data("<a><b></a>"), nullptr, nullptr);
        expectStarted();
        expectDefaultClasses();
        EXPECT_EQ(raised([&] { reader->read(); }), "XML Exception: Opening and ending tag mismatch: b line 1 and a\n");
        EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
    });
}

TEST(StartupTest, AReaderOfAFileStartsTheLibrary) {
    inAFreshProcess([] {
        const CatalogFolder folder("");
        std::ofstream(folder.path / "a.xml") << "<a/>";
        const auto url = NSURL::fileURLWithPath(wq::fromUTF8((folder.path / "a.xml").string()));
        const auto reader = WQXMLReader::newWithURL_options_error(url, 0, nullptr);
        expectStarted();
        EXPECT_EQ(reader->read(), 1);
        EXPECT_EQ(reader->read(), 0);
    });
}

TEST(StartupTest, AReaderWhoseFileCannotBeOpenedStartsTheLibraryAndIsSilent) {
    inAFreshProcess([] {
        testing::internal::CaptureStderr();
        const auto reader = WQXMLReader::newWithURL_options_error(NSURL::URLWithString(u"file:///no/such/a.xml"), 0, nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        expectStarted();
        EXPECT_EQ(reader->read(), -1);
    });
}

TEST(StartupTest, ARelativeURLStartsTheLibrary) {
    inAFreshProcess([] {
        const auto base = NSURL::URLWithString(u"http://h/a/b.html"), url = NSURL::URLWithString(u"http://h/a/it's.html");
        EXPECT_EQ(standardizedFileURL(NSURL::URLWithString(u"file:///a"))->absoluteString(), u"file://localhost/a");
        EXPECT_EQ(stringRelativeToURL(url, base), u"it%27s.html");
        expectStarted();
    });
}

TEST(StartupTest, TheFirstUseSetsTheDefaultClassesAndLaterOnesDoNot) {
    struct Early : WQXMLElement {};
    struct Late : WQXMLElement {};
    inAFreshProcess([] {
        DefaultElementClass = &wq::Class::of<Early>();
        EXPECT_FALSE(wq::cast<Early>(parse("<a/>")->documentElement()));
        EXPECT_EQ(DefaultElementClass, &wq::Class::of<WQXMLElement>());
        DefaultElementClass = &wq::Class::of<Late>();
        EXPECT_TRUE(wq::cast<Late>(parse("<a/>")->documentElement()));
        EXPECT_TRUE(wq::cast<Late>(WQXMLDocument::newDocument()->createElement(u"a")));
    });
}

TEST(StartupTest, TheStartupAloneInstallsTheHooks) {
    inAFreshProcess([] {
        WQLibXMLInit();
        expectStarted();
        xmlFreeNode(xmlNewNode(nullptr, x("e")));  // before there are default classes
        checkNode();
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
        expectStarted();
        expectDefaultClasses();
    });
}

TEST(StartupTest, StartingTwiceChangesNothingTheSecondTime) {
    inAFreshProcess([] {
        WQLibXMLInit();
        xmlRegisterNodeDefault(nullptr);
        xmlDeregisterNodeDefault(nullptr);
        xmlSetStructuredErrorFunc(nullptr, nullptr);
        WQLibXMLInit();
        expectNotStarted();
        xmlRegisterNodeDefault(xmlRegisterNode);
        xmlDeregisterNodeDefault(xmlDeregisterNode);
        xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
        EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
        WQLibXMLInit();
        expectStarted();
    });
}

TEST(StartupTest, TheHooksStayWhenTheLastDocumentGoes) {
    inAFreshProcess([] {
        parse("<a/>");
        expectStarted();
    });
}

TEST(StartupTest, TheErrorFunctionOfTheApplicationIsReplaced) {
    inAFreshProcess([] {
        int context = 0;
        xmlSetStructuredErrorFunc(&context, [](void*, xmlErrorPtr) {});
        EXPECT_NE(raised([] { parse("<a>"); }), "");
        expectStarted();
    });
}

TEST(StartupTest, WithoutACatalogDocumentsParseAsUsual) {
    inAFreshProcess([] {
        NSBundle::setResourceFolders({});
        ASSERT_FALSE(NSBundle::pathForResource_ofType(u"catalog", u"xml"));
        EXPECT_EQ(dump(parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a>t<b/></a>")), "a[\"t\",b]");
        EXPECT_NE(raised([] { parse("<a>"); }), "");
        expectStarted();
    });
}

TEST(StartupTest, TheShippedCatalogLetsDocumentsParse) {
    inAFreshProcess([] {
        ASSERT_TRUE(NSBundle::pathForResource_ofType(u"catalog", u"xml"));
        EXPECT_EQ(dump(parse("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>")), "a");
        EXPECT_EQ(xmlCatalogResolveSystem(x("urn:nowhere")), nullptr);
    });
}

TEST(StartupTest, TheCatalogOfTheBundleIsLoaded) {
    inAFreshProcess([] {
        const CatalogFolder folder(
            "<catalog xmlns='urn:oasis:names:tc:entity:xmlns:xml:catalog'>"
            "<system systemId='urn:wq:known' uri='known.dtd'/></catalog>");
        NSBundle::setResourceFolders({folder.path.string()});
        const auto d = parse("<!DOCTYPE a SYSTEM 'urn:wq:known'><a><b key='k'/></a>");
        EXPECT_EQ(dump(d), "a[b]");
        EXPECT_EQ(
            reinterpret_cast<xmlNodePtr>(xmlGetID(d->xmlDoc(), x("k"))),
            wq::cast<WQXMLElement>(find(d, u"b"))->firstAttribute()->xmlNode());
        xmlCatalogCleanup();
    });
}

TEST(StartupTest, TheFlagHoldsAlsoBeforeTheStart) {
    inAFreshProcess([] {
        EXPECT_TRUE(setRegisterNode(false));
        const auto e = WQXMLElement::newWithName(u"e");
        EXPECT_FALSE(gRegisterNode);
        xmlNodePtr raw = xmlNewNode(nullptr, x("r"));
        EXPECT_EQ(raw->_private, nullptr);
        xmlFreeNode(raw);
        EXPECT_FALSE(setRegisterNode(true));
    });
}
