#include "auth/local_users.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/generated_file.h"
#include "files/sync.h"
#include "wire/control.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr const char *USER_LIST = "/etc/.lusers";
constexpr const char *NEW_USER_LIST = "/etc/.lusers_tmp";

/** The longest account command, terminating NUL included. */
constexpr std::size_t COMMAND_SIZE = 256;

/** The longest line of the list that is read in one piece. */
constexpr std::size_t LISTED_MAX = 127;

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

/** The new list, without those who go. Of a line's characters the last one, the line feed, does not count. */
std::string withoutRemoved(std::string_view list, Removal removal)
{
    std::string newList;
    xasForEachLine(
        list,
        [&](std::string_view line) {
            const std::string listed{line.substr(0, line.empty() ? 0 : line.size() - 1)};
            if (staysListed(listed, removal))
                newList += listed + "\n";
        },
        LISTED_MAX);
    return newList;
}

} // namespace

bool xasIsValidLogin(std::string_view login)
{
    const auto isRefused = [](char c) {
        return xasIsControl(c) || c == ' ' || c == '/' || c == ':';
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
    return xasAppendToFile(USER_LIST, std::string{login} + "\n") == 0 ? 0 : -1;
}

int xasDeleteLocalUsers(std::string_view login)
{
    std::string list;
    if (xasReadWhole(USER_LIST, list) != XasReading::whole)
        return -1;
    XasFile newFile = xasCreateFile(NEW_USER_LIST, USER_LIST, XasFileAccess::kept);
    if (!newFile)
        return 1;
    const std::string newList = withoutRemoved(list, {.login = login});
    const bool isWritten = xasWriteText(newFile.get(), newList) == newList.size();
    if (!xasCloseWritten(newFile) || !isWritten)
        return 1;
    if (xasSystem(XasShellCommand{"/bin/mv -f /etc/.lusers_tmp /etc/.lusers"}).shellNotRun())
        xasLogError("system call mv -f failed\n");
    xasNoteTouched(USER_LIST);
    return 0;
}
