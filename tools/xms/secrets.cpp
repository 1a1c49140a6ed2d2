#include "xms/secrets.h"

#include "auth/user_message.h"
#include "msg/values.h"
#include "xms/users.h"

#include <algorithm>
#include <cctype>
#include <functional>

namespace {

/** A shorter secret would be found inside of ordinary words. */
constexpr std::size_t SHORTEST_PART = 4;

using Visit = std::function<void(std::span<std::byte> secret, const std::string &name)>;

/** The bytes of each secret that the block holds. */
void visitSecrets(std::span<std::byte> block, const XasMsgFields &fields, const Visit &visit)
{
    for (const XasMsgFieldAt &where : xasListFields(fields)) {
        if (where.field->isSecret && !xasIsZero(block, where.place))
            visit(block.subspan(where.place.offset, where.place.width), where.name);
    }
}

void visitRecord(XasMessage &record, const Visit &visit)
{
    const XasMsgFields *fields = msgFieldsOf(record.xH.msgtype);
    if (fields != nullptr)
        visitSecrets(std::as_writable_bytes(std::span{&record, 1}), *fields, visit);
    else if (std::ranges::any_of(record.payload, [](std::byte byte) { return byte != std::byte{0}; }))
        visit(record.payload, "payload");
}

void visitTraffic(XmsTraffic &traffic, const Visit &visit)
{
    const std::size_t users = traffic.toDaemon ? xmsUserCount(traffic.bytes.size()).value_or(0) : 0;
    for (std::size_t user = 0; user < users; ++user)
        visitSecrets(xmsUserBlock(traffic.bytes, user), XAS_LISTED_USER_MESSAGE,
                     [&](std::span<std::byte> secret, const std::string &name) {
                         visit(secret, "user" + std::to_string(user + 1) + "." + name);
                     });
    if (users != 0)
        return;
    if (traffic.bytes.size() != XAS_MESSAGE_SIZE)
        return visit(traffic.bytes, "bytes");
    XasMessage record = xmsTrafficMessage(traffic);
    visitRecord(record, visit);
    std::memcpy(traffic.bytes.data(), &record, sizeof record);
}

void maskBytes(std::span<std::byte> secret, const std::string &name)
{
    std::ranges::fill(secret, std::byte{0});
    if (name == "payload" || name == "bytes")
        return;
    const auto mask = std::as_bytes(std::span{XMS_MASK});
    std::ranges::copy(mask.first(std::min(mask.size(), secret.size() - 1)), secret.begin());
}

std::string textOf(std::span<const std::byte> secret)
{
    const std::string_view text{reinterpret_cast<const char *>(secret.data()), secret.size()};
    return std::string{text.substr(0, text.find('\0'))};
}

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/** True unless the part of `text` is short and belongs to a longer word. */
bool standsAlone(std::string_view text, std::size_t begin, std::size_t size)
{
    const bool isInside = (begin > 0 && isWordCharacter(text[begin - 1])) ||
                          (begin + size < text.size() && isWordCharacter(text[begin + size]));
    return size >= SHORTEST_PART || !isInside;
}

} // namespace

std::vector<std::string> xmsSecretFields(const XmsTraffic &traffic)
{
    std::vector<std::string> names;
    XmsTraffic copy = traffic;
    visitTraffic(copy, [&](std::span<std::byte>, const std::string &name) { names.push_back(name); });
    return names;
}

XasMessage xmsMaskedRecord(XasMessage record)
{
    visitRecord(record, maskBytes);
    return record;
}

XmsTraffic xmsMasked(XmsTraffic traffic)
{
    visitTraffic(traffic, maskBytes);
    return traffic;
}

void XmsKnownSecrets::learn(const XmsTraffic &traffic)
{
    XmsTraffic copy = traffic;
    visitTraffic(copy, [&](std::span<std::byte> secret, const std::string &name) {
        if (name != "payload" && name != "bytes")
            secrets.insert(textOf(secret));
    });
    secrets.erase("");
}

void XmsKnownSecrets::learn(const XasMessage &record)
{
    const auto bytes = std::as_bytes(std::span{&record, 1});
    learn(XmsTraffic{0, true, {bytes.begin(), bytes.end()}});
}

std::string XmsKnownSecrets::hide(std::string_view text) const
{
    std::string hidden;
    for (std::size_t at = 0; at < text.size();) {
        const auto found = std::ranges::find_if(secrets, [&](const std::string &secret) {
            return text.substr(at).starts_with(secret) && standsAlone(text, at, secret.size());
        });
        hidden += found == secrets.end() ? text.substr(at, 1) : XMS_MASK;
        at += found == secrets.end() ? 1 : found->size();
    }
    return hidden;
}
