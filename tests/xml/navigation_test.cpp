#include "tests/xml/Readable.h"

TEST(Navigation, ReadsAttributes)
{
    const struct
    {
        const char* pText;
        Strings names;
        Strings values;
    } rows[] = {
        {"<r a=\"1\" b='2' c=3 d e = \"5\" v=x/y/>",
         {"a", "b", "c", "d", "e", "v", "r"},
         {"1", "2", "3", "d", "5", "x/y/", ""}},
        {"<r B='0' b='1' b='2'/>", {"b", "bb", "b=1", "b x", "a", "", "1"}, {"1", "", "1", "1", "", "", ""}},
        {"<r a 'x'='1' \n b/>", {"a", "x", "b"}, {"a", "", "b"}},
        {"<r 'x' a=\"'\" b='\"' c'd'='b'\n>", {"a", "b", "c'd'", "x"}, {"'", "\"", "b", ""}},
        {"<r b = a a = b c==1/>", {"a", "b", "c"}, {"b", "a", "=1/"}},
        {"<r =b a=1/b=2>", {"a", "b"}, {"1/b=2", ""}},
        {"<r a/b=1>", {"a", "b"}, {"a", ""}},
        // behind a = the > is a value, and the scan can run on into what follows
        {"<r a=><s b='1'/>", {"a", "b"}, {">", "1"}},
        {"<r a='&#65' b=';'/>", {"a"}, {"A"}},
    };
    for (const auto& row : rows)
    {
        CXmlDocument document;
        document.SetText(Wide(row.pText));
        EXPECT_EQ(Readable(document.GetAttribute(TEXT("a"))), "") << "before any find";
        ASSERT_TRUE(document.FindElement(nullptr)) << row.pText;
        for (size_t i = 0; i < row.names.size(); ++i)
            EXPECT_EQ(Readable(document.GetAttribute(Wide(row.names[i]))), row.values[i]) << row.names[i] << row.pText;
        for (const int position : {-1, 0, document.m_usedPositions})
            EXPECT_EQ(Readable(document.GetAttributeAt(position, TEXT("a"))), "");
        EXPECT_EQ(Readable(document.GetAttribute(nullptr)), "");
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
    const std::pair<const char*, const char*> rows[] = {
        {"x&amp;y\n&lt;&gt;&apos;&quot;&amp;lt;&amp;", "x&y<U+000A><>'\"&lt;&"},
        {"&bad;&&LT;&amp", "&bad;&&LT;&amp"},
        {"&#65;&#x42;z&#99a;&#x0x41;&# +65;&#\t\v65;", "ABzcAAA"},
        {"&#1234567;&#-65;&#65601;&#65536;&#x0000041;", "<U+D687><U+FFBF>A<U+0000>A"}, // the low 16 bits
        {"&#12345678;&#x00000041;&#X41;&#xZ;&#;&#0;&#x;", "&#12345678;&#x00000041;&#X41;&#xZ;&#;&#0;&#x;"},
        {"&#", "&#"},
        {"&#x", "&#x"},
        {"&#6", "&#6"}};
    for (const auto& [pText, pDecoded] : rows)
        EXPECT_EQ(Readable(DecodeEntities(Wide(pText), Wide(pText).GetLength())), pDecoded) << pText;
    // The Windows runtime knows the digits and blanks of all scripts: an Arabic-Indic 6, a no-break space.
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&#\x666;&#\xA0\x37;"), 9)),
              OnWindows ? "<U+0006><U+0007>" : "&#<U+0666>;&#<U+00A0>7;");
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&amp;"), 4)), "&amp"); // a name must stand inside the length,
    EXPECT_EQ(Readable(DecodeEntities(TEXT("&#65;"), 1)), "A");    // a number need not
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
