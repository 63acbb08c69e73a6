#include "xml/XmlReferences.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace tavocal {
namespace {

struct ReferenceCase {
    const wchar_t* text;
    const wchar_t* decoded;
};

class XmlReferencesTable : public testing::TestWithParam<ReferenceCase> {};

TEST_P(XmlReferencesTable, Decodes) {
    EXPECT_EQ(decodeReferences(GetParam().text), GetParam().decoded);
}

INSTANTIATE_TEST_SUITE_P(
    Numeric, XmlReferencesTable,
    testing::Values(ReferenceCase{L"a&#65;b", L"aAb"}, ReferenceCase{L"&#x41;&#X3bb;", L"A\u03BB"},
                    ReferenceCase{L"&#00065;", L"A"}, ReferenceCase{L"&#65A;", L"A"},
                    ReferenceCase{L"&#65601;", L"A"}, ReferenceCase{L"&#x10041;", L"A"},
                    ReferenceCase{L"&#&#65;", L"&#A"}, ReferenceCase{L"&&#65;;", L"&A;"}));

INSTANTIATE_TEST_SUITE_P(Named, XmlReferencesTable,
                         testing::Values(ReferenceCase{L"&lt;&gt;&amp;&quot;&apos;", L"<>&\"'"},
                                         ReferenceCase{L"&amp;lt;", L"&lt;"},
                                         ReferenceCase{L"&#38;lt;", L"<"},
                                         ReferenceCase{L"&amp;#65;", L"&#65;"},
                                         ReferenceCase{L"&&lt;", L"&<"}));

INSTANTIATE_TEST_SUITE_P(
    Untouched, XmlReferencesTable,
    testing::Values(ReferenceCase{L"", L""}, ReferenceCase{L"&", L"&"}, ReferenceCase{L"&#", L"&#"},
                    ReferenceCase{L"&#x", L"&#x"}, ReferenceCase{L"&#;", L"&#;"},
                    ReferenceCase{L"&#x;", L"&#x;"}, ReferenceCase{L"&#65", L"&#65"},
                    ReferenceCase{L"&#65 ;", L"&#65 ;"}, ReferenceCase{L"&#xG;", L"&#xG;"},
                    ReferenceCase{L"&#-1;", L"&#-1;"}, ReferenceCase{L"&#xx41;", L"&#xx41;"},
                    ReferenceCase{L"&#123456;", L"&#123456;"},
                    ReferenceCase{L"&#x000041;", L"&#x000041;"}, ReferenceCase{L"&LT;", L"&LT;"},
                    ReferenceCase{L"&lt", L"&lt"}, ReferenceCase{L"& lt;", L"& lt;"},
                    ReferenceCase{L"&nbsp;", L"&nbsp;"}));

TEST(XmlReferences, GivesNul) {
    EXPECT_EQ(decodeReferences(L"&#0;"), std::wstring(1, L'\0'));
    EXPECT_EQ(decodeReferences(L"&#65536;"), std::wstring(1, L'\0'));
}

TEST(XmlReferences, RefusesDecimalWithoutDigit) {
    for (const wchar_t* text : {L"&#A;", L"&#ABCDE;", L"x&#f1;"}) {
        try {
            decodeReferences(text);
            FAIL() << "decoded";
        } catch (const std::invalid_argument& failure) {
            EXPECT_STREQ(failure.what(), "invalid stoi argument");
        }
    }
}

}  // namespace
}  // namespace tavocal
