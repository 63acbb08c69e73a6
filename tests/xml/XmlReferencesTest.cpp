#include "xml/XmlReferences.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/MessageOf.h"

namespace tavocal::test {

TEST(XmlReferencesTest, NumbersComeFirstNamesSecondAndWhatOnlyLooksLikeOneStays) {
    EXPECT_EQ(decodeReferences(L"a&#65;b&#x41;&#X3bb;&#xAf;&#9;&#57;"), L"aAbA\u03BB\u00AF\t9");
    EXPECT_EQ(decodeReferences(L"&#00065;&#65A;&#65601;&#x10041;"), L"AAAA");
    EXPECT_EQ(decodeReferences(L"&#&#65;&&#65;;"), L"&#A&A;");
    EXPECT_EQ(decodeReferences(L"&lt;&gt;&amp;&quot;&apos;&&lt;"), L"<>&\"'&<");
    EXPECT_EQ(decodeReferences(L"&amp;lt;&#38;lt;&amp;#65;"), L"&lt;<&#65;");
    EXPECT_EQ(decodeReferences(L"&#0;&#65536;"), std::wstring(2, L'\0'));
    for (const std::wstring text : {L"", L"&", L"&#", L"&#x", L"&#;", L"&#x;", L"&#65", L"&#65 ;",
                                    L"&#xG;", L"&#xg;", L"&#/;", L"&#-1;", L"&#xx41;", L"&#123456;",
                                    L"&#x000041;", L"&LT;", L"&lt", L"& lt;", L"&nbsp;"}) {
        EXPECT_EQ(decodeReferences(text), text);
    }
    for (const std::wstring text : {L"&#A;", L"&#ABCDE;", L"x&#f1;"}) {
        EXPECT_EQ(messageOf<std::invalid_argument>([&] { decodeReferences(text); }),
                  "invalid stoi argument");
    }
}

}  // namespace tavocal::test
