// The built-in trace profile, and a host's own in its place.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>

#include "zor/platform.h"

namespace {

// Admits level 2 only, and notes what it is asked.
class ErrorsOnly : public TraceProfile {
public:
    int Get(char const* name, int level, int flag) override {
        asked += std::string(name) + ' ' + std::to_string(level) + ' ' + std::to_string(flag) + ';';
        return level == 2;
    }

    std::string asked;
};

// Puts the profile that was there back.
class InstalledProfile {
public:
    explicit InstalledProfile(TraceProfile* profile) : before(TraceProfile::_instance) {
        TraceProfile::_instance = profile;
    }
    InstalledProfile(InstalledProfile const&) = delete;
    InstalledProfile& operator=(InstalledProfile const&) = delete;
    ~InstalledProfile() { TraceProfile::_instance = before; }

private:
    TraceProfile* before;
};

// Read before any code of this program's has run.
TraceProfile* const atLoad = TraceProfile::_instance;
int const answerAtLoad = TraceProfile::_instance ? TraceProfile::_instance->Get("x", 2, 0) : -1;

} // namespace

TEST(TraceProfile, IsThereByDefaultAndAnswersYes) {
    static_assert(std::is_polymorphic<TraceProfile>::value, "a host overrides Get");
    ASSERT_NE(TraceProfile::_instance, nullptr);
    for (char const* const name : {"ManageableData", "", "anything"}) {
        for (int const level : {INT_MIN, -1, 0, 1, 2, 3, 6, INT_MAX}) {
            EXPECT_EQ(TraceProfile::_instance->Get(name, level, 0), 1) << name << ' ' << level;
            EXPECT_EQ(TraceProfile::_instance->Get(name, level, 1), 1) << name << ' ' << level;
        }
    }
    EXPECT_EQ(TraceProfile::_instance->Get(nullptr, 2, 0), 1);
}

// Static initialisers of a host find it in place.
TEST(TraceProfile, IsThereFromLoad) {
    EXPECT_EQ(atLoad, TraceProfile::_instance);
    EXPECT_EQ(answerAtLoad, 1);
}

TEST(TraceProfile, CanBeReplaced) {
    TraceProfile* const before = TraceProfile::_instance;
    {
        ErrorsOnly mine;
        InstalledProfile const installed(&mine);
        EXPECT_EQ(TraceProfile::_instance->Get("ManageableData", 2, 0), 1);
        EXPECT_EQ(TraceProfile::_instance->Get("ManageableData", 3, 0), 0);
        EXPECT_EQ(mine.asked, "ManageableData 2 0;ManageableData 3 0;");
    }
    EXPECT_EQ(TraceProfile::_instance, before);
    EXPECT_EQ(TraceProfile::_instance->Get("ManageableData", 3, 0), 1);
}

TEST(TraceProfile, CanBeTakenAway) {
    InstalledProfile const none(nullptr);
    EXPECT_EQ(TraceProfile::_instance, nullptr);
}
