/** Messages as tests build and read them. Offsets count from the start of the record. */
#ifndef XAS_TEST_SUPPORT_MESSAGE_H
#define XAS_TEST_SUPPORT_MESSAGE_H

#include "wire/message.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

/** Builds a record, all zero but for what is set; a Set of the command line unless told otherwise. */
class XasMessageBuilder {
  public:
    explicit XasMessageBuilder(std::uint32_t msgtype) { message.xH.msgtype = msgtype; }

    XasMessageBuilder &id(std::uint32_t value)
    {
        message.xH.id = value;
        return *this;
    }

    XasMessageBuilder &sender(std::uint32_t value)
    {
        message.xH.sender = value;
        return *this;
    }

    template <class Payload>
    XasMessageBuilder &payload(const Payload &value)
    {
        xasWritePayload(message, value);
        return *this;
    }

    XasMessageBuilder &bytes(std::size_t offset, std::string_view value)
    {
        if (offset + value.size() > sizeof message)
            throw std::out_of_range{"past the record's end"};
        std::memcpy(reinterpret_cast<char *>(&message) + offset, value.data(), value.size());
        return *this;
    }

    XasMessageBuilder &word(std::size_t offset, std::uint32_t value) { return number(offset, value); }
    XasMessageBuilder &half(std::size_t offset, std::uint16_t value) { return number(offset, value); }
    XasMessageBuilder &byte(std::size_t offset, std::uint8_t value) { return number(offset, value); }

    [[nodiscard]] XasMessage build() const { return message; }

  private:
    template <class T>
    XasMessageBuilder &number(std::size_t offset, T value)
    {
        return bytes(offset, {reinterpret_cast<const char *>(&value), sizeof value});
    }

    XasMessage message{};
};

/** The bytes [offset, offset + size) of a record. */
inline std::string xasMessageBytes(const XasMessage &msg, std::size_t offset, std::size_t size)
{
    return std::string{reinterpret_cast<const char *>(&msg), sizeof msg}.substr(offset, size);
}

/** The 32-bit word at `offset` of a record. */
inline std::uint32_t xasMessageWord(const XasMessage &msg, std::size_t offset)
{
    std::uint32_t value = 0;
    std::memcpy(&value, reinterpret_cast<const char *>(&msg) + offset, sizeof value);
    return value;
}

/** The text at `offset` of a record, up to its first NUL. */
inline std::string xasMessageText(const XasMessage &msg, std::size_t offset)
{
    const std::string text = xasMessageBytes(msg, offset, sizeof msg - offset);
    return text.substr(0, text.find('\0'));
}

#endif
