#include "auth/auth_order.h"

#include "core/log.h"
#include "core/text.h"
#include "files/config_file.h"
#include "files/generated_file.h"

#include <array>

namespace {

constexpr const char *ORDER_FILE = "/etc/sysconfig/r58authconfig";

struct OrderKey {
    std::string_view key;
    std::uint32_t XasAuthOrder::*value;
};

/** In the order in which a line is tried against them. */
constexpr std::array KEYS = {
    OrderKey{"LOCAL", &XasAuthOrder::local},     OrderKey{"NIS", &XasAuthOrder::nis},
    OrderKey{"LDAP", &XasAuthOrder::ldap},       OrderKey{"RADIUS", &XasAuthOrder::radius},
    OrderKey{"SECURID", &XasAuthOrder::securid}, OrderKey{"KERBEROS", &XasAuthOrder::kerberos},
    OrderKey{"TACACS", &XasAuthOrder::tacacs},   OrderKey{"FIRSTRSP", &XasAuthOrder::firstResponding},
};

int signedNumber(std::uint32_t value)
{
    return static_cast<int>(value);
}

} // namespace

void xasClampAuthPositions(XasAuthPayload &auth)
{
    for (std::uint8_t *position :
         {&auth.local, &auth.nis, &auth.ldap, &auth.radius, &auth.securid, &auth.kerberos, &auth.tacacs}) {
        if (*position > XAS_AUTH_POSITIONS)
            *position = 0;
    }
}

std::string xasAuthOrderCfgText(const XasAuthPayload &auth)
{
    return xasFormat("FIRSTRSP=%d\n"
                     "LOCAL=%d\nNIS=%d\nLDAP=%d\nRADIUS=%d\nSECURID=%d\nKERBEROS=%d\nTACACS=%d\n",
                     auth.first_responding != 0 ? 1 : 0, auth.local, auth.nis, auth.ldap, auth.radius,
                     auth.securid, auth.kerberos, auth.tacacs);
}

std::string xasAuthOrderText(const XasAuthOrder &order)
{
    return xasFormat("LOCAL=%d\nNIS=%d\nLDAP=%d \nRADIUS=%d\nSECURID=%d \nKERBEROS=%d \nTACACS=%d \n",
                     signedNumber(order.local), signedNumber(order.nis), signedNumber(order.ldap),
                     signedNumber(order.radius), signedNumber(order.securid), signedNumber(order.kerberos),
                     signedNumber(order.tacacs));
}

void xasParseAuthOrder(std::string_view text, XasAuthOrder &order)
{
    xasForEachLine(text, [&](std::string_view line) {
        line = line.substr(0, line.find_first_of("\r\n"));
        for (const OrderKey &key : KEYS) {
            if (xasGetCfgNumber(key.key, line, &(order.*key.value)) != 0)
                break;
        }
    });
}

int xasEditAuthenOrderCfgFile(const char *cfgFileName, XasAuthPayload *auth, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(auth, "cfgAuth");
    return xasEditFile(cfgFileName, XAS_AUTH_ORDER_TEXTS, reply, [&](std::string_view /*oldText*/) {
        xasClampAuthPositions(*auth);
        return XasNewText{xasAuthOrderCfgText(*auth)};
    });
}

int xasReadAuthenOrder(XasAuthOrder &order)
{
    std::string text;
    switch (xasReadWhole(ORDER_FILE, text)) {
    case XasReading::whole:
        xasParseAuthOrder(text, order);
        return 0;
    case XasReading::notOpened:
        return xasLogFailure("Error opening config file \"%s\"\n", ORDER_FILE);
    default:
        return XAS_ORDER_UNKNOWN;
    }
}

int xasWriteAuthenOrder(const XasAuthOrder &order)
{
    return xasGenerateFile(ORDER_FILE, xasAuthOrderText(order), XasFileAccess::kept);
}
