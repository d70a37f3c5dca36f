#include "examples/book/EditingSession.h"

#include "tests/examples/book/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const std::string kFirst =
    "The near bell says a little less than it means, and the far one tells the truth about the river. It is called by "
    "a bell that hangs on a post at the top of the landing, one to each bank. Nobody knows who cast the two.";
const std::string kSecond =
    "She met me at the landing on two sticks, looked at my boots, then at my hands, and then for some time at the "
    "water. It was the first thing she taught me. I did not notice that it was a lesson.";

std::string p(const std::string& words) { return "<p>" + words + "</p>"; }
std::string book(const std::string& content) { return "<book>" + content + "</book>"; }
std::string wordsOf(const Ref<WQXMLNode>& node) { return wq::toUTF8(wq::cast<WQXMLElement>(node)->innerText()); }

TEST(EditingSessionTest, TellsEachEditInOrder) {
    const auto session = edit(parse(book(p(kFirst) + p(kSecond))));
    EXPECT_THAT(session.told, ElementsAre(HasSubstr("inserted"), HasSubstr("deleted"), HasSubstr("split")));
}

TEST(EditingSessionTest, TheTwoParagraphsBecomeOneOfWhichTheLastSentenceIsSplitOff) {
    const auto document = parse(book(p(kFirst) + p(kSecond)));
    const auto session = edit(document);
    ASSERT_THAT(session.afterwards, SizeIs(2));
    EXPECT_EQ(*document->documentElement()->childNodes(), session.afterwards);
    const std::string merged = wordsOf(session.afterwards[0]), split = wordsOf(session.afterwards[1]);
    EXPECT_THAT(merged, testing::StartsWith(kFirst.substr(0, 20)));
    EXPECT_THAT(merged, testing::ContainsRegex("It was the first thing she taught me\\. ?$"));
    EXPECT_THAT(split, testing::MatchesRegex(" ?I did not notice that it was a lesson\\."));
    EXPECT_THAT(merged, Not(HasSubstr("Nobody knows")));  // deleted across the two
    EXPECT_THAT(merged, Not(HasSubstr("She met me")));
    EXPECT_EQ(session.afterwards[0]->nodeName(), u"p");
    EXPECT_EQ(session.afterwards[1]->nodeName(), u"p");
}

TEST(EditingSessionTest, BeforehandAreTheTwoParagraphsThatAreToBeEdited) {
    const auto document = parse(book(p(kFirst) + p(kSecond)));
    const auto children = *document->documentElement()->childNodes();
    EXPECT_EQ(elementsToEdit(document), children);
    EXPECT_EQ(edit(document).beforehand, children);
}

TEST(EditingSessionTest, AskingWhichThoseAreEditsNothing) {
    const auto document = parse(book(p(kFirst) + p(kSecond)));
    const std::string before = serialised(document->documentElement());
    elementsToEdit(document);
    EXPECT_EQ(serialised(document->documentElement()), before);
}

TEST(EditingSessionTest, TheFirstTwoSideBySideWithEnoughWordsAreEdited) {
    const std::string other = p("Short.") + "<quote>" + p(kFirst) + "</quote>" + p("Short.");
    const auto document = parse(book(other + p(kFirst) + " <!--c--> " + p(kSecond) + p(kFirst)));
    const auto before = *document->documentElement()->childNodes();
    const auto session = edit(document);
    ASSERT_THAT(session.beforehand, SizeIs(2));
    EXPECT_EQ(session.beforehand[0], before[3]);
    const auto after = *document->documentElement()->childNodes();
    EXPECT_EQ(after[1]->firstChild()->firstChild()->nodeValue(), wq::fromUTF8(kFirst));
    EXPECT_EQ(wordsOf(after.back()), kFirst);
    EXPECT_EQ(after.back(), before.back());
}

TEST(EditingSessionTest, WithoutTwoSuchElementsNothingIsDone) {
    for (const std::string& content :
         {std::string(), p(kFirst), p("Short.") + p("Short."), p(kFirst) + p("Short.") + p(kSecond),
          "<quote>" + p(kFirst) + "</quote>" + p("One.")}) {
        SCOPED_TRACE(content);
        const auto document = parse(book(content));
        const std::string before = serialised(document->documentElement());
        EXPECT_THAT(elementsToEdit(document), IsEmpty());
        const auto session = edit(document);
        EXPECT_THAT(session.told, IsEmpty());
        EXPECT_THAT(session.beforehand, IsEmpty());
        EXPECT_THAT(session.afterwards, IsEmpty());
        EXPECT_EQ(serialised(document->documentElement()), before);
    }
}

TEST(EditingSessionTest, CharactersBeyondTheFirstPlaneStayWhole) {
    std::string bells;
    for (int index = 0; index < 60; ++index) bells += "🔔🔔🔔 ";
    const auto document = parse(book(p("The" + bells + kFirst) + p("She " + bells + kSecond)));
    edit(document);
    EXPECT_THAT(wordsOf(document->documentElement()), Not(HasSubstr("\uFFFD")));
}

TEST(EditingSessionTest, MarkupInsideTheParagraphsIsKeptWhereItIsNotDeleted) {
    const auto document = parse(book(p(kFirst + " <em>No.</em>") + p(kSecond + " At <strong>last</strong> it rang.")));
    const auto session = edit(document);
    ASSERT_THAT(session.afterwards, SizeIs(2));
    const std::string xml = serialised(document->documentElement());
    EXPECT_THAT(xml, HasSubstr("<strong>last</strong>"));
    EXPECT_THAT(xml, Not(HasSubstr("<em>")));
}

TEST(EditingSessionTest, ALastSentenceWithMarkupIsSplitOffAsAWhole) {
    const auto document = parse(book(p(kFirst) + p(kSecond + " At <strong>last</strong> it rang.")));
    const auto session = edit(document);
    ASSERT_THAT(session.afterwards, SizeIs(2));
    EXPECT_EQ(wordsOf(session.afterwards[1]), "At last it rang.");
}

TEST(EditingSessionTest, OnlyWhatIsAroundTheEditsIsResolvedAgain) {
    Manuscript manuscript(book("<chapter>" + p(kFirst) + p(kSecond) + "</chapter><chapter>" + p(kFirst) + "</chapter>"));
    const auto other = manuscript.document->documentElement()->lastChild();
    const auto style = manuscript.styles.styleOf(other->firstChild());
    const auto session = edit(manuscript.document);
    EXPECT_GT(manuscript.styles.resolveAgain(), 0u);
    EXPECT_EQ(manuscript.styles.styleOf(other->firstChild()), style);
    for (const auto& node : session.afterwards) EXPECT_TRUE(manuscript.styles.styleOf(node));
}

}  // namespace
