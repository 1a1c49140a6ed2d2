// The text of a user's port permissions.
#include "auth/user_ports.h"

#include "support/test.h"

TEST(UserPortText, HasTheMasksInHexadecimalAndTheSequencesInQuotes)
{
    XasUserRecord user{};
    user.listen = 0xFFFFFFFFFFFFFFFFULL;
    user.data = 0x8000000000000001ULL;
    user.clear = 0xABC;
    xasSetFieldText(user.escseq, "\x01p");
    xasSetFieldText(user.brkseq, "~break");
    EXPECT_EQ(xasUserPortText(user), "ALLOW_LISTEN=0xffffffffffffffff\n"
                                     "ALLOW_DIRECT=0x8000000000000001\n"
                                     "ALLOW_CLEAR=0xabc\n"
                                     "ESCAPE_SEQ=\"\x01p\"\n"
                                     "BREAK_SEQ=\"~break\"\n");
}

TEST(UserPortText, HasZeroMasksAndEmptySequencesForAUserWithoutPermissions)
{
    EXPECT_EQ(xasUserPortText({}), "ALLOW_LISTEN=0x0\nALLOW_DIRECT=0x0\nALLOW_CLEAR=0x0\nESCAPE_SEQ=\"\"\n"
                                   "BREAK_SEQ=\"\"\n");
}

TEST(UserPortText, ReadsASequenceThatFillsItsFieldUpToTheEndOfTheField)
{
    XasUserRecord user{};
    std::memcpy(user.escseq, "12345678901", 11);
    std::memcpy(user.brkseq, "abcdefghijk", 11);
    EXPECT_EQ(xasUserPortText(user), "ALLOW_LISTEN=0x0\nALLOW_DIRECT=0x0\nALLOW_CLEAR=0x0\n"
                                     "ESCAPE_SEQ=\"12345678901\"\nBREAK_SEQ=\"abcdefghijk\"\n");
}
