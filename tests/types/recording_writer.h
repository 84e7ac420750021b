// A writer that keeps each write apart, so that tests can count them.

#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "zor/text.h"

class RecordingWriter : public ZorDataWriter {
public:
    void writeData(char const* data, int length) override {
        EXPECT_EQ(length, static_cast<int>(std::strlen(data))) << "of " << data;
        writes.emplace_back(data);
    }

    std::vector<std::string> writes;
};
