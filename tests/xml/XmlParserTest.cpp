#include "xml/XmlParser.h"

#include <gtest/gtest.h>

#include "support/Lines.h"
#include "support/XmlOutline.h"
#include "xml/XmlText.h"

namespace tavocal::test {

// The text of a document, and its outline with the result code in front, if that isn't 0.
constexpr const char* kRows[][2] = {
    {"<a/>\xEF\xBB\xBF", "a '\xEF\xBB\xBF'"},
    {"\xEF\xBB\xBF<?xml v=\"1\"?>\n<!--c--><a/> x <b/>", "?xml|v=\"1\"? !c! a 'x ' b"},
    // Without a blank the name of a declaration has no end.
    {"<?xml?><a/>", "?xml?><a/>|?"},
    {"<!--a--b--><!---><!-- no end ->", "!a--b! !-><!-- no end ->!"},
    {"<a></a><Ab></aB><a><b>t</b><c/></a>", "a Ab a(b('t') c)"},
    {"<a> <b/> t <b/> </a><a>x&#65;y&lt;/y>z</a>", "a(b ' t ' b) a('x&#65;y&lt;/y>z')"},
    {"<a><!--c--><?d e?></a><\xC3\xA9.1-\xC2\xB7/>", "a(!c! ?d|e?) \xC3\xA9.1-\xC2\xB7"},
    // A closing tag may end like an empty one, whatever it names.
    {"<a>x</b/>", "a('x')"},
    // A file that ends inside an element gives what could be read of it.
    {"<a b=\"c", "a[b=c]"},
    {"<a><b>t<?d one", "a(b('t' ?d|one?))"},
    {"<a>t</b", "a('t')"},
    {"<a b=\"1\" c='2'/><a b=1>t</a><a b=\"x y\"/>", "a[b=1 c=2] a[b=1]('t') a[b=x y]"},
    {"<a b=\"it's\"/><a b='\"'/><a b=\"1=2\"/>", "a[b=it's] a[b=\"] a[b=12]"},
    {"<a b=\"1/&#65;\"/><a b=\"<\"/><a b/><a \"b c\"/>", "a[b=1/A] a[b=<] a[b=] a[bc= ]"},
    // ">" and "/>" end the tag inside quotes too.
    {"<a b=\"1>2</a>", "a[b=1]('2')"},
    // Each blank begins an attribute.
    {"<a /><a  b='1' >t</a><a b = '1'/>", "a[=] a[= b=1 =]('t') a[b= = 1=]"},
    // What stood before the failure stays.
    {"<!--c--><a/>t<b><1/></b><c/>", "5: !c! a 't'"},
};

TEST(XmlParserTest, GivesTheTree) {
    for (const auto& [text, expected] : kRows) {
        EXPECT_EQ(outlineOf(text), expected) << text;
    }
    const auto expectNothing = [](const char* expected, std::vector<const char*> texts) {
        for (const char* text : texts) {
            EXPECT_EQ(outlineOf(text), expected) << text;
        }
    };
    expectNothing("", {"", " \t\r\n", "<", "</>"});
    expectNothing("5: ", {"<1a/>", "<-/>", "<a!/>", "<a<b/>", "</a>", "<a\xF0\x9F\x98\x80/>"});
    expectNothing("6: ", {"<a></b>", "<a></a >", "<a><b></a></b>"});
    expectNothing("9: ", {"<![CDATA[x]]>", "<a><!DOCTYPE x></a>"});
    expectNothing("10: ", {"/>", "<a>x/></a>", "<a b=\"1>2\"/>"});
}

TEST(XmlParserTest, KeepsSourceTexts) {
    XmlDocument document;
    const std::string text = "<?x y?>\n<a b='1'> <c>t<!--d-->u</c> v</a> <e/>";
    ASSERT_EQ(document.loadBytes(text), XmlResult::Success);
    EXPECT_EQ(toUtf8(document.outerXml()), text);
    EXPECT_EQ(document.innerXml(), L"<?x y?><a b='1'> <c>t<!--d-->u</c> v</a><e/>");
    EXPECT_EQ(document.innerText(), L"y  v");
    const XmlNode& a = *document.findChild(L"A");
    EXPECT_TRUE(a.innerXml() == L" <c>t<!--d-->u</c> v" && a.innerText() == L"  v");
    EXPECT_EQ(a.asElement()->attributes()[0].outerXml(), L"b='1'");
    const XmlNode& c = *a.firstChild();
    EXPECT_TRUE(a.parent() == &document && c.parent() == &a);
    EXPECT_TRUE(c.innerText() == L"tu" && c.lastChild()->outerXml() == L"u");
}

// What a node takes for each byte of "<a>", "x" and a blank, beside the text itself.
static_assert(sizeof(XmlElement) <= 120 && sizeof(XmlText) <= 88 && sizeof(XmlAttribute) <= 48);

// The most that a text of that many repeated pieces can hold is held, in little memory, and neither
// the way down nor the way back takes the stack.
TEST(XmlParserTest, HasNoLimit) {
    constexpr std::size_t kCount = 300000;
    const auto times = [](const std::string& text) {
        return replaceAll(std::string(kCount, '-'), "-", text);
    };
    XmlDocument document;
    ASSERT_EQ(document.loadBytes(times("<a>x")), XmlResult::Success);
    const XmlNode* deepest = &document;
    for (std::size_t depth = 0; depth < kCount; ++depth) {
        deepest = deepest->lastChild();
    }
    EXPECT_EQ(deepest->outerXml(), L"<a>x");
    EXPECT_EQ(deepest->firstChild(), deepest->lastChild());
    EXPECT_EQ(document.loadBytes("<a>" + times("<b>") + "</a>"), XmlResult::ClosingNameDiffers);
    EXPECT_EQ(document.firstChild(), nullptr);
    // A level is told in eight bits.
    ASSERT_EQ(document.loadBytes(replaceAll(std::string(258, '-'), "-", "<a>")),
              XmlResult::Success);
    const std::wstring text = document.firstChild()->toString(0);
    const std::wstring wrapped = L"<a>\r\n<a>\r\n    <a/>\r\n</a>\r\n";
    EXPECT_NE(text.find(std::wstring(1020, L' ') + wrapped), std::wstring::npos);
    ASSERT_EQ(document.loadBytes("<a" + times(" ") + "b=1/>" + times("<c/>")), XmlResult::Success);
    EXPECT_EQ(document.firstChild()->asElement()->attributes().size(), kCount);
    EXPECT_EQ(document.firstChild()->asElement()->attributes().back().value(), L"1");
    EXPECT_EQ(document.lastChild()->outerXml(), L"<c/>");
}

}  // namespace tavocal::test
