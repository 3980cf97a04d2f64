// The floor may leave out the history's per-user UPDATEs (they change no
// row of the sample) but never the last one, which fills every row still
// without a user: leaving that out would change what follows.
#include <gtest/gtest.h>

#include "bench/transcript.h"

namespace bench {
namespace {

struct HistoryStatement {
    const char* text;
    bool historyUser;  // part of UpdateHistory's user filling
    bool perUser;      // one of the pair run for each user
};

TEST(HistoryUserUpdates, TellsThePerUserPairFromTheRest) {
    const HistoryStatement cases[] = {
        {"UPDATE KD_VQ_HISTORY SET USER_NAME = 'u1' WHERE USER_ID=7 AND USER_NAME Is Null", true, true},
        {"UPDATE KD_VQ_HISTORY SET USER_ID = 7 WHERE USER_NAME = 'u1' AND USER_ID Is Null", true, true},
        {"UPDATE KD_VQ_HISTORY SET USER_ID = 1, USER_NAME = 'admin' WHERE USER_NAME Is Null OR USER_ID Is Null",
         true, false},
        {"UPDATE KD_VQ_HISTORY SET DESCRIPTION = 'x' WHERE USER_ID Is Null", false, false},
        {"update KD_VQ_HISTORY SET USER_ID = 7 WHERE USER_NAME = 'u1' AND USER_ID Is Null", false, false},
    };
    for (const HistoryStatement& c : cases) {
        EXPECT_EQ(IsHistoryUserUpdate(c.text), c.historyUser) << c.text;
        EXPECT_EQ(IsPerUserHistoryUpdate(c.text), c.perUser) << c.text;
    }
}

}  // namespace
}  // namespace bench
