#include <gtest/gtest.h>

#include <string>

#include "base/Text.h"
#include "support/XmlOutline.h"
#include "xml/XmlComment.h"
#include "xml/XmlCursor.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlDocument.h"
#include "xml/XmlElement.h"

namespace tavocal {
namespace {

struct ParseCase {
    const char* text;
    const char* outline;  // with the result code in front, if it isn't 0
};

class XmlParserTable : public testing::TestWithParam<ParseCase> {};

TEST_P(XmlParserTable, GivesTree) {
    EXPECT_EQ(test::outlineOf(GetParam().text), GetParam().outline) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    Documents, XmlParserTable,
    testing::Values(ParseCase{"", ""}, ParseCase{" \t\r\n", ""}, ParseCase{"\xEF\xBB\xBF<a/>", "a"},
                    ParseCase{"<a/>\xEF\xBB\xBF", "a '\xEF\xBB\xBF'"},
                    ParseCase{"<a/> x <b/>", "a 'x ' b"},
                    ParseCase{"<?xml v=\"1\"?>\n<!--c--><a/>", "?xml|v=\"1\"? !c! a"},
                    // Without a blank the name of a declaration has no end.
                    ParseCase{"<?xml?><a/>", "?xml?><a/>|?"}, ParseCase{"<?xml one", "?xml|one?"},
                    ParseCase{"<!-- no end ->", "! no end ->!"}, ParseCase{"<!--a--b-->", "!a--b!"},
                    ParseCase{"<!---->", "!!"}, ParseCase{"<!-->", "!>!"}));

INSTANTIATE_TEST_SUITE_P(
    Elements, XmlParserTable,
    testing::Values(ParseCase{"<a></a>", "a"}, ParseCase{"<Ab></aB>", "Ab"},
                    ParseCase{"<a><b>t</b><c/></a>", "a(b('t') c)"},
                    ParseCase{"<a> <b/> t <b/> </a>", "a(b ' t ' b)"},
                    ParseCase{"<a>x&#65;y&lt;</a>", "a('x&#65;y&lt;')"},
                    ParseCase{"<a><!--c--><?d e?></a>", "a(!c! ?d|e?)"},
                    ParseCase{"<a>x/y>z</a>", "a('x/y>z')"},
                    // A closing tag may end like an empty one, whatever it names.
                    ParseCase{"<a>x</b/>", "a('x')"}, ParseCase{"<></>", ""},
                    ParseCase{"<\xC3\xA9.1-\xC2\xB7/>", "\xC3\xA9.1-\xC2\xB7"}));

// A file that ends inside an element gives what could be read of it.
INSTANTIATE_TEST_SUITE_P(CutOff, XmlParserTable,
                         testing::Values(ParseCase{"<", ""}, ParseCase{"<a", "a"},
                                         ParseCase{"<a ", "a"}, ParseCase{"<a b=\"c", "a[b=c]"},
                                         ParseCase{"<a>", "a"}, ParseCase{"<a><b>t", "a(b('t'))"},
                                         ParseCase{"<a>t</", "a('t')"},
                                         ParseCase{"<a>t</b", "a('t')"}));

INSTANTIATE_TEST_SUITE_P(
    Attributes, XmlParserTable,
    testing::Values(ParseCase{"<a b=\"1\" c='2'/>", "a[b=1 c=2]"},
                    ParseCase{"<a b=1>t</a>", "a[b=1]('t')"},
                    ParseCase{"<a b=\"x y\"/>", "a[b=x y]"},
                    ParseCase{"<a b=\"it's\"/>", "a[b=it's]"}, ParseCase{"<a b='\"'/>", "a[b=\"]"},
                    ParseCase{"<a b=\"1=2\"/>", "a[b=12]"}, ParseCase{"<a b=\"1/2\"/>", "a[b=1/2]"},
                    ParseCase{"<a b=\"<\"/>", "a[b=<]"}, ParseCase{"<a b/>", "a[b=]"},
                    ParseCase{"<a \"b c\"/>", "a[bc= ]"},
                    ParseCase{"<a b=\"&#65;&#x41;&amp;lt;\"/>", "a[b=AA&lt;]"},
                    // ">" and "/>" end the tag inside quotes too.
                    ParseCase{"<a b=\"1>2\"/>", "10: "}, ParseCase{"<a b=\"1>2</a>", "a[b=1]('2')"},
                    // Each blank begins an attribute.
                    ParseCase{"<a />", "a[=]"}, ParseCase{"<a  b='1' >t</a>", "a[= b=1 =]('t')"},
                    ParseCase{"<a b = '1'/>", "a[b= = 1=]"}));

INSTANTIATE_TEST_SUITE_P(
    Failures, XmlParserTable,
    testing::Values(ParseCase{"<1a/>", "5: "}, ParseCase{"<-/>", "5: "}, ParseCase{"<a!/>", "5: "},
                    ParseCase{"<a<b/>", "5: "}, ParseCase{"<a\xC3\x97/>", "5: "},
                    ParseCase{"<a\xF0\x9F\x98\x80/>", "5: "}, ParseCase{"</a>", "5: "},
                    ParseCase{"<a></b>", "6: "}, ParseCase{"<a></a >", "6: "},
                    ParseCase{"<a><b></a></b>", "6: "}, ParseCase{"<![CDATA[x]]>", "9: "},
                    ParseCase{"<a><!DOCTYPE x></a>", "9: "}, ParseCase{"/>", "10: "},
                    ParseCase{"<a>x/></a>", "10: "},
                    // What stood before the failure stays.
                    ParseCase{"<!--c--><a/>t<b><1/></b><c/>", "5: !c! a 't'"}));

TEST(XmlParser, KeepsSourceTexts) {
    XmlDocument document;
    const std::string text = "<?x y?>\n<a b='1'> <c>t<!--d-->u</c> v</a> <e/>";
    ASSERT_EQ(document.loadBytes(text), XmlResult::Success);
    EXPECT_EQ(toUtf8(document.outerXml()), text);
    EXPECT_EQ(document.innerXml(), L"<?x y?><a b='1'> <c>t<!--d-->u</c> v</a><e/>");
    EXPECT_EQ(document.innerText(), L"y  v");

    const XmlNode* a = document.findChild(L"A");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->outerXml(), L"<a b='1'> <c>t<!--d-->u</c> v</a>");
    EXPECT_EQ(a->innerXml(), L" <c>t<!--d-->u</c> v");
    EXPECT_EQ(a->innerText(), L"  v");
    EXPECT_EQ(a->parent(), &document);

    const XmlNode* c = a->findChild(L"c");
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->innerText(), L"tu");
    EXPECT_EQ(c->parent(), a);
    EXPECT_EQ(c->firstChild()->value(), L"t");
    EXPECT_EQ(c->lastChild()->value(), L"u");
    EXPECT_EQ(c->children()[1]->outerXml(), L"<!--d-->");
    EXPECT_EQ(document.findChild(L"c"), nullptr) << "only direct children are searched";
}

TEST(XmlParser, AsksForTheOpeningToken) {
    XmlCursor cursor(L"text");
    EXPECT_EQ(XmlComment().parse(cursor), XmlResult::OpeningTokenMissing);
    EXPECT_EQ(XmlDeclaration().parse(cursor), XmlResult::OpeningTokenMissing);
    EXPECT_EQ(XmlDocument().parse(cursor), XmlResult::NoParser);
    EXPECT_EQ(cursor.position(), 0U);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

XmlResult resultOf(const std::string& text) {
    XmlDocument document;
    return document.loadBytes(text);
}

TEST(XmlParser, LimitsDepth) {
    EXPECT_EQ(resultOf(repeated("<a>", 255) + repeated("</a>", 255)), XmlResult::Success);
    EXPECT_EQ(resultOf(repeated("<a>", 256) + repeated("</a>", 256)), XmlResult::TooDeep);
    EXPECT_EQ(resultOf(repeated("<a>", 100'000)), XmlResult::TooDeep);
    EXPECT_EQ(resultOf(repeated("<a><b></b></a>", 1000)), XmlResult::Success);
}

TEST(XmlParser, LimitsAttributes) {
    EXPECT_EQ(resultOf("<a" + repeated(" b='1'", 255) + "/>"), XmlResult::Success);
    EXPECT_EQ(resultOf("<a" + repeated(" b='1'", 256) + "/>"), XmlResult::TooManyAttributes);
    EXPECT_EQ(resultOf("<a" + std::string(255, ' ') + "/>"), XmlResult::Success);
    EXPECT_EQ(resultOf("<a" + std::string(1'000'000, ' ')), XmlResult::TooManyAttributes);
}

TEST(XmlParser, LimitsNodes) {
    const std::string most = repeated("</>", kMaxXmlNodes);
    EXPECT_EQ(resultOf(most), XmlResult::Success);
    EXPECT_EQ(resultOf(most + "</>"), XmlResult::TooLarge);
    // Attributes count too.
    const std::string element = "<a" + std::string(255, ' ') + "/>";
    EXPECT_EQ(resultOf(repeated(element, kMaxXmlNodes / 256 + 1)), XmlResult::TooLarge);
}

TEST(XmlParser, LimitsBytes) {
    const std::string most(kMaxXmlBytes, '\0');
    EXPECT_EQ(resultOf(most), XmlResult::Success);
    EXPECT_EQ(resultOf(most + "x"), XmlResult::TooLarge);
}

TEST(XmlParser, TakesLongNamesAndTexts) {
    const std::string name(1'000'000, 'n');
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<" + name + ">" + name + "</" + name + ">"), XmlResult::Success);
    EXPECT_EQ(toUtf8(document.firstChild()->name()), name);
    EXPECT_EQ(toUtf8(document.innerText()), name);
}

}  // namespace
}  // namespace tavocal
