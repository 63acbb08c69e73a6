#include "xml/XmlElement.h"

#include <gtest/gtest.h>

#include "xml/XmlAttribute.h"
#include "xml/XmlComment.h"
#include "xml/XmlText.h"

namespace tavocal::test {

TEST(XmlElementTest, PrintsToTheByte) {
    XmlElement root(L"Log");
    root.setAttribute(L"Date", L"today");
    root.setAttribute(L"Type", L"a<b&c");
    root.setAttribute(L"DATE", L"now");  // keeps its name and its place
    root.addChild(std::make_unique<XmlComment>(L"note"));
    root.addChild(std::make_unique<XmlElement>(L"Inner"))
        .addChild(std::make_unique<XmlElement>(L"Values"))
        .addChild(std::make_unique<XmlText>(L"1 < 2"));
    XmlElement& mixed = root.addChild(std::make_unique<XmlElement>(L"Mixed"));
    mixed.addChild(std::make_unique<XmlText>(L"text"));
    mixed.addChild(std::make_unique<XmlElement>(L"Last")).setAttribute(L"X", L"");
    EXPECT_EQ(root.toString(1),
              L"    <Log Date=\"now\" Type=\"a<b&c\">\r\n"
              L"        <!--note-->\r\n"
              L"        <Inner>\r\n"
              L"            <Values>1 < 2</Values>\r\n"
              L"        </Inner>\r\n"
              L"        <Mixed>text            <Last X=\"\"/>\r\n"
              L"        </Mixed>\r\n"
              L"    </Log>\r\n");
    EXPECT_EQ(root.getAttribute(L"dATE")->value(), L"now");
    EXPECT_EQ(root.getAttribute(L"Missing"), nullptr);
}

TEST(XmlElementTest, FindsTheFirstDirectChildIgnoringCase) {
    XmlElement element(L"Calibration");
    XmlNode& text = element.addChild(std::make_unique<XmlText>(L"Sensor"));
    XmlNode& first = element.addChild(std::make_unique<XmlElement>(L"Sensor"));
    first.addChild(std::make_unique<XmlElement>(L"Inner"));
    XmlNode& last = element.addChild(std::make_unique<XmlElement>(L"sensor"));
    EXPECT_EQ(element.findChild(L"sENSOR"), &first);
    EXPECT_EQ(element.findChild(L"Inner"), nullptr);
    EXPECT_TRUE(element.firstChild() == &text && element.lastChild() == &last);
    EXPECT_TRUE(first.asElement() == &first && text.asElement() == nullptr);
    element.clearChildren();
    EXPECT_TRUE(element.firstChild() == nullptr && element.lastChild() == nullptr);
}

}  // namespace tavocal::test
