#include "tests/support/Readable.h"

TEST(XmlNavigation, FindsElementsInOrder)
{
    CXmlDocument document;
    document.SetText(TEXT("<r n='&#65' m=';'><aa/><a n='1'><b/></a><x/><a=b n='2'></a><a[1] n='3'/></r>"));
    document.EnterElement(); // nothing to enter yet
    EXPECT_FALSE(document.FindElement(TEXT("a")));
    ASSERT_TRUE(document.FindElement(TEXT("r")));
    EXPECT_FALSE(document.FindElement(TEXT("r")));
    EXPECT_EQ(Readable(document.GetAttribute(TEXT("n"))), "A"); // the search for ; goes past the end of the value
    document.EnterElement();
    EXPECT_EQ(Readable(document.GetAttribute(TEXT("n"))), "");
    EXPECT_EQ(Readable(document.GetAttributeAt(3, TEXT("n"))), "");

    const struct
    {
        const char* pName;
        std::vector<int> found;
    } rows[] = {{"a", {3, 6}}, {"a/b", {3, 6}}, {"a b", {3, 6}}, {"a=", {3, 6}}, {"a[1]", {3, 6, 7}},
                {"A", {}},     {"aax", {}},     {"aa", {2}},     {"*", {}},      {"", {2, 3, 5, 6, 7}}};
    for (const auto& row : rows)
    {
        document.m_currentPos = 0;
        std::vector<int> found;
        while (document.FindElement(Wide(row.pName)))
            found.push_back(document.m_currentPos);
        EXPECT_EQ(found, row.found) << row.pName;
        EXPECT_EQ(document.m_parentPos, 1);
    }
    EXPECT_EQ(Readable(document.GetAttribute(TEXT("n"))), "3");
    EXPECT_EQ(Readable(document.GetAttributeAt(3, TEXT("n"))), "1");
    EXPECT_EQ(Readable(document.GetAttributeAt(99, TEXT("n"))), "");
    EXPECT_EQ(Readable(document.GetAttribute(nullptr)), "");
    document.EnterElement(); // has no children
    EXPECT_FALSE(document.FindElement(nullptr));
    EXPECT_EQ(document.m_parentPos, 7);
    document.m_currentPos = 99;
    EXPECT_FALSE(document.FindElement(nullptr));
}
