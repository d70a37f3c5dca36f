#include "platform/NSBundle.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

class NSBundleTest : public testing::Test {
protected:
    ~NSBundleTest() override { NSBundle::setResourceFolders(before); }
    const std::vector<std::string> before = NSBundle::setResourceFolders({WQ_SOURCE_FOLDER "/resources"});
};

}  // namespace

TEST(NSBundle, FindsTheCatalog) {
    const NSString path = NSBundle::pathForResource_ofType(u"catalog", u"xml");
    ASSERT_TRUE(static_cast<bool>(path));
    EXPECT_TRUE(wq::toUTF8(path).ends_with("/catalog.xml"));
}

TEST(NSBundle, LooksAtTheSourceTreeLast) {
    auto folders = NSBundle::setResourceFolders({});
    ASSERT_EQ(folders.size(), 4u);
    EXPECT_EQ(folders.back(), WQ_SOURCE_FOLDER "/resources");
    EXPECT_TRUE(NSBundle::setResourceFolders(std::move(folders)).empty());
}

// These tests are linked with the library, and lie in a folder of their own.
TEST(NSBundle, LooksBesideTheProgramFirst) {
    auto folders = NSBundle::setResourceFolders({});
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(folders.at(1), (program.parent_path().parent_path() / "share/wq").string());
    NSBundle::setResourceFolders(std::move(folders));
}

TEST_F(NSBundleTest, FindsAResourceByNameAndExtension) {
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog", u"xml"), wq::fromUTF8(WQ_SOURCE_FOLDER "/resources/catalog.xml"));
}

TEST_F(NSBundleTest, FindsAResourceByItsWholeName) {
    const NSString path = wq::fromUTF8(WQ_SOURCE_FOLDER "/resources/catalog.xml");
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog.xml", nullptr), path);
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog.xml", u""), path);
}

TEST_F(NSBundleTest, AnswersNullForAnAbsentResource) {
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog", u"txt"), nullptr);
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog", nullptr), nullptr);
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"", nullptr), nullptr);
    EXPECT_EQ(NSBundle::pathForResource_ofType(nullptr, u"xml"), nullptr);
}

TEST_F(NSBundleTest, AFolderIsNoResource) {
    NSBundle::setResourceFolders({WQ_SOURCE_FOLDER});
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"resources", nullptr), nullptr);
}

TEST_F(NSBundleTest, TheFirstFolderThatHoldsAResourceWins) {
    const auto find = [] { return wq::toUTF8(NSBundle::pathForResource_ofType(u"CMakeLists", u"txt")); };
    NSBundle::setResourceFolders({"/nonexistent", WQ_SOURCE_FOLDER "/tests", WQ_SOURCE_FOLDER});
    EXPECT_EQ(find(), WQ_SOURCE_FOLDER "/tests/CMakeLists.txt");
    NSBundle::setResourceFolders({WQ_SOURCE_FOLDER, WQ_SOURCE_FOLDER "/tests"});
    EXPECT_EQ(find(), WQ_SOURCE_FOLDER "/CMakeLists.txt");
}

TEST_F(NSBundleTest, FindsNothingWithoutFolders) {
    NSBundle::setResourceFolders({});
    EXPECT_EQ(NSBundle::pathForResource_ofType(u"catalog", u"xml"), nullptr);
}

TEST_F(NSBundleTest, ReplacingTheFoldersAnswersThoseBefore) {
    EXPECT_EQ(NSBundle::setResourceFolders({"/a", "/b"}), std::vector<std::string>{WQ_SOURCE_FOLDER "/resources"});
    EXPECT_EQ(NSBundle::setResourceFolders({}), (std::vector<std::string>{"/a", "/b"}));
}
