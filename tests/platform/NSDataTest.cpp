#include "platform/NSData.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <httplib.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/NSError.h"
#include "platform/NSURL.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// What a read answered.
struct Answer {
    Ref<NSData> data;
    Ref<NSError> error;
    std::string message() const { return wq::toUTF8(error->localizedDescription()); }
};

Answer read(const Ref<NSURL>& url) {
    Answer answer;
    answer.data = NSData::dataWithContentsOfURL_error(url, &answer.error);
    EXPECT_NE(answer.data == nullptr, answer.error == nullptr);
    return answer;
}
Answer read(const std::string& url) { return read(NSURL::URLWithString(wq::fromUTF8(url))); }

void expectError(const Answer& answer, const std::string& url, const char16_t* domain, int64_t code, const std::string& reason) {
    SCOPED_TRACE(url);
    EXPECT_EQ(answer.data, nullptr);
    EXPECT_EQ(answer.error->domain(), domain);
    EXPECT_EQ(answer.error->code(), code);
    EXPECT_THAT(answer.message(), StartsWith(url + ": "));
    EXPECT_THAT(answer.message(), HasSubstr(reason));
    EXPECT_THAT(answer.message(), Not(HasSubstr("\n")));
}
void expectFileError(const std::string& url, int64_t code, const std::string& reason) {
    expectError(read(url), url, NSPOSIXErrorDomain, code, reason);
}
void expectCurlError(const std::string& url, int64_t code, const std::string& reason = "") {
    expectError(read(url), url, u"libcurl", code, reason);
}

class SizeLimit {
public:
    explicit SizeLimit(uint64_t bytes) : before(NSData::setSizeLimit(bytes)) {}
    ~SizeLimit() { NSData::setSizeLimit(before); }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    uint64_t before;
};

// ---- Files

class NSDataFileTest : public testing::Test {
protected:
    NSDataFileTest() {
        std::string pattern = testing::TempDir() + "wq-data-XXXXXX";
        folder = mkdtemp(pattern.data());
        std::filesystem::permissions(folder, std::filesystem::perms(0755));
    }
    ~NSDataFileTest() override { std::filesystem::remove_all(folder); }

    std::string path(const std::string& name) const { return folder + "/" + name; }
    std::string url(const std::string& name) const { return "file://" + path(name); }
    std::string write(const std::string& name, std::string_view bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return url(name);
    }
    std::string folder;
};

// Permissions do not bind the superuser, who therefore becomes somebody else for a while.
class Unprivileged {
public:
    Unprivileged() : wasRoot(geteuid() == 0) {
        if (wasRoot) isInPlace = setresuid(kNobody, kNobody, 0) == 0;
    }
    ~Unprivileged() {
        if (!wasRoot || !isInPlace) return;
        EXPECT_EQ(setresuid(0, 0, 0), 0);
        prctl(PR_SET_DUMPABLE, 1);  // the leak checker attaches to the process
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    bool isInPlace = true;

private:
    static constexpr uid_t kNobody = 65534;
    bool wasRoot;
};

// ---- The network

class NSDataHTTPTest : public testing::Test {
protected:
    NSDataHTTPTest() {
        for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"}) unsetenv(name);
        addPages();
        port = server.bind_to_any_port("127.0.0.1");
        thread = std::thread([this] { server.listen_after_bind(); });
    }
    ~NSDataHTTPTest() override { stop(); }

    void stop() {
        if (!thread.joinable()) return;
        while (!server.is_running()) std::this_thread::yield();
        server.stop();
        thread.join();
    }
    std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port) + path; }

    void addPages();
    void page(const std::string& path, const std::string& bytes) {
        server.Get(path, [bytes](const httplib::Request&, httplib::Response& response) {
            response.set_content(bytes, "application/octet-stream");
        });
    }
    void redirect(const std::string& path, const std::string& location) {
        server.Get(path, [location](const httplib::Request&, httplib::Response& response) { response.set_redirect(location); });
    }

    httplib::Server server;
    std::thread thread;
    int port = 0;
};

void NSDataHTTPTest::addPages() {
    page("/page", "a\0bc"s);
    page("/empty", "");
    page("/ten", "0123456789");
    server.Get("/broken", [](const httplib::Request&, httplib::Response& response) {
        response.status = 500;
        response.set_content("what a server says about itself", "application/octet-stream");
    });
    server.Get("/chunks", [](const httplib::Request&, httplib::Response& response) {
        response.set_chunked_content_provider("application/octet-stream", [](size_t, httplib::DataSink& sink) {
            sink.write("01234", 5);
            sink.write("56789", 5);
            sink.done();
            return true;
        });
    });
    server.Get("/packed", [](const httplib::Request&, httplib::Response& response) {
        const auto hello = "\x1f\x8b\x08\0\0\0\0\0\0\x03\xcb\x48\xcd\xc9\xc9\x07\0\x86\xa6\x10\x36\x05\0\0\0"sv;
        response.set_header("Content-Encoding", "gzip");
        response.set_content(hello.data(), hello.size(), "application/octet-stream");
    });
    redirect("/moved", "/page");
    redirect("/to-file", "file:///proc/self/status");
    redirect("/to-ftp", "ftp://127.0.0.1/x");
    redirect("/loop", "/loop");
}

}  // namespace

// ---- Bytes

TEST(NSData, HoldsBytes) {
    const auto data = NSData::dataWithBytes("a\0b"s);
    EXPECT_EQ(data->view(), "a\0b"sv);
    EXPECT_EQ(data->length(), 3u);
}

TEST(NSData, MayBeEmpty) {
    const auto data = NSData::dataWithBytes("");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->length(), 0u);
    EXPECT_TRUE(data->view().empty());
}

TEST(NSData, AppendsBytes) {
    const auto data = NSData::dataWithBytes("a");
    data->append("b\0"sv);
    data->append("");
    data->append(data->view());
    EXPECT_EQ(data->view(), "ab\0ab\0"sv);
}

TEST(NSData, NullIsEmptyAndTakesNothing) {
    const Ref<NSData> null;
    null->append("a");
    EXPECT_TRUE(null->view().empty());
    EXPECT_EQ(null->length(), 0u);
}

TEST(NSData, ASnapshotStaysAsItWas) {
    const auto data = NSData::dataWithBytes("given");
    const auto given = data->snapshot();
    data->append(" and more");
    const auto more = data->snapshot();
    data->append(given->view());
    data->append(more->view());
    EXPECT_EQ(given->view(), "given");
    EXPECT_EQ(more->view(), "given and more");
    EXPECT_EQ(data->view(), "given and moregivengiven and more");
    EXPECT_EQ(Ref<NSData>()->snapshot(), nullptr);
}

TEST(NSData, ANewOneTakesBytes) {
    const Ref<NSData> data(new NSData);
    EXPECT_EQ(data->length(), 0u);
    EXPECT_EQ(data->snapshot(), nullptr);
    data->append("a");
    EXPECT_EQ(data->view(), "a");
}

TEST(NSData, AppendsItsOwnBytesWhileASnapshotLives) {
    const auto data = NSData::dataWithBytes("ab");
    const auto kept = data->snapshot();
    data->append(data->view());
    EXPECT_EQ(data->view(), "abab");
    EXPECT_EQ(kept->view(), "ab");
}

TEST(NSData, AcceptsDocumentsUpToTwoGigabytes) {
    const uint64_t before = NSData::setSizeLimit(10);
    EXPECT_EQ(before, 2147483647u);
    EXPECT_EQ(NSData::setSizeLimit(before), 10u);
}

// ---- Reading files

TEST_F(NSDataFileTest, ReadsAFile) { EXPECT_EQ(read(write("a", "one\r\ntwo\0three\xFF"sv)).data->view(), "one\r\ntwo\0three\xFF"sv); }

TEST_F(NSDataFileTest, ReadsALargeFile) {
    const std::string bytes(3'000'000, 'x');
    EXPECT_TRUE(read(write("a", bytes)).data->view() == bytes);
}

TEST_F(NSDataFileTest, AnEmptyFileIsEmptyData) {
    const Answer answer = read(write("empty", ""));
    ASSERT_TRUE(answer.data);
    EXPECT_EQ(answer.data->length(), 0u);
}

TEST_F(NSDataFileTest, ReadsAFileWhateverItsNameHolds) {
    for (const char16_t* name : {u"a b", u"100%", u"a#b", u"a?b", u"it's", u"Gr\u00FC\u00DFe", u"two\nlines", u"%41"}) {
        SCOPED_TRACE(testing::PrintToString(NSString(name)));
        write(wq::toUTF8(name), "text");
        EXPECT_EQ(read(NSURL::fileURLWithPath(wq::fromUTF8(path("")) + name)).data->view(), "text");
    }
}

TEST_F(NSDataFileTest, ReadsAFileWhoseNameIsNotUTF8) {
    write("\xFF", "text");
    EXPECT_EQ(read(url("%FF")).data->view(), "text");
}

TEST_F(NSDataFileTest, ReadsAllWaysToWriteAFileURL) {
    write("a", "text");
    for (const char* start : {"file://", "file:", "FILE://", "File:", "file://localhost", "file://LOCALHOST"}) {
        SCOPED_TRACE(start);
        EXPECT_EQ(read(start + path("a")).data->view(), "text");
    }
}

TEST_F(NSDataFileTest, IgnoresFragmentAndQuery) {
    write("a", "text");
    EXPECT_EQ(read(url("a#frag")).data->view(), "text");
    EXPECT_EQ(read(url("a?query")).data->view(), "text");
}

TEST_F(NSDataFileTest, ResolvesDotSegmentsInTheText) {
    write("a", "text");
    EXPECT_EQ(read(url("missing/../a")).data->view(), "text");
}

TEST_F(NSDataFileTest, FollowsLinks) {
    write("a", "text");
    std::filesystem::create_symlink("a", path("link"));
    EXPECT_EQ(read(url("link")).data->view(), "text");
}

TEST_F(NSDataFileTest, ReadsAPipeToItsEnd) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::thread writer([this] { write("pipe", "through the pipe"); });
    EXPECT_EQ(read(url("pipe")).data->view(), "through the pipe");
    writer.join();
}

TEST_F(NSDataFileTest, ReadsADescriptorToItsEnd) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(::write(ends[1], "text", 4), 4);
    close(ends[1]);
    EXPECT_EQ(read("file:///dev/fd/" + std::to_string(ends[0])).data->view(), "text");
    close(ends[0]);
}

TEST(NSData, ReadsAFileOfUnknownSize) { EXPECT_THAT(std::string(read("file:///proc/self/status").data->view()), HasSubstr("\nPid:")); }

TEST_F(NSDataFileTest, AMissingFileIsAnError) { expectFileError(url("missing"), ENOENT, "No such file or directory"); }

TEST_F(NSDataFileTest, ADanglingLinkIsAnError) {
    std::filesystem::create_symlink("nowhere", path("link"));
    expectFileError(url("link"), ENOENT, "No such file or directory");
}

TEST_F(NSDataFileTest, AFolderIsAnError) {
    std::filesystem::create_directory(path("sub"));
    for (const char* name : {"sub", "sub/", "sub/#a", "s%75b"}) expectFileError(url(name), EISDIR, "Is a directory");
    expectFileError("file://localhost" + path("sub"), EISDIR, "Is a directory");
    expectFileError("file://127.0.0.1" + path("sub"), EISDIR, "Is a directory");
    expectFileError("file:///", EISDIR, "Is a directory");
}

TEST_F(NSDataFileTest, APathThroughAFileIsAnError) {
    write("a", "text");
    expectFileError(url("a/b"), ENOTDIR, "Not a directory");
}

TEST_F(NSDataFileTest, AFileThatMayNotBeReadIsAnError) {
    write("secret", "text");
    std::filesystem::permissions(path("secret"), std::filesystem::perms::none);
    const Unprivileged somebodyElse;
    if (!somebodyElse.isInPlace) GTEST_SKIP() << "cannot give up the superuser's rights";
    expectFileError(url("secret"), EACCES, "Permission denied");
}

TEST_F(NSDataFileTest, AFileInAFolderThatMayNotBeEnteredIsAnError) {
    std::filesystem::create_directory(path("closed"));
    write("closed/a", "text");
    std::filesystem::permissions(path("closed"), std::filesystem::perms::none);
    {
        const Unprivileged somebodyElse;
        if (!somebodyElse.isInPlace) GTEST_SKIP() << "cannot give up the superuser's rights";
        expectFileError(url("closed/a"), EACCES, "Permission denied");
    }
    std::filesystem::permissions(path("closed"), std::filesystem::perms::owner_all);
}

TEST_F(NSDataFileTest, AFileLargerThanTheLimitIsAnError) {
    write("ten", "0123456789");
    {
        const SizeLimit limit(9);
        expectCurlError(url("ten"), 63);
    }
    const SizeLimit limit(10);
    EXPECT_EQ(read(url("ten")).data->length(), 10u);
}

TEST_F(NSDataFileTest, ALimitOfZeroAcceptsEmptyFilesOnly) {
    const SizeLimit limit(0);
    EXPECT_TRUE(read(write("empty", "")).data);
    expectCurlError(write("one", "1"), 63);
}

TEST_F(NSDataFileTest, TheErrorArgumentIsOptional) {
    EXPECT_EQ(NSData::dataWithContentsOfURL_error(NSURL::URLWithString(wq::fromUTF8(url("missing"))), nullptr), nullptr);
    EXPECT_EQ(NSData::dataWithContentsOfURL_error(nullptr, nullptr), nullptr);
}

TEST_F(NSDataFileTest, TheErrorArgumentIsOnlyWrittenOnFailure) {
    auto error = NSError::errorWithDomain_code_description(u"before", 1, u"before");
    EXPECT_TRUE(NSData::dataWithContentsOfURL_error(NSURL::URLWithString(wq::fromUTF8(write("a", "text"))), &error));
    EXPECT_EQ(error->domain(), u"before");
    EXPECT_FALSE(NSData::dataWithContentsOfURL_error(NSURL::URLWithString(wq::fromUTF8(url("missing"))), &error));
    EXPECT_EQ(error->domain(), u"NSPOSIXErrorDomain");
}

TEST_F(NSDataFileTest, AMessageIsOneLineWhateverTheNameHolds) { expectFileError(url("two%0Alines"), ENOENT, "No such file"); }

// ---- URLs that are not read

TEST(NSData, ANullURLIsAnError) {
    const Answer answer = read(Ref<NSURL>());
    EXPECT_EQ(answer.error->domain(), u"libcurl");
    EXPECT_EQ(answer.error->code(), 3);
    EXPECT_EQ(answer.error->localizedDescription(), u"(null): No URL");
}

TEST(NSData, AFileURLThatNamesNoFileHereIsAnError) {
    for (const char* url : {"file://server/x", "file:a.txt", "file:///tmp/a%00b", "file://"}) expectCurlError(url, 3);
}

TEST(NSData, AURLWithoutSchemeIsNeverLookedFor) {
    for (const char* url : {"a.txt", "/etc/passwd", "//127.0.0.1/x", "", "#a", "localhost"}) expectCurlError(url, 3, "no scheme");
}

TEST(NSData, AnHTTPURLWithoutHostIsNeverLookedFor) {
    for (const char* url : {"http:///127.0.0.1", "http:80", "https:/127.0.0.1", "HTTP:x", "http://:80/"})
        expectCurlError(url, 3, "no host");
}

TEST(NSData, OtherProtocolsAreErrors) {
    for (const char* url :
         {"ftp://127.0.0.1/x", "scp://127.0.0.1/x", "gopher://127.0.0.1/x", "data:,x", "mailto:a@127.0.0.1", "dict://127.0.0.1/x",
          "files:///tmp", "smb://127.0.0.1/x"})
        expectCurlError(url, 1, "not supported");
}

// ---- HTTP

TEST_F(NSDataHTTPTest, ReadsAPage) { EXPECT_EQ(read(url("/page")).data->view(), "a\0bc"sv); }

TEST_F(NSDataHTTPTest, ReadsAPageInAnyCaseOfTheScheme) {
    EXPECT_EQ(read("HTTP://127.0.0.1:" + std::to_string(port) + "/ten#frag").data->view(), "0123456789");
}

TEST_F(NSDataHTTPTest, AnEmptyPageIsEmptyData) {
    const Answer answer = read(url("/empty"));
    ASSERT_TRUE(answer.data);
    EXPECT_EQ(answer.data->length(), 0u);
}

TEST_F(NSDataHTTPTest, ReadsAPageInChunks) { EXPECT_EQ(read(url("/chunks")).data->view(), "0123456789"); }

TEST_F(NSDataHTTPTest, UnpacksAPage) { EXPECT_EQ(read(url("/packed")).data->view(), "hello"); }

TEST_F(NSDataHTTPTest, FollowsARedirect) { EXPECT_EQ(read(url("/moved")).data->view(), "a\0bc"sv); }

TEST_F(NSDataHTTPTest, AStatusFrom400IsAnErrorThatNamesIt) {
    expectCurlError(url("/missing"), 22, "404");
    expectCurlError(url("/broken"), 22, "500");
}

TEST_F(NSDataHTTPTest, ARedirectToAFileIsAnError) { expectCurlError(url("/to-file"), 1, "file"); }

TEST_F(NSDataHTTPTest, ARedirectToAnotherProtocolIsAnError) { expectCurlError(url("/to-ftp"), 1, "ftp"); }

TEST_F(NSDataHTTPTest, ARedirectLoopIsAnError) { expectCurlError(url("/loop"), 47); }

TEST_F(NSDataHTTPTest, APageLargerThanTheLimitIsAnError) {
    {
        const SizeLimit limit(9);
        expectCurlError(url("/ten"), 63);
        expectCurlError(url("/chunks"), 63);
    }
    const SizeLimit limit(10);
    EXPECT_EQ(read(url("/ten")).data->length(), 10u);
    EXPECT_EQ(read(url("/chunks")).data->length(), 10u);
}

TEST_F(NSDataHTTPTest, ThePackedSizeDoesNotHideTheUnpackedOne) {
    const SizeLimit limit(4);
    expectCurlError(url("/packed"), 63);
}

TEST_F(NSDataHTTPTest, APortWithoutServerIsAnError) {
    stop();
    expectCurlError(url("/page"), 7);
}

TEST_F(NSDataHTTPTest, AHostThatCannotExistIsAnError) { expectCurlError("http://" + std::string(70, 'a') + "/", 6); }
