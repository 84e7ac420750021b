// The rule of decimal numbers, compared with one that never leaves the text.

#include "types/decimal_rule.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using zor_internal::decimalIsValid;

namespace {

// A sign, leading zeros, digits; of two digit strings the longer one is larger, and of two of one
// length the one that comes later in byte order.
bool dullIsValid(std::string text, std::string const& signs, std::string const& limit) {
    if (!text.empty() && signs.find(text[0]) != std::string::npos) text.erase(0, 1);
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
    text.erase(0, text.find_first_not_of('0'));
    if (text.size() != limit.size()) return text.size() < limit.size();
    return text <= limit;
}

std::uint32_t const kLimits[] = {9,          10,          99,          4294967294U,
                                 2147483646, 2147483647U, 2147483648U, 4294967295U};
char const* const kSigns[] = {"", "+", "-", "+-", "-+"};

class Numbers {
public:
    std::size_t below(std::size_t sides) { return dice() % sides; }

    template <std::size_t count>
    char const* of(char const* const (&choices)[count]) {
        return choices[below(count)];
    }

    // Digits of a number close to the limit, of the limit with one of them changed, or any.
    std::string digitsNear(std::uint32_t limit) {
        std::string text = std::to_string(limit);
        switch (below(4)) {
        case 0:
            text[below(text.size())] = digit();
            return text;
        case 1:
            text.insert(below(text.size() + 1), 1, digit());
            return text;
        case 2:
            text.clear();
            for (std::size_t count = below(25); count > 0; --count) text += digit();
            return text;
        default:
            return std::to_string(std::int64_t(limit) + std::int64_t(below(31)) - 15);
        }
    }

    std::string textNear(std::uint32_t limit) {
        static char const* const starts[] = {"", "", "", "+", "-", "+-", "--", " "};
        static char const* const ends[] = {"", "", "", "", "", "0", "x", " ", ".", "/", ":"};
        std::string const zeros(below(3) ? 0 : below(30), '0');
        std::string const digits = digitsNear(limit);
        return of(starts) + zeros + digits + of(ends);
    }

private:
    char digit() { return static_cast<char>('0' + below(10)); }

    std::mt19937 dice{20241};
};

} // namespace

TEST(DecimalRule, AgreesWithTheDullVersionNearEveryLimit) {
    Numbers numbers;
    int accepted = 0;
    int refused = 0;
    for (int i = 0; i < 100000; ++i) {
        std::uint32_t const limit = kLimits[numbers.below(std::size(kLimits))];
        char const* const signs = numbers.of(kSigns);
        std::string const text = numbers.textNear(limit);
        bool const expected = dullIsValid(text, signs, std::to_string(limit));
        ASSERT_EQ(decimalIsValid(text.c_str(), signs, limit) != 0, expected)
            << '"' << text << "\" with signs \"" << signs << "\" up to " << limit;
        expected ? ++accepted : ++refused;
    }
    EXPECT_GT(accepted, 5000);
    EXPECT_GT(refused, 10000);
}

// Texts that are only a sign, or not even that.
TEST(DecimalRule, AgreesWithTheDullVersionOnEveryShortText) {
    std::string const letters = "+-019/: x";
    for (char const* const signs : kSigns) {
        for (char const a : letters) {
            for (char const b : letters) {
                for (std::string const& text : {std::string(), std::string{a}, std::string{a, b}}) {
                    EXPECT_EQ(decimalIsValid(text.c_str(), signs, 10) != 0,
                              dullIsValid(text, signs, "10"))
                        << '"' << text << "\" with signs \"" << signs << '"';
                }
            }
        }
    }
}
