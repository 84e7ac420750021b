// The text form of values in XML.

#include "foundation/escape.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/foundation/strings.h"
#include "tests/support/allocations.h"
#include "tests/support/text.h"
#include "zor/text.h"

namespace {

// Escaping one character at a time.
std::string dullEscape(std::string const& text) {
    if (text.empty()) return "\"\"";
    std::string escaped;
    for (char const c : text) {
        if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '&')
            escaped += "&amp;";
        else if (c == '\'')
            escaped += "&apos;";
        else if (c == '"')
            escaped += "&quot;";
        else
            escaped += c;
    }
    return escaped;
}

// The pieces of the escaped text put together again. None is empty.
std::string joinedPieces(std::string const& text) {
    std::string joined;
    zor_internal::forEachEscapedPiece(text.c_str(), [&](char const* piece, std::size_t length) {
        EXPECT_GT(length, 0U) << "in " << text;
        joined.append(piece, length);
    });
    return joined;
}

} // namespace

TEST(Escape, ReplacesTheFiveSpecialCharacters) {
    struct {
        char const* text;
        char const* escaped;
    } const cases[] = {
        {"a<b & 'c'", "a&lt;b &amp; &apos;c&apos;"},
        {"<", "&lt;"},
        {">", "&gt;"},
        {"&", "&amp;"},
        {"'", "&apos;"},
        {"\"", "&quot;"},
        {"\"\"", "&quot;&quot;"},
        {"<>&'\"", "&lt;&gt;&amp;&apos;&quot;"},
        {"&amp;", "&amp;amp;"},
        {"a>", "a&gt;"},
        {">a", "&gt;a"},
        {"plain text\twith\nblanks ", "plain text\twith\nblanks "},
        {"\xC3\xA9\x01", "\xC3\xA9\x01"},
        {" ", " "},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(taken(escapeCData(c.text)), c.escaped) << c.text;
        Text const string(c.text);
        EXPECT_EQ(taken(escapeCData(static_cast<ZorString*>(string))), c.escaped) << c.text;
    }
}

// An empty text becomes two double quotes, so that it stays visible.
TEST(Escape, EmptyTextBecomesTwoQuotes) {
    EXPECT_EQ(taken(escapeCData("")), "\"\"");
    EXPECT_EQ(taken(escapeCData(permanent(""))), "\"\"");
    ZorString* const empty = privateString("");
    EXPECT_EQ(taken(escapeCData(empty)), "\"\"");
    empty->removeRef();
}

TEST(Escape, NullBecomesTheEmptyString) { EXPECT_EQ(escapeCData(nullptr), permanent("")); }

TEST(Escape, StopsAtANul) {
    Text const text(std::string("a<\0>b", 5));
    EXPECT_EQ(taken(escapeCData(static_cast<ZorString*>(text))), "a&lt;");
    Text const onlyNul(std::string("\0a", 2));
    EXPECT_EQ(taken(escapeCData(static_cast<ZorString*>(onlyNul))), "\"\"");
}

// What is returned is a string of its own, and the argument keeps its text and its count.
TEST(Escape, ReturnsAStringOfItsOwn) {
    for (char const* const text : {"volume", "a<b"}) {
        ZorString* const string = ZorString::create(text, -1);
        ZorString* const escaped = escapeCData(string);
        EXPECT_NE(escaped, string) << text;
        EXPECT_EQ(escaped->refCount, 1) << text;
        EXPECT_EQ(string->refCount, 1) << text;
        EXPECT_EQ(content(string), text);
        escaped->removeRef();
        string->removeRef();
    }
}

// A text without special characters may be permanent; one that only begins like that is not.
TEST(Escape, GivesPermanentStrings) {
    EXPECT_EQ(escapeCData("true"), permanent("true"));
    EXPECT_EQ(escapeCData(permanent("schema")), permanent("schema"));
    EXPECT_EQ(taken(escapeCData("true&false")), "true&amp;false");
    EXPECT_EQ(content(permanent("true")), "true");
}

// A result that would be too long is cut.
TEST(Escape, CutsAt65534Characters) {
    struct {
        int count;
        int length;
    } const cases[] = {{13106, 65530}, {13107, 65534}, {20000, 65534}};
    for (auto const& c : cases) {
        std::string const text(static_cast<unsigned>(c.count), '&');
        std::string const escaped = taken(escapeCData(text.c_str()));
        EXPECT_EQ(static_cast<int>(escaped.size()), c.length);
        EXPECT_TRUE(escaped == dullEscape(text).substr(0, 65534)) << c.count;
    }
    std::string const plain = characters(65534);
    EXPECT_TRUE(taken(escapeCData(plain.c_str())) == plain);
}

TEST(Escape, RandomTextsAgreeWithTheDullVersion) {
    std::mt19937 dice(2468);
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (auto length = dice() % 80; length > 0; --length) text += "<>&'\"abc \n"[dice() % 10];
        ASSERT_EQ(taken(escapeCData(text.c_str())), dullEscape(text));
    }
}

TEST(EscapedPieces, AgreeWithTheDullVersionForEveryByte) {
    for (int byte = 1; byte < 256; ++byte) {
        std::string const c(1, static_cast<char>(byte));
        for (std::string const& text :
             {c, "a" + c, c + "a", c + c, "&" + c, c + "&", "a" + c + "a"}) {
            ASSERT_EQ(joinedPieces(text), dullEscape(text));
        }
    }
    EXPECT_EQ(joinedPieces(""), dullEscape(""));
}

TEST(EscapedPieces, AgreeWithTheDullVersionForRandomTexts) {
    std::mt19937 dice(97531);
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (auto length = dice() % 60; length > 0; --length) {
            text += dice() % 3 ? static_cast<char>(1 + dice() % 255) : "<>&'\""[dice() % 5];
        }
        ASSERT_EQ(joinedPieces(text), dullEscape(text));
    }
}

// No string limits them.
TEST(EscapedPieces, AreNotCut) {
    std::string const text = characters(70000) + std::string(70000, '<');
    EXPECT_TRUE(joinedPieces(text) == dullEscape(text));
}

// Reading in place gives what the copy says, in every case.
TEST(Unescape, InPlaceAgreesWithTheCopy) {
    EXPECT_EQ(zor_internal::unescaped(nullptr), nullptr);
    for (std::string const& text :
         {std::string(), std::string("\"\""), std::string("\""), std::string("\"\"\""),
          std::string("\"\"\0", 3), std::string("volume"), std::string("true"), characters(40)}) {
        ZorString* const string = privateString(text);
        char const* const inPlace = zor_internal::unescaped(string);
        ZorString* const copy = unescapeCData(string);
        EXPECT_STREQ(inPlace, copy ? copy->text : nullptr) << text;
        if (copy) copy->removeRef();
        string->removeRef();
    }
}

TEST(Unescape, TwoQuotesBecomeTheEmptyString) {
    EXPECT_EQ(unescapeCData("\"\""), permanent(""));
    Text const quotes("\"\"");
    EXPECT_EQ(unescapeCData(static_cast<ZorString*>(quotes)), permanent(""));
}

TEST(Unescape, NoTextGivesNull) {
    EXPECT_EQ(unescapeCData(""), nullptr);
    EXPECT_EQ(unescapeCData(nullptr), nullptr);
    EXPECT_EQ(unescapeCData(permanent("")), nullptr);
    ZorString* const empty = privateString("");
    EXPECT_EQ(unescapeCData(empty), nullptr);
    empty->removeRef();
}

// Everything else is copied as it stands; entities are the tokenizer's business.
TEST(Unescape, OtherTextsAreCopied) {
    for (char const* const text :
         {"volume", "\"", "\"\"\"", "\"\" ", " \"\"", "&lt;", "a<b", " "}) {
        EXPECT_EQ(taken(unescapeCData(text)), text);
        ZorString* const string = ZorString::create(text, -1);
        ZorString* const copy = unescapeCData(string);
        EXPECT_NE(copy, string) << text;
        EXPECT_EQ(copy->refCount, 1) << text;
        EXPECT_EQ(string->refCount, 1) << text;
        EXPECT_EQ(taken(copy), text);
        string->removeRef();
    }
}

// A string is copied as long as it is, also behind a NUL.
TEST(Unescape, CopiesCharactersBehindANul) {
    for (std::string const& text :
         {std::string("a\0b", 3), std::string("\0a", 2), std::string("\"\"\0", 3)}) {
        Text const string(text);
        EXPECT_EQ(taken(unescapeCData(static_cast<ZorString*>(string))), text);
    }
}

TEST(Unescape, GivesPermanentStrings) {
    EXPECT_EQ(unescapeCData("true"), permanent("true"));
    EXPECT_EQ(unescapeCData(permanent("Id")), permanent("Id"));
}

// The empty value is the one that needs undoing: it comes back as it was.
TEST(Unescape, UndoesTheEmptyValue) {
    ZorString* const escaped = escapeCData("");
    EXPECT_EQ(unescapeCData(escaped), permanent(""));
    escaped->removeRef();
}
