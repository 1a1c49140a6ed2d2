// The fields of XMSG_ROUTING.
#include "support/fields.h"

TEST(RoutingFields, StandWhereTheHandlerReadsThem)
{
    std::vector<XasExpectedField> expected = {{"start", 120, 4},
                                              {"static_enabled", 124, 4},
                                              {"rip_enabled", 128, 4},
                                              {"rip_version", 132, 4},
                                              {"num_routes", 136, 4}};
    for (std::size_t route = 0; route < 64; ++route) {
        const std::string name = "route" + std::to_string(route + 1);
        expected.push_back({name + ".destination", 140 + 12 * route, 4});
        expected.push_back({name + ".mask", 144 + 12 * route, 4});
        expected.push_back({name + ".gateway", 148 + 12 * route, 4});
    }
    xasExpectFields(XMSG_ROUTING, expected);
}
