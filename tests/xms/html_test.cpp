#include "xms/html.h"

#include "support/test.h"

#include <random>

TEST(XmsHtml, WhatHasAMeaningIsEscaped)
{
    EXPECT_EQ(xmsHtml("<b a=\"1\" c='2'>&amp;"), "&lt;b a=&quot;1&quot; c=&#39;2&#39;&gt;&amp;amp;");
    EXPECT_EQ(xmsHtml("a b\tc\nd"), "a b\tc\nd");
    EXPECT_EQ(xmsHtml(""), "");
}

TEST(XmsHtml, WhatIsNotSeenIsShownByItsNumber)
{
    EXPECT_EQ(xmsHtml(std::string_view{"a\0\x1b\r\x7f", 5}), "a\\x00\\x1b\\x0d\\x7f");
    EXPECT_EQ(xmsHtml("\xC2\x85"), "\\x85");
    EXPECT_EQ(xmsHtml("a\xE2\x80\xAE"
                      "b\xE2\x81\xA6\xEF\xBB\xBF"),
              "a[U+202E]b[U+2066][U+FEFF]");
}

TEST(XmsHtml, CharactersStayAndWhatIsNoneIsReplaced)
{
    EXPECT_EQ(xmsHtml("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    const std::string none = "\xEF\xBF\xBD";
    EXPECT_EQ(xmsHtml("\xFF"), none);
    EXPECT_EQ(xmsHtml("\xC3"), none) << "cut short";
    EXPECT_EQ(xmsHtml("\xC3("), none + "(");
    EXPECT_EQ(xmsHtml("\xC0\xBC"), none + none) << "a long form of <";
    EXPECT_EQ(xmsHtml("\xE0\x80\xBC"), none + none + none) << "a longer one";
    EXPECT_EQ(xmsHtml("\xED\xA0\x80"), none + none + none) << "half of a pair";
    EXPECT_EQ(xmsHtml("\xEF\xBF\xBF"), none + none + none) << "no character";
    EXPECT_EQ(xmsHtml("\xF4\x90\x80\x80"), none + none + none + none) << "beyond the last one";
}

TEST(XmsHtml, OfAnyBytesNothingIsLeftThatHasAMeaning)
{
    std::mt19937 random{16};
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 40, '\0');
        for (char &c : text)
            c = random() % 2 == 0 ? "<>&\"'\xC3\xE2"[random() % 7] : static_cast<char>(random());
        const std::string html = xmsHtml(text);
        EXPECT_EQ(html.find_first_of("<>\"'"), std::string::npos);
        EXPECT_EQ(html.find('\0'), std::string::npos);
    }
}
