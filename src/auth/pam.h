/**
 * The PAM stack "system-auth" (pam.d(5)), generated whole from the authentication order and from a few
 * settings that are read back from the Kerberos and TACACS+ files. It is replaced whole, without backup.
 */
#ifndef XAS_AUTH_PAM_H
#define XAS_AUTH_PAM_H

#include "auth/auth_order.h"

#include <string>
#include <string_view>

/** What other methods' files say. Starts cleared; a setting that is not there stays so. */
struct XasPamModuleData {
    std::uint32_t useLdap = 0;  /**< of the Kerberos file, 0 or 1; compared with Kerberos' position */
    std::uint32_t encrypt = 0;  /**< of the TACACS+ file, as are all below; 0 or 1 */
    std::string server1;        /**< at most XAS_PAM_SERVER_MAX characters, as the other two */
    std::string server2;        /**< empty: none */
    std::string server3;        /**< empty: none */
    std::string server1_secret; /**< at most XAS_PAM_SECRET_MAX characters */
    std::string login;          /**< the kind of login, at most XAS_PAM_LOGIN_MAX characters */
};

inline constexpr std::size_t XAS_PAM_SERVER_MAX = 256;
inline constexpr std::size_t XAS_PAM_SECRET_MAX = 127;
inline constexpr std::size_t XAS_PAM_LOGIN_MAX = 20;

/** The longest piece "server=NAME " or "login=TYPE " behind the first server of the TACACS+ line. */
inline constexpr std::size_t XAS_PAM_PIECE_MAX = 75;

/** The whole file. */
std::string xasPamSystemAuthText(const XasAuthOrder &order, const XasPamModuleData &moduleData);

/** Writes the file at `path`; 0600 while it carries the TACACS+ secret. Returns 0, or 1 after logging that it
 * cannot be opened or written. */
[[nodiscard]] int xasWritePamSystemAuthFile(const XasAuthOrder &order, const char *path,
                                            const XasPamModuleData *moduleData);

/** The same for the order on disk; one that cannot be read to its end leaves the file as it is. Always
 * returns 0. */
[[nodiscard]] int xasBuildPamSystemAuth(const char *path, const XasPamModuleData *moduleData);

/** The value of the last line of `text` that holds "TAG = VALUE". The last character behind it goes, which is
 * the line feed wherever there is one. Returns false, `value` left alone, when there is no such line. */
[[nodiscard]] bool xasFindConfData(std::string_view text, std::string_view tag, std::string &value);

/** The same in a file. Returns 0; 1, nothing logged, when it cannot be opened or has no such line; 1 after
 * logging that it cannot be read to its end. */
[[nodiscard]] int xasGetConfData(const char *cfgFileName, const char *tag, std::string *value);

/** Reads the settings from the Kerberos and the TACACS+ file; always returns 0. */
[[nodiscard]] int xasGetPamModuleData(XasPamModuleData *moduleData);

#endif
