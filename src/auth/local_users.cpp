#include "auth/local_users.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/generated_file.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr const char *USER_LIST = "/etc/.lusers";
constexpr const char *NEW_USER_LIST = "/etc/.lusers_tmp";

/** The longest account command and the longest line of the list, terminating NUL included. */
constexpr std::size_t COMMAND_SIZE = 256;
constexpr std::size_t LINE_SIZE = 128;

constexpr std::string_view ADMINISTRATOR = "sysadmin";

XasShellCommand startedWithUid(const XasUserRecord &user)
{
    XasShellCommand command{"/bin/adduser -D -H -u "};
    command.number(static_cast<int>(user.uid));
    return command;
}

XasShellCommand administratorCommand(const XasUserRecord &user)
{
    XasShellCommand command = startedWithUid(user);
    command.text(" -G root -s /bin/cli -g \"System Administrator\" -h / -p ");
    command.quoted(xasFieldText(user.password)).text(" ").word(xasFieldText(user.login));
    return command;
}

/** What becomes of the listed logins while one or all are removed. */
struct Removal {
    std::string_view login; /**< empty: all */
    bool done = false;      /**< the one login has been removed */
};

/** True when the login stays on the list; removes its account when it is the one to go. */
bool staysListed(const std::string &listed, Removal &removal)
{
    if (!xasHasAccount(listed))
        return false;
    if (removal.done)
        return true;
    if (removal.login.empty()) {
        xasRemoveAccount(listed, "system call deluser failed\n");
        return false;
    }
    if (listed != removal.login)
        return true;
    xasRemoveAccount(listed, "system call deluser failed \n");
    removal.done = true;
    return false;
}

/** Reads a line of the list; its last character, the line feed, is cut off. False at the end. */
bool readListed(FILE *list, std::string &listed)
{
    std::array<char, LINE_SIZE> line{};
    if (std::fgets(line.data(), line.size(), list) == nullptr)
        return false;
    listed = line.data();
    if (!listed.empty())
        listed.pop_back();
    return true;
}

/** Writes the list anew without those who go. False when it cannot be written. */
bool writeNewList(FILE *list, FILE *newList, Removal removal)
{
    bool written = true;
    for (std::string listed; readListed(list, listed);) {
        if (staysListed(listed, removal))
            written = xasWriteGenerated(newList, listed + "\n") && written;
    }
    return written;
}

} // namespace

bool xasIsValidLogin(std::string_view login)
{
    const auto isRefused = [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code <= ' ' || code == 0x7f || c == '/' || c == ':';
    };
    return !login.empty() && !login.starts_with('-') && std::ranges::none_of(login, isRefused);
}

bool xasIsValidPassword(std::string_view password)
{
    return xasFitsRule(XasTextRule::column, password);
}

bool xasIsValidUser(const XasUserRecord &user)
{
    return xasIsValidLogin(xasFieldText(user.login)) && xasIsValidPassword(xasFieldText(user.password)) &&
           xasFitsRule(XasTextRule::sequence, xasFieldText(user.escseq)) &&
           xasFitsRule(XasTextRule::sequence, xasFieldText(user.brkseq));
}

XasShellCommand xasAddUserCommand(const XasUserRecord &user)
{
    return xasFieldText(user.login) == ADMINISTRATOR ? administratorCommand(user) : xasEditUserCommand(user);
}

XasShellCommand xasEditUserCommand(const XasUserRecord &user)
{
    if (!xasFieldText(user.password).empty())
        return xasPasswordUserCommand(user);
    XasShellCommand command = startedWithUid(user);
    command.text(" -s /bin/cli -h / ").word(xasFieldText(user.login));
    return command;
}

XasShellCommand xasPasswordUserCommand(const XasUserRecord &user)
{
    XasShellCommand command = startedWithUid(user);
    command.text(" -s /bin/cli -h / -p ").quoted(xasFieldText(user.password));
    command.text(" ").word(xasFieldText(user.login));
    return command;
}

XasExitStatus xasRunAccountCommand(XasShellCommand command)
{
    return command.fit(COMMAND_SIZE) ? xasSystem(command) : XAS_NOT_RUN;
}

void xasRemoveAccount(std::string_view login, const char *notRunLog)
{
    XasShellCommand command{"/bin/deluser "};
    if (xasRunAccountCommand(command.word(login)).shellNotRun())
        xasLogError("%s", notRunLog);
}

int xasAddLocalUserToList(std::string_view login)
{
    XasFile list = xasOpenGrowingFile(USER_LIST);
    if (!list)
        return -1;
    const bool written = xasWriteGenerated(list.get(), std::string{login} + "\n");
    return xasCloseGenerated(std::move(list)) && written ? 0 : -1;
}

int xasDeleteLocalUsers(std::string_view login)
{
    XasFile list = xasOpenFile(USER_LIST);
    if (!list)
        return -1;
    XasFile newList = xasOpenGeneratedFile(NEW_USER_LIST, XasFileAccess::everybody);
    if (!newList)
        return 1;
    const bool written = writeNewList(list.get(), newList.get(), {.login = login});
    list.reset();
    if (!xasCloseGenerated(std::move(newList)) || !written)
        return 1;
    if (xasSystem(XasShellCommand{"/bin/mv -f /etc/.lusers_tmp /etc/.lusers"}).shellNotRun())
        xasLogError("system call mv -f failed\n");
    return 0;
}
