#include "auth/ldap_tls.h"

#include "core/log.h"
#include "core/shell.h"
#include "files/generated_file.h"
#include "files/sync.h"

#include <array>
#include <optional>
#include <unistd.h>

namespace {

constexpr const char *FIPS_MARK = "/tmp/.save/fips_mode";
constexpr const char *FIPS_CIPHERS =
    "tls_cipher_suite AES256-SHA:AES256-SHA256:AES128-SHA:AES128-SHA256:AES256-GCM-SHA384:"
    "AES128-GCM-SHA256:DES-CBC3-SHA\n";

/** The longest link target that is read. */
constexpr std::size_t TARGET_MAX = 128;

struct TlsItem {
    const char *key; /**< of ldap.conf */
    const char *link;
    const char *derFile;
    XasLiteral convertFrom; /**< the conversion command up to the file that it reads */
    XasLiteral convertTo;   /**< and behind it */
    const char *failureLog;
};

constexpr std::array ITEMS = {
    TlsItem{"tls_cacert", "/www/xml/ldap_ca.lnk", "/etc/openldap/ca.der", "/usr/bin/openssl x509 -in ",
            " -outform der -out /etc/openldap/ca.der",
            "Error converting LDAP TLS Certificate Authority file to DER format"},
    TlsItem{"tls_cert", "/www/xml/ldap_cert.lnk", "/etc/openldap/cert.der", "/usr/bin/openssl x509 -in ",
            " -outform der -out /etc/openldap/cert.der",
            "Error converting LDAP TLS Certificate file to DER format"},
    TlsItem{"tls_key", "/www/xml/ldap_key.lnk", "/etc/openldap/key.der", "/usr/bin/openssl rsa -in ",
            " -outform der -out /etc/openldap/key.der", "Error converting LDAP TLS Key file to DER format"},
};

std::optional<std::string> linkTarget(const char *link)
{
    std::array<char, TARGET_MAX> target{};
    const ssize_t size = ::readlink(link, target.data(), target.size());
    if (size < 0)
        return std::nullopt;
    return std::string{target.data(), static_cast<std::size_t>(size)};
}

std::string line(const TlsItem &item, const std::string &path)
{
    return std::string{item.key} + " " + path + "\n";
}

/** The conversion writes into a file that is its owner's alone already. */
bool convert(const TlsItem &item, const std::string &path)
{
    if (!xasCreateFile(item.derFile, item.derFile, XasFileAccess::owner))
        return false;
    XasShellCommand command{item.convertFrom};
    return xasSystem(command.word(path).text(item.convertTo)).exitedWell();
}

std::string convertedLine(const TlsItem &item, const std::string &path)
{
    if (!convert(item, path)) {
        xasLogError("%s", item.failureLog);
        xasRemoveFile(item.derFile);
        return {};
    }
    xasSyncFile(item.derFile);
    return line(item, item.derFile);
}

} // namespace

std::string xasLdapTlsText()
{
    const bool isFips = ::access(FIPS_MARK, F_OK) == 0;
    std::string text = isFips ? FIPS_CIPHERS : "";
    for (const TlsItem &item : ITEMS) {
        if (const auto target = linkTarget(item.link)) {
            const std::string path = "/www/xml/" + *target;
            text += isFips ? convertedLine(item, path) : line(item, path);
        }
    }
    return text;
}
