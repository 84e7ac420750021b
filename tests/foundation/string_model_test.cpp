// Strings compared with a dull model, over many random changes.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/foundation/strings.h"
#include "tests/support/text.h"
#include "zor/string.h"

namespace {

struct Pair {
    char const* text;
    int length;
};

// What a string must be after each change, worked out the long way.
struct Model {
    std::string text;
    int capacity = 33;
    bool isPermanent = false;

    void add(Pair const& pair) {
        if (!pair.text) return;
        std::string const all(pair.text);
        std::string const more =
            pair.length == -1 ? all : all.substr(0, pair.length < 0 ? 0U : unsigned(pair.length));
        if (more.empty()) return;
        int const need = static_cast<int>(text.size() + more.size()) + 1;
        if (need > capacity) capacity = grownCapacity(need);
        text += more;
    }

    void lookUp() {
        if (!permanent(text)) return;
        isPermanent = true;
        capacity = 33;
    }

    void append(std::vector<Pair> const& pairs) {
        isPermanent = false;
        for (Pair const& pair : pairs) add(pair);
        lookUp();
    }

    void set(std::vector<Pair> const& pairs, bool wasShared) {
        if (wasShared) capacity = 33;
        text.clear();
        isPermanent = false;
        for (Pair const& pair : pairs) append({pair});
    }

    void trim() {
        char const* const blanks = " \t\n\v\f\r";
        std::size_t const first = text.find_first_not_of(blanks);
        std::string const kept =
            first == std::string::npos
                ? ""
                : text.substr(first, text.find_last_not_of(blanks) - first + 1);
        if (kept == text) return;
        text = kept;
        int const need = static_cast<int>(kept.size()) + 1;
        capacity = need <= 33 ? 33 : grownCapacity(need);
        lookUp();
    }
};

class Dice {
public:
    int upTo(int sides) { return static_cast<int>(generator() % static_cast<unsigned>(sides)); }
    Pair pair() {
        static char const* const texts[] = {
            nullptr,
            "",
            "true",
            "tru",
            "e",
            "fal",
            "se",
            "schema",
            "Id",
            " ",
            " \t x ",
            "\n",
            "  Id",
            "occ",
            "urrence",
            "Dss",
            "KeySettings",
            "a longer text of 32 chars, no more",
            "a text that is longer than the buffer inside a string",
        };
        char const* const text = texts[upTo(19)];
        switch (upTo(5)) {
        case 0:
            return {text, 0};
        case 1:
            return {text, -7};
        case 2:
            return {text, text ? upTo(static_cast<int>(std::strlen(text)) + 1) : 3};
        default:
            return {text, -1};
        }
    }

private:
    std::mt19937 generator{20240229};
};

ZorString* change(ZorString* string, Model& model, Dice& dice, bool isShared) {
    Pair const a = dice.pair();
    Pair const b = dice.pair();
    Pair const c = dice.pair();
    int const count = dice.upTo(4);
    std::vector<Pair> pairs{a, b, c};
    pairs.resize(static_cast<unsigned>(count));
    switch (dice.upTo(4)) {
    case 0:
        model.set(pairs, isShared);
        return string->set(count, a.text, a.length, b.text, b.length, c.text, c.length);
    case 1:
        model.trim();
        return string->trim();
    default:
        model.append(pairs);
        return string->append(count, a.text, a.length, b.text, b.length, c.text, c.length);
    }
}

} // namespace

TEST(StringModel, RandomChangesAgreeWithTheModel) {
    Dice dice;
    for (int round = 0; round < 300; ++round) {
        Model model;
        model.isPermanent = true;
        ZorString* string = ZorString::create("", -1);
        for (int step = 0; step < 60; ++step) {
            bool const isHeld = dice.upTo(3) == 0;
            ZorString* const before = string;
            std::string const textBefore = content(before);
            if (isHeld) zor_stringAddRef(before);

            string = change(string, model, dice, isHeld || model.isPermanent);

            ASSERT_EQ(content(string), model.text) << "round " << round << ", step " << step;
            ASSERT_EQ(string->capacity, model.capacity) << '[' << model.text << ']';
            ASSERT_EQ(string == permanent(model.text), model.isPermanent) << model.text;
            expectSound(string);
            if (!isHeld) continue;
            ASSERT_EQ(content(before), textBefore);
            before->removeRef();
        }
        string->removeRef();
    }
}
