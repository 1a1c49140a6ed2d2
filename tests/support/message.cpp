#include "support/message.h"

#include "msg/values.h"
#include "support/test.h"
#include "wire/reply_message.h"

XasMsgFieldAt xasTestField(std::uint32_t msgtype, std::string_view name)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    auto where = fields == nullptr ? std::nullopt : xasFindField(*fields, name);
    if (!where)
        throw std::out_of_range{"no field " + std::string{name} + " in type " + std::to_string(msgtype)};
    return *std::move(where);
}

XasMessageBuilder &XasMessageBuilder::set(std::string_view name, std::string_view value)
{
    const XasMsgFieldAt where = xasTestField(message.xH.msgtype, name);
    const std::string problem = msgSetValue(xasBytesOf(message), where, value, XasValueCheck::anyThatFits);
    if (!problem.empty())
        throw std::invalid_argument{where.name + ": " + problem};
    return *this;
}

XasMessageBuilder &XasMessageBuilder::set(std::string_view words)
{
    std::istringstream stream{std::string{words}};
    for (std::string word; stream >> word;) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos)
            throw std::invalid_argument{word};
        set(word.substr(0, equals), std::string_view{word}.substr(equals + 1));
    }
    return *this;
}

XasMessageBuilder &XasMessageBuilder::raw(std::string_view name, std::string_view value)
{
    const XasPlace place = xasTestField(message.xH.msgtype, name).place;
    if (value.size() > place.width)
        throw std::invalid_argument{std::string{name} + ": too long"};
    return bytes(place.offset, value);
}

XasMessageBuilder &XasMessageBuilder::behind(std::string_view name, std::string_view value)
{
    const XasPlace place = xasTestField(message.xH.msgtype, name).place;
    return bytes(place.offset + place.width, value);
}

XasMessageBuilder &XasMessageBuilder::bytes(std::size_t offset, std::string_view value)
{
    if (offset + value.size() > sizeof message)
        throw std::out_of_range{"past the record's end"};
    std::memcpy(xasBytesOf(message).data() + offset, value.data(), value.size());
    return *this;
}

std::string xasValueIn(const XasMessage &msg, std::string_view name)
{
    return msgValueText(xasBytesOf(msg), xasTestField(msg.xH.msgtype, name));
}

std::string xasOutcomeIn(const XasMessage &answer)
{
    const auto reply = xasReadPayload<XasReplyPayload>(answer);
    EXPECT_EQ(answer.xH.msgtype, XMSG_ACKNAK);
    EXPECT_EQ(reply.complete, 1U);
    return std::to_string(reply.success) + " " + std::to_string(reply.rcode) + " " +
           xasFieldString(reply.rstr);
}

std::string xasMessageBytes(const XasMessage &msg, std::size_t offset, std::size_t size)
{
    return std::string{reinterpret_cast<const char *>(&msg), sizeof msg}.substr(offset, size);
}
