#include "xml/XmlElement.h"

#include <gtest/gtest.h>

#include "xml/XmlAttribute.h"
#include "xml/XmlComment.h"
#include "xml/XmlDeclaration.h"
#include "xml/XmlText.h"

namespace tavocal::test {

TEST(XmlElementTest, PrintsToTheByte) {
    XmlElement root(L"Log");
    root.setAttribute(L"Date", L"today");
    root.setAttribute(L"Type", L"a<b&c");
    root.setAttribute(L"DATE", L"now");  // keeps its name and its place
    root.addChild(std::make_unique<XmlDeclaration>(L"pi", L"v=\"1\""));
    root.addChild(std::make_unique<XmlComment>(L"note"));
    root.addChild(std::make_unique<XmlElement>(L"Values"))
        .addChild(std::make_unique<XmlText>(L"1 < 2"));
    root.addChild(std::make_unique<XmlElement>(L"Inner"))
        .addChild(std::make_unique<XmlElement>(L"Empty"))
        .setAttribute(L"X", L"");
    XmlElement& mixed = root.addChild(std::make_unique<XmlElement>(L"Mixed"));
    mixed.addChild(std::make_unique<XmlText>(L"text"));
    mixed.addChild(std::make_unique<XmlElement>(L"Last"));
    EXPECT_EQ(root.toString(1),
              L"    <Log Date=\"now\" Type=\"a<b&c\">\r\n"
              L"        <?pi v=\"1\"?>\r\n"
              L"        <!--note-->\r\n"
              L"        <Values>1 < 2</Values>\r\n"
              L"        <Inner>\r\n"
              L"            <Empty X=\"\"/>\r\n"
              L"        </Inner>\r\n"
              L"        <Mixed>text            <Last/>\r\n"
              L"        </Mixed>\r\n"
              L"    </Log>\r\n");
}

TEST(XmlElementTest, FindsTheFirstIgnoringCase) {
    XmlElement element(L"Calibration");
    element.setAttribute(L"Success", L"true");
    EXPECT_EQ(element.getAttribute(L"success")->value(), L"true");
    EXPECT_EQ(element.getAttribute(L"Missing"), nullptr);

    EXPECT_TRUE(element.firstChild() == nullptr && element.lastChild() == nullptr);
    XmlNode& text = element.addChild(std::make_unique<XmlText>(L"Sensor"));
    XmlNode& first = element.addChild(std::make_unique<XmlElement>(L"Sensor"));
    first.addChild(std::make_unique<XmlElement>(L"Inner"));
    XmlNode& last = element.addChild(std::make_unique<XmlElement>(L"sensor"));
    EXPECT_EQ(element.findChild(L"sENSOR"), &first);
    EXPECT_EQ(element.findChild(L"Inner"), nullptr) << "only direct children are searched";
    EXPECT_TRUE(element.firstChild() == &text && element.lastChild() == &last);
    EXPECT_TRUE(first.asElement() == &first && text.asElement() == nullptr);
    element.clearChildren();
    EXPECT_EQ(element.findChild(L"sensor"), nullptr);
}

}  // namespace tavocal::test
