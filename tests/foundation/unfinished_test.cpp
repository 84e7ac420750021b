// What a constructor undoes when it does not get to its end.

#include "foundation/unfinished.h"

#include <gtest/gtest.h>

#include <new>

#include "foundation/out_of_memory.h"

using zor_internal::reportOutOfMemory;
using zor_internal::Unfinished;

namespace {

void undo(int* undone) { ++*undone; }

} // namespace

// A failure undoes what was made, once.
TEST(Unfinished, IsUndoneOnFailure) {
    int undone = 0;
    auto const fail = [&undone] {
        Unfinished<int> const made(&undone, undo);
        reportOutOfMemory();
    };
    EXPECT_THROW(fail(), std::bad_alloc);
    EXPECT_EQ(undone, 1);
}

// What is finished stays.
TEST(Unfinished, IsLeftWhenItIsFinished) {
    int undone = 0;
    {
        Unfinished<int> made(&undone, undo);
        made.finish();
    }
    EXPECT_EQ(undone, 0);
}
