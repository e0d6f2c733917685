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

TEST(CString, TakesNarrowText)
{
    CString text;
    text = "M\xFCller";
    EXPECT_TRUE(text == TEXT("M\u00FCller"));
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}
