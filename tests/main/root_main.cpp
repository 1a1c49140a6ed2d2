// The tests that own a whole machine: accounts, queues, network, /etc, /dev/log. They run in a private root.
#include "support/root.h"

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    if (const auto status = xasEnterPrivateRoot(argc, argv))
        return *status;
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
