/** A block of bytes with one field, set and read as text. */
#ifndef XAS_TEST_SUPPORT_VALUES_H
#define XAS_TEST_SUPPORT_VALUES_H

#include "msg/values.h"

#include "support/test.h"

inline constexpr std::size_t BLOCK_OFFSET = 8;

/** A block with one field in the middle of bytes that must not change. */
class XasValuesTest : public testing::Test {
  protected:
    XasValuesTest() : block(128, std::byte{0xEE}) {}

    XasMsgFieldAt at(const XasMsgField &field) const { return {"field", &field, field.place, 0}; }

    std::string set(const XasMsgField &field, std::string_view text,
                    XasValueCheck check = XasValueCheck::allowed)
    {
        return msgSetValue(block, at(field), text, check);
    }

    std::string read(const XasMsgField &field) const { return msgValueText(block, at(field)); }

    /** The field's bytes, and a check that no other byte has changed. */
    std::string bytes(const XasMsgField &field) const
    {
        for (std::size_t i = 0; i < block.size(); ++i) {
            const bool isInside = i >= BLOCK_OFFSET && i < BLOCK_OFFSET + field.place.width;
            EXPECT_TRUE(isInside || block[i] == std::byte{0xEE}) << i;
        }
        return {reinterpret_cast<const char *>(block.data()) + BLOCK_OFFSET, field.place.width};
    }

    void expectRefused(const XasMsgField &field, std::string_view text, std::string_view expected,
                       XasValueCheck check = XasValueCheck::allowed)
    {
        const std::vector<std::byte> before = block;
        const std::string complaint = set(field, text, check);
        EXPECT_NE(complaint.find(expected), std::string::npos) << text << ": " << complaint;
        EXPECT_EQ(block, before) << text;
    }

    /** Sets and reads back the same text. */
    void expectKept(const XasMsgField &field, const std::string &text)
    {
        EXPECT_EQ(set(field, text), "");
        EXPECT_EQ(read(field), text);
    }

    std::vector<std::byte> block;
};

inline XasMsgField xasTestField(XasFieldKind kind, std::size_t width)
{
    return {.name = "field", .place = {BLOCK_OFFSET, width}, .kind = kind, .meaning = "a field"};
}

inline std::string xasFourBytes(const char (&bytes)[5])
{
    return {bytes, 4};
}

#endif
