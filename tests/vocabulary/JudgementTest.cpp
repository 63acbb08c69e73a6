#include "vocabulary/Judgement.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavocal::test {

TEST(JudgementTest, TheLimitItselfPassesAndTellsItsRoom) {
    struct Row {
        Judgement judgement;
        bool passed;
        double margin;
        bool marginal;
    };
    const Vector none;
    for (const Row& row : {Row{refusedAbove("", 5.0, 5.0), true, 0.0, true},
                           {refusedAbove("", 5.001, 5.0), false, -0.0002, false},
                           {acceptedUpTo("", 4.0, 5.0), true, 0.2, false},
                           {acceptedUpTo("", 6.0, 5.0), false, -0.2, false},
                           {refusedBelow("", 0.1, 0.1), true, 0.0, true},
                           {refusedBelow("", 0.05, 0.1), false, -0.5, false},
                           {refusedBelow("", 0.12, 0.1), true, 0.2, false},
                           {refusedOutside("", 1.019, 0.98, 1.02, none), true, 0.05, true},
                           {refusedOutside("", 0.97, 0.98, 1.02, none), false, -0.5, false},
                           {refusedOutside("", 1.03, 0.98, 1.02, none), false, -0.5, false},
                           {acceptedWithin("", 0.0, 0.0, 200.0), true, 0.0, true},
                           {acceptedWithin("", 100.0, 0.0, 200.0), true, 1.0, false},
                           {acceptedWithin("", 200.5, 0.0, 200.0), false, -0.005, false},
                           {acceptedWithin("", -0.5, 0.0, 200.0), false, -0.005, false}}) {
        SCOPED_TRACE(row.judgement.value);
        EXPECT_EQ(row.judgement.passed, row.passed);
        EXPECT_NEAR(marginOf(row.judgement), row.margin, 1e-9);
        EXPECT_EQ(isMarginal(row.judgement), row.marginal);
    }
}

TEST(JudgementTest, WhatIsNoNumberIsNotRefusedAndNotAccepted) {
    for (const auto& [judgement, passed] : {std::pair(refusedAbove("", NAN, 1.0), true),
                                            {refusedBelow("", NAN, 1.0), true},
                                            {refusedOutside("", NAN, 1.0, 2.0, {}), true},
                                            {acceptedUpTo("", NAN, 1.0), false},
                                            {acceptedWithin("", NAN, 1.0, 2.0), false}}) {
        EXPECT_EQ(judgement.passed, passed);
        EXPECT_FALSE(isMarginal(judgement));
        EXPECT_TRUE(std::isnan(marginOf(judgement)));
    }
}

}  // namespace tavocal::test
