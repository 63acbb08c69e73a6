#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/Files.h"
#include "support/TempFolder.h"
#include "support/XmlOutline.h"
#include "xml/XmlAttribute.h"
#include "xml/XmlComment.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlElement.h"
#include "xml/XmlText.h"

namespace tavocal {
namespace {

class XmlDocumentTest : public testing::Test {
  protected:
    std::string written() const {
        std::string content;
        EXPECT_TRUE(platform::readFile(path, content));
        return content;
    }

    const test::TempFolder folder;
    const std::string path = folder.path("document.xml");
    XmlDocument document;
};

TEST_F(XmlDocumentTest, PrintsTree) {
    document.addChild(std::make_unique<XmlDeclaration>(L"xml", L"version=\"1.0\""));
    XmlElement& root = document.addChild(std::make_unique<XmlElement>(L"Log"));
    root.setAttribute(L"Date", L"today");
    root.setAttribute(L"Type", L"a<b&c");
    root.addChild(std::make_unique<XmlComment>(L"note"));
    XmlElement& values = root.addChild(std::make_unique<XmlElement>(L"Values"));
    values.addChild(std::make_unique<XmlText>(L"1 < 2"));
    XmlElement& inner = root.addChild(std::make_unique<XmlElement>(L"Inner"));
    inner.addChild(std::make_unique<XmlElement>(L"Empty")).setAttribute(L"X", L"");
    XmlElement& mixed = root.addChild(std::make_unique<XmlElement>(L"Mixed"));
    mixed.addChild(std::make_unique<XmlText>(L"text"));
    mixed.addChild(std::make_unique<XmlElement>(L"Last"));

    ASSERT_EQ(document.save(path), XmlResult::Success);
    EXPECT_EQ(written(),
              "<?xml version=\"1.0\"?>\r\n"
              "<Log Date=\"today\" Type=\"a<b&c\">\r\n"
              "    <!--note-->\r\n"
              "    <Values>1 < 2</Values>\r\n"
              "    <Inner>\r\n"
              "        <Empty X=\"\"/>\r\n"
              "    </Inner>\r\n"
              "    <Mixed>text        <Last/>\r\n"
              "    </Mixed>\r\n"
              "</Log>\r\n");
}

TEST_F(XmlDocumentTest, SavesUtf8AndReplacesFile) {
    ASSERT_EQ(platform::writeFile(path, std::string(1000, 'x')), "");
    document.addChild(std::make_unique<XmlComment>(L"\u00E9\u20AC"));
    ASSERT_EQ(document.save(path), XmlResult::Success);
    EXPECT_EQ(written(), "<!--\xC3\xA9\xE2\x82\xAC-->\r\n");
}

TEST_F(XmlDocumentTest, RoundTripsThroughFile) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
        "<Tavo>\r\n"
        "    <Sensor Flags=\"2\" Name=\"\xC3\xA9\">\r\n"
        "        <!--two\r\nlines-->\r\n"
        "        <Offset>-40</Offset>\r\n"
        "        <Empty/>\r\n"
        "    </Sensor>\r\n"
        "</Tavo>\r\n";
    ASSERT_EQ(platform::writeFile(path, text), "");
    ASSERT_EQ(document.load(path), XmlResult::Success);
    const std::string first = test::outline(document);
    EXPECT_EQ(first,
              "?xml|version=\"1.0\" encoding=\"UTF-8\"? "
              "Tavo(Sensor[Flags=2 Name=\xC3\xA9](!two\nlines! Offset('-40') Empty))");
    ASSERT_EQ(document.save(path), XmlResult::Success);
    ASSERT_EQ(document.load(path), XmlResult::Success);
    EXPECT_EQ(test::outline(document), first);
}

TEST_F(XmlDocumentTest, PrintsEmptyElementShort) {
    ASSERT_EQ(document.loadBytes("<a></a>"), XmlResult::Success);
    EXPECT_EQ(document.firstChild()->toString(0), L"<a/>\r\n");
    EXPECT_EQ(document.firstChild()->toString(2), L"        <a/>\r\n");
    EXPECT_EQ(document.toString(0), L"");
}

TEST_F(XmlDocumentTest, ReportsPathsThatFail) {
    EXPECT_EQ(document.load(""), XmlResult::EmptyPath);
    EXPECT_EQ(document.load(path), XmlResult::Unreadable);
    EXPECT_EQ(document.load(folder.path()), XmlResult::Unreadable);
    EXPECT_EQ(document.save(folder.path()), XmlResult::Unwritable);
    EXPECT_EQ(document.save(""), XmlResult::Unwritable);
}

TEST_F(XmlDocumentTest, DropsWhatItHeldWhenLoadedAgain) {
    ASSERT_EQ(document.loadBytes("<a>text</a>"), XmlResult::Success);
    ASSERT_EQ(document.loadBytes("<b>u</b>"), XmlResult::Success);
    EXPECT_EQ(test::outline(document), "b('u')");
    EXPECT_EQ(document.innerText(), L"u");
    EXPECT_EQ(document.innerXml(), L"<b>u</b>");

    EXPECT_EQ(document.load(""), XmlResult::EmptyPath);
    EXPECT_EQ(document.innerText(), L"u");
    EXPECT_EQ(document.load(path), XmlResult::Unreadable);
    EXPECT_EQ(document.outerXml(), L"");
    EXPECT_EQ(document.firstChild(), nullptr);
}

TEST_F(XmlDocumentTest, ReadsLineEndsAndNulAsTextMode) {
    ASSERT_EQ(document.loadBytes(std::string("<a>1\r\n2\r3\n</a>\0<b/>", 19)), XmlResult::Success);
    EXPECT_EQ(document.outerXml(), L"<a>1\n2\r3\n</a>");
    EXPECT_EQ(document.innerText(), L"1\n2\r3\n");
}

TEST_F(XmlDocumentTest, RefusesTextThatIsNotUtf8) {
    EXPECT_EQ(document.loadBytes("<a>\xE4</a>"), XmlResult::Unreadable);
    EXPECT_EQ(document.firstChild(), nullptr);
}

TEST_F(XmlDocumentTest, LeavesBrokenReferenceToTheCaller) {
    EXPECT_THROW(static_cast<void>(document.loadBytes("<b/><a c='&#ABC;'/>")),
                 std::invalid_argument);
    EXPECT_EQ(test::outline(document), "b");
}

TEST(XmlElementTest, SetsAttributesIgnoringCase) {
    XmlElement element(L"Sensor");
    element.setAttribute(L"Success", L"false");
    element.setAttribute(L"Type", L"x");
    element.setAttribute(L"SUCCESS", L"true");
    ASSERT_EQ(element.attributes().size(), 2U);
    const XmlAttribute* success = element.getAttribute(L"success");
    ASSERT_NE(success, nullptr);
    EXPECT_EQ(success->name(), L"Success");
    EXPECT_EQ(success->value(), L"true");
    EXPECT_EQ(element.getAttribute(L"Missing"), nullptr);
}

TEST(XmlElementTest, FindsFirstChildOfName) {
    XmlElement element(L"Calibration");
    element.addChild(std::make_unique<XmlText>(L"Sensor"));
    const XmlNode& first = element.addChild(std::make_unique<XmlElement>(L"Sensor"));
    element.addChild(std::make_unique<XmlElement>(L"sensor"));
    EXPECT_EQ(element.findChild(L"sensor"), &first);
    EXPECT_EQ(first.asElement(), &first);
    EXPECT_EQ(element.firstChild()->asElement(), nullptr);
    EXPECT_EQ(element.findChild(L"other"), nullptr);
    element.clearChildren();
    EXPECT_EQ(element.findChild(L"sensor"), nullptr);
    EXPECT_EQ(element.lastChild(), nullptr);
}

}  // namespace
}  // namespace tavocal
