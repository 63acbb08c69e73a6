#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/TempFolder.h"
#include "support/XmlOutline.h"
#include "xml/XmlComment.h"

namespace tavocal::test {

class XmlDocumentTest : public testing::Test {
  protected:
    const TempFolder folder;
    const std::string path = folder.path("document.xml");
    XmlDocument document;
};

TEST_F(XmlDocumentTest, RoundTripsThroughAFile) {
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
        "<Tavo>\r\n"
        "    <Sensor Flags=\"2\" Name=\"\xC3\xA9\">\r\n"
        "        <Offset>-40</Offset>\r\n"
        "        <Empty/>\r\n"
        "    </Sensor>\r\n"
        "</Tavo>\r\n"
        "<!--\xE2\x82\xAC-->\r\n";
    folder.write("document.xml", text);
    ASSERT_EQ(document.load(path), XmlResult::Success);
    EXPECT_EQ(outline(document),
              "?xml|version=\"1.0\" encoding=\"UTF-8\"? "
              "Tavo(Sensor[Flags=2 Name=\xC3\xA9](Offset('-40') Empty)) !\xE2\x82\xAC!");
    folder.write("document.xml", std::string(1000, 'x'));
    ASSERT_EQ(document.save(path), XmlResult::Success);
    EXPECT_EQ(fileContent(path), text);
    EXPECT_EQ(document.toString(0), L"");
}

TEST_F(XmlDocumentTest, ReportsPathsThatFailAndDropsWhatItHeld) {
    ASSERT_EQ(document.loadBytes("<a>text</a>"), XmlResult::Success);
    ASSERT_EQ(document.loadBytes("<b>u</b>"), XmlResult::Success);
    EXPECT_EQ(document.load(""), XmlResult::EmptyPath);
    EXPECT_EQ(outline(document), "b('u')");
    EXPECT_EQ(document.innerText(), L"u");
    EXPECT_EQ(document.innerXml(), L"<b>u</b>");
    EXPECT_EQ(document.save(folder.path()), XmlResult::Unwritable);
    EXPECT_EQ(document.load(path), XmlResult::Unreadable);
    EXPECT_EQ(document.outerXml(), L"");
    EXPECT_EQ(document.firstChild(), nullptr);
    EXPECT_EQ(document.load(folder.path()), XmlResult::Unreadable);
    EXPECT_EQ(document.loadBytes("<a>\xE4</a>"), XmlResult::Unreadable);
}

TEST_F(XmlDocumentTest, ReadsLineEndsAndNulAsTextMode) {
    ASSERT_EQ(document.loadBytes(std::string("<a>1\r\n2\r3\n</a>\r\0<b/>", 20)),
              XmlResult::Success);
    EXPECT_EQ(document.outerXml(), L"<a>1\n2\r3\n</a>\r");
    EXPECT_EQ(document.innerText(), L"1\n2\r3\n");
}

TEST_F(XmlDocumentTest, LeavesABrokenReferenceToTheCaller) {
    EXPECT_THROW(static_cast<void>(document.loadBytes("<b/><a c='&#ABC;'/>")),
                 std::invalid_argument);
    EXPECT_EQ(outline(document), "b");
}

}  // namespace tavocal::test
