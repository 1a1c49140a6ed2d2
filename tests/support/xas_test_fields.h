/** The fields of a message type against what its handler reads. */
#ifndef XAS_TEST_FIELDS_H
#define XAS_TEST_FIELDS_H

#include "msg/msg_fields.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

struct XasExpectedField {
    std::string name;
    std::size_t offset; /**< from the start of the record */
    std::size_t width;  /**< bytes */
};

/** Expects exactly these fields, groups spread out, in the order of the record. */
inline void xasExpectFields(std::uint32_t msgtype, const std::vector<XasExpectedField> &expected)
{
    const XasMsgFields *fields = xasMsgFieldsOf(msgtype);
    ASSERT_NE(fields, nullptr);
    const std::vector<XasMsgFieldAt> found = xasMsgListFields(*fields);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(found[i].name, expected[i].name);
        EXPECT_EQ(found[i].place.offset, expected[i].offset) << expected[i].name;
        EXPECT_EQ(found[i].place.width, expected[i].width) << expected[i].name;
    }
}

#endif
