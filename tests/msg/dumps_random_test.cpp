// Dumps of random records read nothing outside them: each record stands between pages that cannot be read.
#include "msg/print.h"

#include "support/test.h"

#include <random>
#include <sys/mman.h>

namespace {

constexpr std::size_t USER_SIZE = 224;
constexpr int RECORDS_OF_A_TYPE = 200;

/** Readable memory with a page before and a page behind it that ends the program when it is read. */
class FencedMemory {
  public:
    explicit FencedMemory(std::size_t bytes)
        : page{static_cast<std::size_t>(sysconf(_SC_PAGESIZE))}, size{(bytes + page - 1) / page * page},
          whole{static_cast<std::byte *>(
              mmap(nullptr, size + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))}
    {
        if (mprotect(whole + page, size, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc{};
    }
    ~FencedMemory() { munmap(whole, size + 2 * page); }
    FencedMemory(const FencedMemory &) = delete;
    FencedMemory &operator=(const FencedMemory &) = delete;

    [[nodiscard]] std::byte *first() const { return whole + page; }
    [[nodiscard]] std::byte *last(std::size_t bytes) const { return whole + page + size - bytes; }

  private:
    std::size_t page;
    std::size_t size;
    std::byte *whole;
};

/** Random bytes, in a part of the records none of them zero, so that no text ends within its field. */
class RandomBytes {
  public:
    void fill(std::span<std::byte> bytes)
    {
        const bool hasZeroes = engine() % 2 == 0;
        for (std::byte &byte : bytes)
            byte = static_cast<std::byte>(hasZeroes ? engine() : engine() | 1U);
    }

    /** Small numbers come often: that is where the counts of a record still fit. */
    std::size_t upTo(std::size_t largest) { return engine() % (largest + 1); }

  private:
    std::mt19937 engine{20040611};
};

void dump(std::byte *place, std::uint32_t msgtype, std::span<const std::byte> users)
{
    std::memcpy(place, &msgtype, sizeof msgtype);
    const auto &msg = *reinterpret_cast<const XasMessage *>(place);
    const std::string basic = msgBasicText(&msg);
    ASSERT_EQ(std::ranges::count(basic, '\n'), 2);
    const std::string all = msgAllText(msg, users);
    ASSERT_TRUE(all.empty() || all.back() == '\n') << msgtype;
}

void dumpRandomRecords(RandomBytes &random, const FencedMemory &record, const FencedMemory &list,
                       std::uint32_t msgtype)
{
    for (int i = 0; i < RECORDS_OF_A_TYPE; ++i) {
        std::byte *const place = i % 2 == 0 ? record.last(sizeof(XasMessage)) : record.first();
        random.fill({place, sizeof(XasMessage)});
        const std::size_t held = random.upTo(5 * USER_SIZE); // whole users, and what is no user any more
        const std::span<std::byte> users{list.last(held), held};
        random.fill(users);
        dump(place, msgtype, users);
    }
}

} // namespace

TEST(MsgDumpsOfRandomRecords, ReadNothingOutsideTheRecord)
{
    const FencedMemory record{sizeof(XasMessage)};
    const FencedMemory list{5 * USER_SIZE};
    RandomBytes random;
    for (std::uint32_t msgtype = 0; msgtype <= 70; ++msgtype)
        dumpRandomRecords(random, record, list, msgtype);
    for (const std::uint32_t msgtype : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        dumpRandomRecords(random, record, list, msgtype);
}

TEST(MsgDumpsOfRandomRecordsDeathTest, TheFenceIsSeenWhenItIsTouched)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const FencedMemory record{sizeof(XasMessage)};
    volatile const std::byte *const behind = record.last(0);
    EXPECT_DEATH((void)*behind, "");
}
