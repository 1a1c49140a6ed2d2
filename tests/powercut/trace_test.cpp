// The trace of a flash becomes a log of its pages, in the order of what was done.
#include "powercut/trace.h"

#include "powercut/log.h"
#include "support/test.h"

namespace {

constexpr std::size_t MARKS = 0x200000;

std::string erasedFlash()
{
    return std::string(MARKS + FLASH_BLOCK, '\xff');
}

std::string programLine(std::size_t place, char byte)
{
    std::ostringstream line;
    line << "m25p80_page_program [0x55d0] page program cur_addr=0x" << std::hex << place << " data=0x"
         << static_cast<unsigned>(static_cast<unsigned char>(byte)) << '\n';
    return line.str();
}

std::string programLines(std::size_t place, std::string_view bytes)
{
    std::string lines;
    for (const char byte : bytes)
        lines += programLine(place++, byte);
    return lines;
}

/** The log must outlive what is read from it. */
struct Packed {
    std::string log;
    std::vector<XasEntry> entries;

    Packed(const std::string &trace, const std::string &flash)
    {
        std::istringstream text{trace};
        log = xasPackTrace(text, flash);
        entries = xasReadLog(log, FLASH);
    }
};

} // namespace

TEST(PowercutTrace, BytesInARowAreOneWriteOfTheirPage)
{
    const Packed packed{programLines(0x110, "ab"), erasedFlash()};
    ASSERT_EQ(packed.entries.size(), 1U);
    EXPECT_EQ(packed.entries[0].kind, XasEntryKind::write);
    EXPECT_EQ(packed.entries[0].place, 0x100U);
    EXPECT_EQ(packed.entries[0].data, std::string(16, '\xff') + "ab" + std::string(238, '\xff'));
}

TEST(PowercutTrace, APageOrAGapEndsAWrite)
{
    const Packed packed{programLines(0xff, "ab") + programLine(0x102, 'c'), erasedFlash()};
    ASSERT_EQ(packed.entries.size(), 3U);
    EXPECT_EQ(packed.entries[0].place, 0U);
    EXPECT_EQ(packed.entries[1].place, 0x100U);
    EXPECT_THAT(packed.entries[1].data, StartsWith("b\xff\xff"));
    EXPECT_EQ(packed.entries[2].place, 0x100U);
    EXPECT_THAT(packed.entries[2].data, StartsWith("b\xff"
                                                   "c"));
}

TEST(PowercutTrace, ProgrammingOnlyClearsBits)
{
    const Packed packed{programLine(0, '\x0f') + programLines(8, "x") + programLine(0, '\xf3'),
                        erasedFlash()};
    ASSERT_EQ(packed.entries.size(), 3U);
    EXPECT_EQ(packed.entries[2].data[0], '\x03');
}

TEST(PowercutTrace, AnErasedBlockIsBlankForWhatFollows)
{
    std::string flash = erasedFlash();
    flash[FLASH_BLOCK] = '\0';
    const Packed packed{
        "m25p80_flash_erase [0x55d0] offset = 0x10000, len = 65536\n" + programLine(0x10001, 'a'), flash};
    ASSERT_EQ(packed.entries.size(), 2U);
    EXPECT_EQ(packed.entries[0].kind, XasEntryKind::erase);
    EXPECT_EQ(packed.entries[0].place, 0x10000U);
    EXPECT_THAT(packed.entries[1].data, StartsWith("\xff"
                                                   "a"));
}

TEST(PowercutTrace, AnEraseOfAnotherSizeIsRefused)
{
    std::istringstream trace{"m25p80_flash_erase [0x55d0] offset = 0x0, len = 4096\n"};
    EXPECT_THROW(xasPackTrace(trace, erasedFlash()), std::runtime_error);
}

TEST(PowercutTrace, MarksLieBehindTheFileSystem)
{
    const Packed packed{programLines(MARKS, "xas-mark begin 3 ") +
                            programLines(MARKS + 256, "xas-mark end 3 "),
                        erasedFlash()};
    ASSERT_EQ(packed.entries.size(), 2U);
    EXPECT_EQ(packed.entries[0].kind, XasEntryKind::markBegin);
    EXPECT_EQ(packed.entries[1].kind, XasEntryKind::markEnd);
    EXPECT_EQ(packed.entries[1].message, 3U);
}
