#include "base/html_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(HtmlTextTest, NothingInATextIsTakenForHtml)
{
    EXPECT_EQ(HtmlText(L"<b> & \"C:\\a\""), CString(L"&lt;b&gt; &amp; \"C:\\a\""));
    EXPECT_EQ(HtmlText(L"&lt;"), CString(L"&amp;lt;"));
    EXPECT_EQ(HtmlText(L"one\r\ntwo\n\nthree"), CString(L"one<br>two<br><br>three"));
}
