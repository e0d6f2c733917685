#include <afxstr.h>

#include <gtest/gtest.h>

// A change through one of two strings that share their text must not reach the other.
TEST(CString, CopiesAreIndependent)
{
    const CString original = TEXT("Pipe");
    CString copy = original;
    copy.GetBuffer(4)[0] = TEXT('W');
    copy.ReleaseBuffer();
    EXPECT_TRUE(original == TEXT("Pipe"));
    EXPECT_TRUE(copy == TEXT("Wipe"));
}

TEST(CString, AppendsItself)
{
    CString text = TEXT("ab");
    text += text;
    text += text.GetString() + 1;
    EXPECT_TRUE(text == TEXT("ababbab"));
}

TEST(CString, FormatsTextAndNumbers)
{
    CString text;
    text.Format(TEXT("%s|%d|%d|%s%%"), TEXT("x"), -7, INT_MIN, TEXT(""));
    EXPECT_TRUE(text == TEXT("x|-7|-2147483648|%"));
}

TEST(CString, CutsAndFinds)
{
    const CString text = TEXT("UIStrings_a_EN.dat");
    EXPECT_EQ(text.Find(TEXT('_')), 9);
    EXPECT_EQ(text.ReverseFind(TEXT('_')), 11);
    EXPECT_EQ(text.Find(TEXT('#')), -1);
    EXPECT_TRUE(text.Mid(12).Left(2).MakeLower() == TEXT("en"));
    EXPECT_TRUE(text.Mid(-3, 2) == TEXT("UI"));
    EXPECT_TRUE(text.Mid(40).IsEmpty());
}

TEST(CString, TakesNarrowText)
{
    CString text;
    text = "M\xFCller";
    EXPECT_TRUE(text == TEXT("M\u00FCller"));
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}
