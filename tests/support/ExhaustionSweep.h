#pragma once

#include "LogCapture.h"
#include "TestPool.h"

#include <gtest/gtest.h>

#include <new>

/// How an operation ended when the pool ran dry under it.
struct ExhaustionOutcome {
    unsigned int freeTiles; ///< that the operation found
    bool threw;             ///< std::bad_alloc came out
    QStringList log;
    int handlerCalls;
    unsigned int tilesBefore; ///< in use by images
    unsigned int tilesAfter;
};

/// Makes the first, second, third ... tile that an operation takes fail, until it has all it needs.
///
/// For each number of free tiles: `make()` builds a state with the pool still full,
/// `operate(state)` runs, and `check(state, outcome)`, with tiles enough again, looks at what is
/// left. All tiles must be back when the state is gone. Returns how many runs failed, that is how
/// many tiles are needed.
template <class Make, class Operate, class Check>
unsigned int SweepExhaustion(Make make, Operate operate, Check check) {
    for (unsigned int freeTiles = 0; freeTiles < 2000; ++freeTiles) {
        SCOPED_TRACE(testing::Message() << "with " << freeTiles << " free tiles");
        TestPool pool;
        ExhaustionOutcome outcome{freeTiles, false, {}, 0, 0, 0};
        bool dry = false;
        {
            auto state = make();
            pool.LeaveFree(freeTiles);
            outcome.tilesBefore = pool.InUse();
            pool.Manager().SetExceptionHandler(
                [](void* calls, const std::exception&) { ++*static_cast<int*>(calls); },
                &outcome.handlerCalls);
            {
                const LogCapture capture;
                try {
                    operate(state);
                } catch (const std::bad_alloc&) {
                    outcome.threw = true;
                }
                outcome.log = LogCapture::Lines();
            }
            dry = outcome.handlerCalls > 0;
            outcome.tilesAfter = pool.InUse();
            pool.GiveBack();
            check(state, outcome);
        }
        EXPECT_EQ(pool.InUse(), 0u) << "tiles were lost";
        if (!dry || testing::Test::HasFailure())
            return freeTiles;
    }
    ADD_FAILURE() << "the operation never had enough tiles";
    return 0;
}
