#include "support/random_records.h"

#include "wire/message.h"

#include <array>
#include <cstring>

namespace {

constexpr std::array<std::size_t, 6> WRONG_SIZES = {0, 1, 119, 2487, 2489, 8000};

/** Every third record has a wrong size, every size in its turn. */
constexpr std::uint32_t WRONG_EVERY = 3;

/** Types 0 to 69 in turn, so that every one and its neighbours come; then one of any value. */
constexpr std::uint32_t TYPES_IN_TURN = 70;

} // namespace

XasRandomRecord XasRandomRecords::next()
{
    const std::uint32_t number = count++;
    const bool isWrong = number % WRONG_EVERY == 0;
    std::string bytes(isWrong ? WRONG_SIZES[number / WRONG_EVERY % WRONG_SIZES.size()] : sizeof(XasMessage),
                      '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(engine());
    std::uint32_t msgtype = number % (TYPES_IN_TURN + 1);
    if (msgtype == TYPES_IN_TURN)
        msgtype = static_cast<std::uint32_t>(engine());
    if (bytes.size() >= sizeof msgtype)
        std::memcpy(bytes.data(), &msgtype, sizeof msgtype);
    return {static_cast<long>(engine() >> 1) + 1, bytes};
}
