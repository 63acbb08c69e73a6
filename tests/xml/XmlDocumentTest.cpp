#include "xml/XmlDocument.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"
#include "support/XmlOutline.h"

namespace tavocal::test {

TEST(XmlDocumentTest, RoundTripsThroughAFile) {
    const TempFolder folder;
    const std::string text =
        "<?xml v=\"1\"?>\r\n<Tavo>\r\n    <Sensor Flags=\"2\" Name=\"\xC3\xA9\">\r\n"
        "        <Offset>-40</Offset>\r\n    </Sensor>\r\n</Tavo>\r\n<!--\xE2\x82\xAC-->\r\n";
    const std::string path = folder.write("document.xml", text);
    XmlDocument document;
    ASSERT_EQ(document.load(path), XmlResult::Success);
    EXPECT_EQ(outline(document),
              "?xml|v=\"1\"? Tavo(Sensor[Flags=2 Name=\xC3\xA9](Offset('-40'))) !\xE2\x82\xAC!");
    folder.write("document.xml", std::string(1000, 'x'));
    ASSERT_EQ(document.save(path), XmlResult::Success);
    EXPECT_EQ(fileContent(path), text);
    EXPECT_EQ(document.save(folder.path()), XmlResult::Unwritable);
    EXPECT_EQ(document.load(folder.path()), XmlResult::Unreadable);
}

TEST(XmlDocumentTest, DropsWhatItHeldWhenLoadedAgain) {
    XmlDocument document;
    ASSERT_EQ(document.loadBytes("<a>text</a>"), XmlResult::Success);
    ASSERT_EQ(document.loadBytes(std::string("<b>1\r\n2\r3\n</b>\r\0<c/>", 20)),
              XmlResult::Success);
    EXPECT_EQ(document.load(""), XmlResult::EmptyPath);
    // Line ends and a NUL count as in a text file.
    EXPECT_EQ(outline(document), "b('1\n2\r3\n')");
    EXPECT_EQ(document.outerXml(), L"<b>1\n2\r3\n</b>\r");
    EXPECT_TRUE(document.innerText() == L"1\n2\r3\n" && document.innerXml() == L"<b>1\n2\r3\n</b>");
    EXPECT_EQ(document.loadBytes("<a>\xE4</a>"), XmlResult::Unreadable);
    EXPECT_TRUE(document.outerXml().empty() && document.firstChild() == nullptr);
    // A broken reference is left to the caller.
    EXPECT_THROW(static_cast<void>(document.loadBytes("<b/><a c='&#ABC;'/>")),
                 std::invalid_argument);
    EXPECT_EQ(outline(document), "b");
}

}  // namespace tavocal::test
