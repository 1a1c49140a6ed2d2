/**
 * Messages as tests build and read them: by the names of their fields. The raw bytes are for tests about raw
 * bytes; their offsets count from the start of the record.
 */
#ifndef XAS_TEST_SUPPORT_MESSAGE_H
#define XAS_TEST_SUPPORT_MESSAGE_H

#include "wire/field.h"

#include <span>
#include <string>
#include <string_view>
#include <type_traits>

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

    XasMessageBuilder &action(std::uint32_t value)
    {
        message.xH.action = value;
        return *this;
    }

    /** Makes it the answer to the message of this id. */
    XasMessageBuilder &answering(std::uint32_t id)
    {
        message.xH.action = XAS_ACTION_RETURN;
        message.xH.orig_id = id;
        return *this;
    }

    /** Sets a field ("mount1.rem_dir") from the text that the message tool takes, or from any other that its
     * bytes can hold. Throws std::out_of_range when there is no such field, std::invalid_argument when the
     * value does not fit. */
    XasMessageBuilder &set(std::string_view name, std::string_view value);

    /** The same from a number. */
    template <class Number>
    requires std::is_integral_v<Number> || std::is_enum_v<Number> XasMessageBuilder &
    set(std::string_view name, Number value)
    {
        return set(name, std::to_string(+value));
    }

    /** Sets fields from words as the message tool takes them: "enabled=yes order=3". */
    XasMessageBuilder &set(std::string_view words);

    /** Sets the first bytes of a field as they are, for values that no text stands for. */
    XasMessageBuilder &raw(std::string_view name, std::string_view bytes);

    /** Sets the bytes that follow a field, which nobody may take for a part of it. */
    XasMessageBuilder &behind(std::string_view name, std::string_view bytes);

    template <class Payload>
    XasMessageBuilder &payload(const Payload &value)
    {
        xasWritePayload(message, value);
        return *this;
    }

    XasMessageBuilder &bytes(std::size_t offset, std::string_view value);

    XasMessageBuilder &word(std::size_t offset, std::uint32_t value) { return number(offset, value); }
    XasMessageBuilder &half(std::size_t offset, std::uint16_t value) { return number(offset, value); }
    XasMessageBuilder &byte(std::size_t offset, std::uint8_t value) { return number(offset, value); }

    [[nodiscard]] XasMessage build() const { return message; }
    operator XasMessage() const { return message; }

    /** The payload alone, for functions that take it. */
    template <class Payload>
    [[nodiscard]] Payload as() const
    {
        return xasReadPayload<Payload>(message);
    }

  private:
    template <class T>
    XasMessageBuilder &number(std::size_t offset, T value)
    {
        return bytes(offset, {reinterpret_cast<const char *>(&value), sizeof value});
    }

    XasMessage message{};
};

/** The field `name` of a message type; throws std::out_of_range when there is none. */
XasMsgFieldAt xasTestField(std::uint32_t msgtype, std::string_view name);

/** The value of a record's field, as the message tool shows it. */
std::string xasValueIn(const XasMessage &msg, std::string_view name);

/** An acknowledgement, which the record must be, in short: "0 2 reason" for success, rcode and reason. */
std::string xasOutcomeIn(const XasMessage &answer);

/** What xasOutcomeIn() gives for a message that failed without a reason, and for one that was applied. */
inline constexpr const char *XAS_FAILED = "0 0 ";
inline constexpr const char *XAS_APPLIED = "1 0 ";

/** The record's bytes. */
inline std::span<std::byte> xasBytesOf(XasMessage &msg)
{
    return std::as_writable_bytes(std::span{&msg, 1});
}
inline std::span<const std::byte> xasBytesOf(const XasMessage &msg)
{
    return std::as_bytes(std::span{&msg, 1});
}

/** The bytes [offset, offset + size) of a record. */
std::string xasMessageBytes(const XasMessage &msg, std::size_t offset = 0,
                            std::size_t size = XAS_MESSAGE_SIZE);

/** The bytes behind the header. */
inline std::string xasPayloadBytes(const XasMessage &msg)
{
    return xasMessageBytes(msg, XAS_PAYLOAD_OFFSET);
}

/** The 32-bit word at `offset` of a record. */
inline std::uint32_t xasMessageWord(const XasMessage &msg, std::size_t offset)
{
    std::uint32_t value = 0;
    std::memcpy(&value, reinterpret_cast<const char *>(&msg) + offset, sizeof value);
    return value;
}

#endif
