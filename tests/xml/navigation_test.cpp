#include "tests/xml/Readable.h"

TEST(Navigation, ReadsAttributes)
{
    const char* pMixed = "<r a=\"1\" b='2' c=3 d e = \"5\" v=x/y/>";
    const struct
    {
        const char* pText;
        const char* pName;
        const char* pValue;
    } rows[] = {
        {pMixed, "a", "1"},
        {pMixed, "b", "2"},
        {pMixed, "c", "3"},
        {pMixed, "d", "d"},
        {pMixed, "e", "5"},
        {pMixed, "v", "x/y/"},
        {pMixed, "r", ""},
        {pMixed, "x", ""},
        {"<r a=\"1\" b/>", "b", "b"},
        {"<r a=\"1\" \n b>", "b", "b"},
        {"<r b=''/>", "b", ""},
        {"<r \"x\" a=\"1\">", "a", "1"},
        {"<r a 'x'='1'>", "a", "a"},
        {"<r a 'x'='1'>", "x", ""},
        {"<r b=\"1\" b=\"2\"/>", "b", "1"},
        {"<r b='a' a='c'/>", "a", "c"},
        {"<r b = a a = c>", "a", "c"},
        {"<r b='1'/>", "bb", ""},
        {"<r b='1'/>", "b=1", "1"},
        {"<r b='1'/>", "b x", "1"},
        {"<r B='1'/>", "b", ""},
        {"<r b='1'/>", "", ""},
        {"<r a=\"'\" b='\"'/>", "b", "\""},
        {"<r a\"b\"='1'>", "a\"b\"", "1"},
        {"<r =x a=1>", "a", "1"},
        {"<r a==1>", "a", "=1"},
        {"<r a/b=1>", "b", ""},
        // behind a = the > is a value, and the scan can run on into what follows
        {"<r a=>", "a", ">"},
        {"<r a=><s b='1'/>", "b", "1"},
        {"<r a='&#65' b=';'/>", "a", "A"},
        {"<r a='\n&amp;&lt;&gt;&apos;&quot;\n'/>", "a", "<U+000A>&<>'\"<U+000A>"},
    };
    for (const auto& row : rows)
    {
        CXmlDocument document;
        document.SetText(Wide(row.pText));
        EXPECT_EQ(Readable(document.GetAttribute(Wide(row.pName))), "") << "before any find";
        ASSERT_TRUE(document.FindElement(nullptr)) << row.pText;
        EXPECT_EQ(Readable(document.GetAttribute(Wide(row.pName))), row.pValue) << row.pName << " of " << row.pText;
        EXPECT_TRUE(document.GetAttribute(nullptr).IsEmpty());
        EXPECT_TRUE(document.GetAttributeAt(-1, TEXT("a")).IsEmpty());
        EXPECT_TRUE(document.GetAttributeAt(document.m_usedPositions, TEXT("a")).IsEmpty());
    }
}

// Texts that end inside a tag, which the parser makes no element of: the scan must stop at the last unit.
TEST(Navigation, ScansTagsThatDoNotEnd)
{
    const struct
    {
        const char* pTag;
        const char* pToken; ///< "-": not found
        unsigned flags;
    } rows[] = {{"r", "-", 0},           {"r a", "a", 0},         {"r  a ", "a", 0},     {"r a=", "=", 0},
                {"r a= ", "=", 0},       {"r a=1", "1", 0},       {"r a='", "", 0x8000}, {"r a='x y", "x y", 0x8000},
                {"r a \"", "a", 0x8000}, {"r b='a", "-", 0x8000}, {"", "-", 0},          {"r a=1 a=2", "1", 0}};
    for (const auto& row : rows)
    {
        const CString text = Wide(row.pTag);
        XmlScanner scanner{.text = text.GetString()};
        const bool found = ScanAttribute(scanner, TEXT("a"));
        EXPECT_EQ(found ? Readable(GetTokenText(scanner)) : "-", row.pToken) << row.pTag;
        EXPECT_EQ(scanner.flags, row.flags) << row.pTag;
    }
}

TEST(Navigation, DecodesReferences)
{
    const std::pair<const char*, const char*> rows[] = {{"x&amp;y", "x&y"},
                                                        {"&lt;&gt;&apos;&quot;", "<>'\""},
                                                        {"&bad;&", "&bad;&"},
                                                        {"&LT;&amp", "&LT;&amp"},
                                                        {"&amp;lt;", "&lt;"},
                                                        {"&#65;&#x42;z", "ABz"},
                                                        {"&#1234567;", "<U+D687>"},
                                                        {"&#12345678;", "&#12345678;"},
                                                        {"&#X41;&#xZ;&#;&#0;&#x;", "&#X41;&#xZ;&#;&#0;&#x;"},
                                                        {"&#x0x41;&#x-0X41;", "A<U+FFBF>"},
                                                        {"&#-65;", "<U+FFBF>"},
                                                        {"&#65601;&#99a;", "Ac"},
                                                        {"&# +65;&#\t\v65;", "AA"},
                                                        {"&#65536;", "<U+0000>"},
                                                        {"&#x0000041;", "A"},
                                                        {"&#x00000041;", "&#x00000041;"},
                                                        {"&#", "&#"},
                                                        {"&#x", "&#x"},
                                                        {"&#6", "&#6"}};
    for (const auto& [pText, pDecoded] : rows)
    {
        const CString text = Wide(pText);
        EXPECT_EQ(Readable(DecodeEntities(text, text.GetLength())), pDecoded) << pText;
    }
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&amp;"), 4)), "&amp"); // a name must stand inside the length,
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&#65;"), 1)), "A");    // a number need not
    EXPECT_EQ(Readable(DecodeEntities(TEXT("x"), 0)), "");
}

TEST(Navigation, FindsElementsInOrder)
{
    CXmlDocument document;
    document.SetText(TEXT("<r><aa/><a n='1'><b/></a><x/><a=b n='2'></a><a[1] n='3'/></r>"));
    document.EnterElement(); // nothing to enter yet
    EXPECT_FALSE(document.FindElement(TEXT("a")));
    ASSERT_TRUE(document.FindElement(TEXT("r")));
    EXPECT_FALSE(document.FindElement(TEXT("r")));
    document.EnterElement();
    EXPECT_EQ(Readable(document.GetAttribute(TEXT("n"))), "");
    EXPECT_EQ(document.m_nodeType, 0);

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
    document.EnterElement(); // has no children
    EXPECT_FALSE(document.FindElement(nullptr));
    EXPECT_EQ(document.m_parentPos, 7);
    EXPECT_EQ(document.FindSibling(99, 0, nullptr), 0);
}
