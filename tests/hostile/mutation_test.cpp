// Files with one damaged byte.

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <tuple>

#include "tests/hostile/sweep.h"

namespace {

struct Damage {
    char const* name;
    char byte;
};

void PrintTo(Damage const& damage, std::ostream* out) { *out << damage.name; }

} // namespace

class Mutation : public testing::TestWithParam<std::tuple<std::string, Damage>> {};

// Whatever byte is replaced does no harm, and the correct file is imported after it.
TEST_P(Mutation, IsSurvivedAtEveryByte) {
    std::unique_ptr<Sweep> const sweep = makeSweep(std::get<0>(GetParam()));
    Damage const& damage = std::get<1>(GetParam());
    for (std::size_t at = 0; at < sweep->text().size() && !HasFailure(); ++at) {
        SCOPED_TRACE("at " + std::to_string(at));
        std::string damaged = sweep->text();
        damaged[at] = damage.byte;
        sweep->expectRecoveryFrom(damaged);
    }
}

INSTANTIATE_TEST_SUITE_P(
    File, Mutation,
    testing::Combine(testing::Values<std::string>("Whole", "Refill"),
                     testing::Values(Damage{"Less", '<'}, Damage{"Greater", '>'},
                                     Damage{"Ampersand", '&'}, Damage{"DoubleQuote", '"'},
                                     Damage{"SingleQuote", '\''}, Damage{"Slash", '/'},
                                     Damage{"Byte255", '\xFF'}, Damage{"Nul", '\0'})),
    [](auto const& instance) {
        return std::get<0>(instance.param) + std::get<1>(instance.param).name;
    });
