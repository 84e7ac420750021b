// The permanent strings and the set in which they are found.

#include "foundation/permanent_strings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/foundation/strings.h"
#include "tests/support/text.h"

using zor_internal::findPermanent;

namespace {

char const* const kTexts[] = {
    "",
    "DefaultSchema",
    "schema",
    "managementId",
    "CommsMgmtId",
    "QbexMgmtId",
    "Id",
    "PhysiclaIfcMgmtId",
    "StimulusKeySettings",
    "TilecardContainerMgmtId",
    "LineKeySettings",
    "MediaProcessMgmtId",
    "DssKeySettings",
    "true",
    "false",
    "occurrence",
};

} // namespace

TEST(PermanentStrings, StandInTheirOrder) {
    ASSERT_EQ(std::size(ZorString::stdZorStrings), std::size(kTexts));
    for (unsigned i = 0; i < std::size(kTexts); ++i) {
        ZorString const& string = ZorString::stdZorStrings[i];
        EXPECT_EQ(content(&string), kTexts[i]);
        EXPECT_EQ(string.refCount, 0xFFFF) << kTexts[i];
        expectSound(&string);
        EXPECT_TRUE(usesLocalBuffer(&string)) << kTexts[i];
    }
}

// The set holds exactly these objects, each once.
TEST(PermanentStrings, AreTheMembersOfTheSet) {
    std::set<ZorString const*> members;
    for (ZorString const* member : ZorString::stdZorStringContainer) members.insert(member);
    std::set<ZorString const*> expected;
    for (ZorString const& string : ZorString::stdZorStrings) expected.insert(&string);
    EXPECT_EQ(std::size(ZorString::stdZorStringContainer), 16U);
    EXPECT_EQ(members, expected);
}

TEST(PermanentStrings, SetIsOrderedByLengthThenText) {
    char const* const ordered[] = {
        "",
        "Id",
        "true",
        "false",
        "schema",
        "QbexMgmtId",
        "occurrence",
        "CommsMgmtId",
        "managementId",
        "DefaultSchema",
        "DssKeySettings",
        "LineKeySettings",
        "PhysiclaIfcMgmtId",
        "MediaProcessMgmtId",
        "StimulusKeySettings",
        "TilecardContainerMgmtId",
    };
    for (unsigned i = 0; i < std::size(ordered); ++i) {
        EXPECT_STREQ(ZorString::stdZorStringContainer[i]->text, ordered[i]);
    }
    for (unsigned i = 1; i < std::size(ordered); ++i) {
        EXPECT_TRUE(ZorString::compareZorString(ZorString::stdZorStringContainer[i - 1],
                                                ZorString::stdZorStringContainer[i]))
            << ordered[i];
    }
}

// A shorter string sorts first, whatever it says; equal lengths sort as strcmp does.
TEST(PermanentStrings, ComparatorPutsShorterStringsFirst) {
    struct {
        char const* left;
        char const* right;
        bool isBefore;
    } const cases[] = {
        {"z", "aa", true},  {"aa", "z", false},  {"", "a", true},     {"a", "", false},
        {"ab", "ac", true}, {"ac", "ab", false}, {"ab", "ab", false}, {"", "", false},
        {"Z", "a", true},   {"a", "\x80", true},
    };
    for (auto const& c : cases) {
        Text const left(c.left);
        Text const right(c.right);
        EXPECT_EQ(ZorString::compareZorString(left, right), c.isBefore)
            << c.left << " and " << c.right;
    }
}

// Looking up agrees with walking through all sixteen, for every text that is almost one of them.
TEST(PermanentStrings, AreFoundByTheirExactTextOnly) {
    for (std::string const text : kTexts) {
        std::set<std::string> candidates{text, text + "x", "x" + text, text + " ", text + text};
        for (unsigned i = 0; i < text.size(); ++i) {
            candidates.insert(text.substr(0, i));
            candidates.insert(text.substr(i));
            for (char const other : {'\0', 'A', 'z', '\xFF'}) {
                std::string changed = text;
                changed[i] = other;
                candidates.insert(changed);
            }
        }
        for (std::string const& candidate : candidates) {
            ZorString* const expected =
                candidate.find('\0') == std::string::npos ? permanent(candidate) : nullptr;
            int const length = static_cast<int>(candidate.size());
            EXPECT_EQ(findPermanent(candidate.data(), length), expected) << candidate;
        }
    }
}

// The same for every length around theirs, and for every byte in every place of each.
TEST(PermanentStrings, NoOtherLengthOrByteIsTakenForThem) {
    for (std::string const text : kTexts) {
        std::string repeated;
        while (repeated.size() < 40) repeated += text.empty() ? "x" : text;
        for (int length = 0; length <= 40; ++length) {
            std::string const candidate = repeated.substr(0, static_cast<unsigned>(length));
            EXPECT_EQ(findPermanent(candidate.data(), length), permanent(candidate)) << candidate;
        }
        int const length = static_cast<int>(text.size());
        for (std::size_t i = 0; i < text.size(); ++i) {
            std::string changed = text;
            for (int byte = 1; byte < 256; ++byte) {
                changed[i] = static_cast<char>(byte);
                ASSERT_EQ(findPermanent(changed.data(), length), permanent(changed)) << changed;
            }
        }
    }
}

TEST(PermanentStrings, OrdinaryStringsAreNeverAdded) {
    Text const first("ordinary");
    EXPECT_EQ(findPermanent("ordinary", 8), nullptr);
    Text const second("ordinary");
    EXPECT_NE(static_cast<ZorString*>(first), static_cast<ZorString*>(second));
}

// No use of a permanent string changes it.
TEST(PermanentStrings, SurviveEveryChange) {
    for (unsigned i = 0; i < std::size(kTexts); ++i) {
        ZorString& string = ZorString::stdZorStrings[i];
        EXPECT_EQ(taken(string.append(1, "+", 1)), std::string(kTexts[i]) + "+");
        EXPECT_EQ(taken(string.set(1, "other", -1)), "other");
        EXPECT_EQ(taken(string.set(0, nullptr, 0)), "");
        EXPECT_EQ(string.trim(), &string);
        EXPECT_EQ(content(&string), kTexts[i]);
        EXPECT_EQ(string.refCount, 0xFFFF);
    }
}
