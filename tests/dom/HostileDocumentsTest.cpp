// Documents that mean harm: what docs/security.md says of them.
#include <httplib.h>
#include <libxml/parserInternals.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "dom/WQXMLReader.h"
#include "tests/dom/Support.h"

using namespace test;
using namespace std::string_literals;

namespace {

std::string repeated(const std::string& text, size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (size_t i = 0; i < times; ++i) all += text;
    return all;
}

// What a document raises as it is read, or else the number of its nodes: "raises Char 0x0 out ...", "2 nodes", "null".
std::string outcome(std::string bytes, bool html = false) {
    const auto arguments = NSDictionary::dictionary();
    if (html) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    try {
        const auto document =
            WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(std::move(bytes)), nullptr, arguments, nullptr);
        if (!document) return "null";
        size_t nodes = 0;
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) ++nodes;
        return std::to_string(nodes) + " nodes";
    } catch (const WQXMLException& exception) {
        const std::string reason = wq::toUTF8(exception.reason());
        return "raises " + reason.substr(0, reason.find('\n'));
    }
}
std::string outcomeOfHTML(std::string bytes) { return outcome(std::move(bytes), true); }

// Ten entities, each ten times the one before.
std::string bomb(const std::string& content) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 'lol'>";
    for (int i = 1; i < 10; ++i) text += "<!ENTITY e" + std::to_string(i) + " '" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    return text + "]>" + content;
}

std::string nested(const std::string& name, size_t depth) { return repeated("<" + name + ">", depth) + repeated("</" + name + ">", depth); }

std::string named(const std::string& ahead, size_t length, const std::string& behind) { return ahead + std::string(length, 'n') + behind; }

}  // namespace

// ---- Entities

TEST(HostileDocumentsTest, EntityBombsAreRefused) {
    EXPECT_EQ(outcome(bomb("<a>&e9;</a>")), "raises Detected an entity reference loop");
    EXPECT_EQ(outcome(bomb("<a k='&e9;'/>")), "raises Detected an entity reference loop");
}

TEST(HostileDocumentsTest, EntitiesThatHoldEachOtherAreRefused) {
    const std::string type = "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]>";
    EXPECT_EQ(outcome(type + "<a>&e;</a>"), "raises Detected an entity reference loop");
    EXPECT_EQ(outcome(type + "<a k='&e;'/>"), "raises Detected an entity reference loop");
}

TEST(HostileDocumentsTest, ALongEntityManyTimesIsReadAsReferencesAndGrowsWhenTheValueIsAsked) {
    const std::string text = "<!DOCTYPE a [<!ENTITY e '" + std::string(10000, 'x') + "'>]><a k='" + repeated("&e;", 100) + "'/>";
    const auto document = parse(text);
    EXPECT_EQ(document->documentElement()->getAttribute(u"k").length(), 1000000u);
}

// ---- Depth

TEST(HostileDocumentsTest, XMLNestsTo257) {
    EXPECT_EQ(outcome(nested("a", 256)), "256 nodes");
    EXPECT_EQ(outcome(nested("a", 257)), "257 nodes");
    EXPECT_EQ(outcome(nested("a", 258)), "raises Excessive depth in document: 256 use XML_PARSE_HUGE option");
    EXPECT_EQ(outcome(nested("a", 100000)), "raises Excessive depth in document: 256 use XML_PARSE_HUGE option");
}

TEST(HostileDocumentsTest, HTMLNestsTo257WithItsOwnTwo) {
    EXPECT_EQ(outcomeOfHTML(nested("div", 255)), "257 nodes");
    EXPECT_EQ(outcomeOfHTML(nested("div", 256)), "raises Excessive depth in document: 256 use XML_PARSE_HUGE option");
    EXPECT_EQ(outcomeOfHTML(nested("div", 100000)), "raises Excessive depth in document: 256 use XML_PARSE_HUGE option");
}

TEST(HostileDocumentsTest, MarkupForAnElementNestsAsDeepByItself) {
    const auto document = parse("<a/>");
    EXPECT_THROW(document->documentElement()->setInnerXML(wq::fromUTF8(nested("b", 258))), WQXMLException);
    EXPECT_FALSE(document->documentElement()->hasChildNodes());
}

// ---- Length

TEST(HostileDocumentsTest, NamesEndAt50000Bytes) {
    EXPECT_EQ(outcome(named("<", 50000, "/>")), "1 nodes");
    EXPECT_EQ(outcome(named("<", 50001, "/>")), "raises Name too long: NCName");
    EXPECT_EQ(outcome(named("<", 1000000, "/>")), "raises Name too long: NCName");
    EXPECT_EQ(outcome(named("<a ", 1000000, "='x'/>")), "raises Name too long: NCName");
}

TEST(HostileDocumentsTest, ValuesEndAtTenMillionBytesAndTextsDoNot) {
    EXPECT_EQ(outcome(named("<a k='", 1000000, "'/>")), "1 nodes");
    EXPECT_EQ(outcome(named("<a k='", 11000000, "'/>")), "raises AttValue length too long");
    EXPECT_EQ(outcome(named("<a><!--", 11000000, "--></a>")), "raises Comment too big found");
    EXPECT_EQ(outcome(named("<a>", 11000000, "</a>")), "2 nodes");
    EXPECT_EQ(outcomeOfHTML(named("<p>", 11000000, "")), "raises xmlSAX2Characters: huge text node");
}

TEST(HostileDocumentsTest, AnElementMayHaveThousandsOfAttributes) {
    std::string text = "<a";
    for (int i = 0; i < 3000; ++i) text += " k" + std::to_string(i) + "='v'";
    EXPECT_EQ(outcome(text + "/>"), "1 nodes");
}

// ---- Bytes that are no text

TEST(HostileDocumentsTest, BytesThatAreNoTextInTheirEncodingAreRefused) {
    EXPECT_EQ(outcome("<a>\xFF</a>"), "raises Input is not proper UTF-8, indicate encoding !");
    EXPECT_EQ(outcome("<a>\xC0\x80</a>"), "raises Input is not proper UTF-8, indicate encoding !");
    EXPECT_EQ(outcome("<a>\xED\xA0\x80</a>"), "raises Char 0xD800 out of allowed range");
    EXPECT_EQ(outcome("\xFF\xFE<\0a\0/\0>"s), "raises error parsing attribute name");
    EXPECT_EQ(outcome("<?xml version='1.0' encoding='UTF-16'?><a/>"), "raises Document labelled UTF-16 but has UTF-8 content");
    EXPECT_EQ(outcome("<?xml version='1.0' encoding='no-such'?><a/>"), "raises Unsupported encoding no-such");
}

TEST(HostileDocumentsTest, HTMLTakesOtherBytesForLatin1) { EXPECT_EQ(outcomeOfHTML("<p>\xFF</p>"), "4 nodes"); }

TEST(HostileDocumentsTest, CharactersThatXMLDoesNotAllowAreRefused) {
    EXPECT_EQ(outcome("<a>x\0y</a>"s), "raises Char 0x0 out of allowed range");
    EXPECT_EQ(outcomeOfHTML("<p>x\0y</p>"s), "raises Char 0x0 out of allowed range");
    EXPECT_EQ(outcome("<a>\x01</a>"), "raises PCDATA invalid Char value 1");
    EXPECT_EQ(outcome("<a>&#0;</a>"), "raises xmlParseCharRef: invalid xmlChar value 0");
    EXPECT_EQ(outcome("<a>&#x110000;</a>"), "raises xmlParseCharRef: character reference out of bounds");
    EXPECT_EQ(outcome("<a>&#99999999999999999999;</a>"), "raises xmlParseCharRef: character reference out of bounds");
}

TEST(HostileDocumentsTest, ANULBehindTheDocumentIsItsEnd) { EXPECT_EQ(outcome("<a/>\0"s), "1 nodes"); }

TEST(HostileDocumentsTest, NothingIsNoDocument) { EXPECT_EQ(outcome(""), "null"); }

// ---- What a document names

namespace {

// A server of this process that counts who comes.
class Server {
public:
    Server() {
        server.set_pre_routing_handler([this](const httplib::Request&, httplib::Response& response) {
            ++requests;
            response.set_content("<!ENTITY n 'from outside'>", "text/plain");
            return httplib::Server::HandlerResponse::Handled;
        });
        port = server.bind_to_any_port("127.0.0.1");
        thread = std::thread([this] { server.listen_after_bind(); });
        while (!server.is_running()) std::this_thread::yield();
    }
    ~Server() {
        server.stop();
        thread.join();
    }
    std::string address() const { return "http://127.0.0.1:" + std::to_string(port) + "/x"; }
    std::atomic<int> requests = 0;

private:
    httplib::Server server;
    int port = 0;
    std::thread thread;
};

// The one call, for as long as one of these lives.
class NothingOutside {
public:
    NothingOutside() {
        xmlSetExternalEntityLoader(
            [](const char*, const char*, xmlParserCtxtPtr parser) { return xmlNewStringInputStream(parser, BAD_CAST ""); });
    }
    ~NothingOutside() { xmlSetExternalEntityLoader(loader); }

private:
    xmlExternalEntityLoader loader = xmlGetExternalEntityLoader();
};

// All that can name something, each at that address.
std::vector<std::string> documentsThatName(const std::string& address) {
    return {
        "<!DOCTYPE a SYSTEM '" + address + "'><a/>",
        "<!DOCTYPE a PUBLIC '-//none//none' '" + address + "'><a/>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM '" + address + "'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM '" + address + "'>]><a/>",
        "<!DOCTYPE a [<!ENTITY % p SYSTEM '" + address + "'> %p;]><a/>",
        "<?oasis-xml-catalog catalog='" + address + "'?><!DOCTYPE a SYSTEM 'u:none'><a/>",
        "<?xml-stylesheet href='" + address + "'?><a xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" + address + "'/></a>",
    };
}

void readInEveryWay(const std::string& text) {
    outcome(text);
    outcomeOfHTML(text);
    try {
        const auto reader = WQXMLReader::newWithData_baseURL_error(NSData::dataWithBytes(text), nullptr, nullptr);
        while (reader->read() == 1) (void)reader->value();
    } catch (const WQXMLException&) {}
    try {
        parse("<a/>")->documentElement()->setInnerXML(wq::fromUTF8(text));
    } catch (const WQXMLException&) {}
}

}  // namespace

TEST(HostileDocumentsTest, WithTheOneCallNothingConnectsToAServer) {
    const Server server;
    const NothingOutside nothingOutside;
    for (const std::string& text : documentsThatName(server.address())) readInEveryWay(text);
    EXPECT_EQ(server.requests, 0);
}

TEST(HostileDocumentsTest, WithoutItADocumentTypeDoesConnect) {
    if (!xmlHasFeature(XML_WITH_HTTP)) GTEST_SKIP() << "libxml2 without http";
    const Server server;
    EXPECT_EQ(outcome("<!DOCTYPE a SYSTEM '" + server.address() + "'><a>&n;</a>"), "2 nodes");
    EXPECT_EQ(server.requests, 1);
}

TEST(HostileDocumentsTest, WithTheOneCallNoFileIsRead) {
    const std::string path = testing::TempDir() + "wq-hostile.ent";
    std::ofstream(path) << "<!ENTITY n 'from a file'>";
    const std::string text = "<!DOCTYPE a SYSTEM '" + path + "'><a>&n;</a>";
    EXPECT_EQ(outcome(text), "2 nodes");
    {
        const NothingOutside nothingOutside;
        EXPECT_EQ(outcome(text), "raises Entity 'n' not defined");
    }
    std::filesystem::remove(path);
}

TEST(HostileDocumentsTest, AnExternalEntityIsNotReadAnyhow) {
    const std::string path = testing::TempDir() + "wq-secret";
    std::ofstream(path) << "a secret";
    const auto document = parse("<!DOCTYPE a [<!ENTITY e SYSTEM '" + path + "'>]><a>&e;</a>");
    EXPECT_EQ(document->documentElement()->innerText().view().find(u"secret"), std::u16string_view::npos);
    std::filesystem::remove(path);
}
