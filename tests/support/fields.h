/** The fields of a message type against what its handler reads. */
#ifndef XAS_TEST_SUPPORT_FIELDS_H
#define XAS_TEST_SUPPORT_FIELDS_H

#include "msg/fields.h"
#include "msg/values.h"

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
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    ASSERT_NE(fields, nullptr);
    const std::vector<XasMsgFieldAt> found = xasListFields(*fields);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(found[i].name, expected[i].name);
        EXPECT_EQ(found[i].place.offset, expected[i].offset) << expected[i].name;
        EXPECT_EQ(found[i].place.width, expected[i].width) << expected[i].name;
    }
}

struct XasExpectedDefault {
    std::string name;
    std::string value; /**< as text */
};

/** Expects exactly these values, in the order of the record, in one that nobody has set anything in. */
inline void xasExpectDefaults(std::uint32_t msgtype, const std::vector<XasExpectedDefault> &expected)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    ASSERT_NE(fields, nullptr);
    XasMessage record{};
    const auto bytes = std::as_writable_bytes(std::span{&record, 1});
    msgSetDefaults(bytes, *fields);
    const std::vector<XasMsgFieldAt> found = xasListFields(*fields);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(found[i].name, expected[i].name);
        EXPECT_EQ(msgValueText(bytes, found[i]), expected[i].value) << expected[i].name;
    }
}

/** The number that `text` stands for in a field; "refused" otherwise. */
inline std::string xasTestNumberOf(std::uint32_t msgtype, std::string_view name, std::string_view text)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    const auto where = fields == nullptr ? std::nullopt : xasFindField(*fields, name);
    if (!where)
        throw std::out_of_range{std::string{name}};
    XasMessage record{};
    const auto bytes = std::as_writable_bytes(std::span{&record, 1});
    if (!msgSetValue(bytes, *where, text).empty())
        return "refused";
    return std::to_string(msgValueNumber(bytes, where->place));
}

#endif
