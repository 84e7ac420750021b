// Strings: pairs that point into the very string they go to count as it was before the call.

#include <gtest/gtest.h>

#include "tests/foundation/strings.h"
#include "tests/support/text.h"
#include "zor/string.h"

namespace {

// The ways in which a string can hold its text, with or without room for more.
struct Holding {
    char const* name;
    int length;
    int room; // 0: none made beforehand
    bool isShared;
};

constexpr Holding kHoldings[] = {
    {"local buffer, stays there", 8, 0, false},
    {"local buffer, outgrown", 30, 0, false},
    {"block, stays there", 40, 500, false},
    {"block, outgrown", 47, 0, false},
    {"shared, local buffer", 8, 0, true},
    {"shared, local buffer outgrown", 30, 0, true},
    {"shared block", 40, 500, true},
    {"shared block, outgrown", 47, 0, true},
};

// A string held that way; the caller works on it and then releases the other reference, if any.
class Subject {
public:
    explicit Subject(Holding const& way) : holding(way), string(privateString(text())) {
        if (holding.room > 0) zor_stringPreAllocate(string, holding.room);
        if (holding.isShared) zor_stringAddRef(string);
    }
    ~Subject() {
        if (!holding.isShared) return;
        EXPECT_EQ(string->refCount, 1) << holding.name;
        EXPECT_EQ(taken(string), text()) << holding.name;
    }

    ZorString* operator->() const { return string; }
    char const* at(int index) const { return string->text + index; }
    std::string text() const { return characters(holding.length); }

private:
    Holding const& holding;
    ZorString* string;
};

} // namespace

TEST(StringAlias, AppendOfTheWholeStringDoublesIt) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        EXPECT_EQ(taken(subject->append(1, subject.at(0), -1)), text + text) << way.name;
    }
}

TEST(StringAlias, AppendOfAPartAddsThatPart) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        EXPECT_EQ(taken(subject->append(1, subject.at(2), 4)), text + text.substr(2, 4))
            << way.name;
    }
}

// A later pair counts as the string was before the call, also behind a length of -1: the NUL that
// ended it is overwritten by then.
TEST(StringAlias, AppendOfSeveralPairsTakesTheFormerText) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        ZorString* const appended =
            subject->append(4, "XY", -1, subject.at(0), -1, subject.at(3), 2, subject.at(1), -1);
        EXPECT_EQ(taken(appended), text + "XY" + text + text.substr(3, 2) + text.substr(1))
            << way.name;
    }
}

// Two doublings, so that the first outgrows the buffer which the second points at.
TEST(StringAlias, AppendSurvivesTheLossOfItsBuffer) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        ZorString* const appended = subject->append(3, characters(1000).c_str(), -1, subject.at(0),
                                                    -1, subject.at(0), way.length);
        EXPECT_EQ(taken(appended), text + characters(1000) + text + text) << way.name;
    }
}

TEST(StringAlias, AppendOfTheEndAddsNothing) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        EXPECT_EQ(taken(subject->append(1, subject.at(way.length), -1)), subject.text())
            << way.name;
    }
}

TEST(StringAlias, SetToItselfChangesNothing) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        EXPECT_EQ(taken(subject->set(1, subject.at(0), -1)), subject.text()) << way.name;
    }
}

TEST(StringAlias, SetToAPartKeepsThatPart) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        EXPECT_EQ(taken(subject->set(1, subject.at(3), 4)), text.substr(3, 4)) << way.name;
        Subject other(way);
        EXPECT_EQ(taken(other->set(1, other.at(3), -1)), text.substr(3)) << way.name;
    }
}

// The first pair overwrites the characters that the later ones point at.
TEST(StringAlias, SetOfSeveralPairsTakesTheFormerText) {
    for (Holding const& way : kHoldings) {
        Subject subject(way);
        std::string const text = subject.text();
        ZorString* const set =
            subject->set(4, "wxyz", -1, subject.at(4), 3, subject.at(0), 4, subject.at(0), -1);
        EXPECT_EQ(taken(set), "wxyz" + text.substr(4, 3) + text.substr(0, 4) + text) << way.name;
    }
}

// The string is freed when a permanent one stands in after the first pair; the second still counts.
TEST(StringAlias, SetSurvivesAPermanentStringInBetween) {
    for (int const room : {0, 200}) {
        ZorString* const string = privateString("xtrue");
        zor_stringPreAllocate(string, room);
        EXPECT_EQ(taken(string->set(2, string->text + 1, 4, string->text, 1)), "truex");
        ZorString* const other = privateString("xtrue");
        zor_stringPreAllocate(other, room);
        EXPECT_EQ(other->set(3, other->text + 1, -1, other->text + 5, -1, nullptr, 3),
                  permanent("true"));
    }
}

TEST(StringAlias, WorksOnPermanentStrings) {
    ZorString* const word = permanent("true");
    EXPECT_EQ(taken(word->append(1, word->text, -1)), "truetrue");
    EXPECT_EQ(taken(word->append(2, word->text + 1, 2, word->text, -1)), "truerutrue");
    EXPECT_EQ(taken(word->set(1, word->text + 1, -1)), "rue");
    EXPECT_EQ(word->set(1, word->text, -1), word);
    EXPECT_EQ(taken(word->set(2, word->text + 2, 2, word->text, 2)), "uetr");
    EXPECT_EQ(content(word), "true");
}

TEST(StringAlias, AppendBecomesAPermanentString) {
    ZorString* const string = privateString("DssKeySettin");
    EXPECT_EQ(string->append(2, "g", 1, string->text + 2, 1), permanent("DssKeySettings"));
}

// The limit holds for a string that is appended to itself, too.
TEST(StringAlias, AppendToItselfIsCutAtTheLimit) {
    std::string const text = characters(40000);
    ZorString* const string = privateString(text);
    ZorString* const doubled = string->append(2, string->text, -1, string->text, -1);
    expectSound(doubled);
    EXPECT_TRUE(taken(doubled) == (text + text).substr(0, 65534));
}

// Pairs that point into another string are not mistaken for its own.
TEST(StringAlias, OtherStringsAreReadAsTheyStand) {
    Text const other("other text");
    ZorString* const otherString = other;
    ZorString* const string = privateString("own text ");
    EXPECT_EQ(taken(string->append(2, string->text, 4, otherString->text, -1)),
              "own text own other text");
}
