#pragma once

#include "tests/macsim/FakeSystem.hpp"

#include <gtest/gtest.h>

/// A test of readers over the fakes: what they were handed must have been given back at its end.
class MacSimTest : public testing::Test {
protected:
    MacSimTest() { macsim::restart(); }

    void TearDown() override {
        EXPECT_EQ(macsim::balance(), macsim::Balance{}) << "not given back";
        EXPECT_TRUE(macsim::faults().empty()) << testing::PrintToString(macsim::faults());
    }
};
