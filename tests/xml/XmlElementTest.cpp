#include "xml/XmlElement.h"

#include <gtest/gtest.h>

#include "xml/XmlAttribute.h"
#include "xml/XmlText.h"

namespace tavocal::test {

TEST(XmlElementTest, HoldsAndFindsIgnoringCase) {
    XmlElement element(L"Calibration");
    element.setAttribute(L"Date", L"today");
    element.setAttribute(L"Type", L"a<b&c");
    element.setAttribute(L"DATE", L"now");  // keeps its name and its place
    EXPECT_EQ(element.toString(2), L"        <Calibration Date=\"now\" Type=\"a<b&c\"/>\r\n");
    EXPECT_EQ(element.getAttribute(L"tYPE")->value(), L"a<b&c");
    EXPECT_EQ(element.getAttribute(L"Missing"), nullptr);

    XmlNode& text = element.addChild(std::make_unique<XmlText>(L"Sensor"));
    XmlNode& first = element.addChild(std::make_unique<XmlElement>(L"Sensor"));
    first.addChild(std::make_unique<XmlElement>(L"Inner"));
    XmlNode& last = element.addChild(std::make_unique<XmlElement>(L"sensor"));
    EXPECT_EQ(element.findChild(L"sENSOR"), &first);
    EXPECT_EQ(element.findChild(L"Inner"), nullptr) << "only direct children are searched";
    EXPECT_TRUE(element.firstChild() == &text && element.lastChild() == &last);
    EXPECT_TRUE(first.asElement() == &first && text.asElement() == nullptr);
    EXPECT_EQ(element.toString(0),
              L"<Calibration Date=\"now\" Type=\"a<b&c\">Sensor    <Sensor>\r\n"
              L"        <Inner/>\r\n    </Sensor>\r\n    <sensor/>\r\n</Calibration>\r\n");
    EXPECT_TRUE(last.firstChild() == nullptr && last.lastChild() == nullptr);
}

}  // namespace tavocal::test
