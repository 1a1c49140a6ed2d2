/**
 * Every command line and script line that holds a text of a message: the account tools', the filter's. An
 * input: which, and the payload. Whatever the texts are, a shell reads exactly the words that are meant.
 */
#include "auth/local_users.h"
#include "core/text.h"
#include "dispatch/ipfilter_script.h"
#include "dispatch/settings.h"
#include "support/fuzz.h"
#include "support/words.h"

#include <algorithm>
#include <array>

namespace {

using Words = std::vector<std::string>;

/** The words, which must be nothing but words. */
Words wordsOf(std::string_view line, std::string_view extra = {})
{
    const auto words = xasShellWords(line, extra);
    xasFuzzRequire(words.has_value(), "a line of words", line);
    return *words;
}

void requireWords(const std::string &line, const Words &expected)
{
    xasFuzzRequire(wordsOf(line) == expected, "the words of a command", line, expected.back());
}

void quoteWord(const XasMessage &msg)
{
    const std::string text{reinterpret_cast<const char *>(msg.payload.data()),
                           ::strnlen(reinterpret_cast<const char *>(msg.payload.data()), 300)};
    XasShellCommand command{"/bin/tool "};
    requireWords(command.word(text).str(), {"/bin/tool", text});
    const bool isWhole = command.fit(256);
    xasFuzzRequire(isWhole || command.str().size() >= 256, "a command that fits is run");
    if (isWhole && wordsOf(command.str()).size() > 1) // a cut command ends with the beginning of the word
        xasFuzzRequire(text.starts_with(wordsOf(command.str())[1]), "a cut word", command.str());
    XasShellCommand quoted{"/bin/tool "};
    requireWords(quoted.quoted(text).str(), {"/bin/tool", text});
}

void makeAccounts(const XasMessage &msg)
{
    const auto user = xasReadPayload<XasUserPayload>(msg).user;
    const std::string login = xasFieldString(user.login);
    const std::string password = xasFieldString(user.password);
    if (!xasIsValidUser(user))
        return;
    xasFuzzRequire(!login.starts_with('-') && login.find_first_of("/: \n") == std::string::npos &&
                       password.find_first_of(":\n") == std::string::npos,
                   "a valid user", login, password);
    const std::string uid = std::to_string(static_cast<int>(user.uid));
    const Words simple = {"/bin/adduser", "-D", "-H", "-u", uid, "-s", "/bin/cli", "-h", "/"};
    Words withPassword = simple;
    withPassword.insert(withPassword.end(), {"-p", password, login});
    Words without = simple;
    without.push_back(login);
    const Words administrator = {"/bin/adduser",
                                 "-D",
                                 "-H",
                                 "-u",
                                 uid,
                                 "-G",
                                 "root",
                                 "-s",
                                 "/bin/cli",
                                 "-g",
                                 "\"System Administrator\"",
                                 "-h",
                                 "/",
                                 "-p",
                                 password,
                                 login};
    requireWords(xasEditUserCommand(user).str(), password.empty() ? without : withPassword);
    requireWords(xasPasswordUserCommand(user).str(), withPassword);
    if (login != "sysadmin")
        return requireWords(xasAddUserCommand(user).str(), password.empty() ? without : withPassword);
    const std::string line = xasAddUserCommand(user).str();
    const std::string comment = "\"System Administrator\"";
    const std::size_t at = line.find(comment);
    xasFuzzRequire(at != std::string::npos, "the administrator's comment", line);
    std::string plain = line;
    plain.replace(at, comment.size(), "'" + comment + "'");
    requireWords(plain, administrator);
}

/** Every line of the filter's script is one command of iptables on the set's chain. */
void requireFilterLines(const XasFilterLines &lines, const std::string &chain)
{
    std::string_view rest = lines.text;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        xasFuzzRequire(rest.size() > line.size(), "a whole line", rest);
        rest.remove_prefix(line.size() + 1);
        xasFuzzRequire(line.size() < XAS_FILTER_COMMAND_SIZE, "a line that fits", line);
        const Words words = wordsOf(line, "${}!");
        xasFuzzRequire(words.size() >= 3 && words[0] == "${IPTABLES}" && words[1].size() == 2 &&
                           words[1][0] == '-',
                       "a command of the filter", line);
        xasFuzzRequire(words[2] == chain, "the set's chain", line, chain);
    }
}

std::string chainOf(const XasMessage &msg)
{
    return xasFieldString(xasReadPayload<XasIpFilterSetPayload>(msg).name);
}

void makeFilter(const XasMessage &msg)
{
    const auto set = xasReadPayload<XasIpFilterSetPayload>(msg);
    if (!xasFindUnfitText(xasFindSetting(XMSG_IPFILTER_SET)->texts, msg).empty())
        return;
    requireFilterLines(xasIPFilterRemovalText(set), chainOf(msg));
    if (set.action != XAS_FILTER_CREATE && set.action != XAS_FILTER_REPLACE)
        return;
    const XasFilterLines rules = xasIPFilterRulesText(set, set.action == XAS_FILTER_CREATE);
    requireFilterLines(rules, chainOf(msg));
    std::size_t expected = set.action == XAS_FILTER_CREATE ? 2 : 1; // the chain is made, and emptied
    for (std::uint32_t i = 0; i < std::min<std::uint32_t>(set.num_rules, 65); ++i) {
        const XasIpFilterRule &rule = set.rules[i];
        std::string ports{xasFieldText(rule.portrange)};
        const bool hasPorts =
            rule.protocol != 1 && rule.protocol != 6 && rule.protocol != 7 && !ports.empty();
        std::size_t lines = hasPorts ? 0 : 1;
        char *state = nullptr;
        for (char *port = ::strtok_r(ports.data(), ",", &state); hasPorts && port != nullptr;
             port = ::strtok_r(nullptr, ",", &state))
            ++lines;
        expected += rule.protocol == 0 ? 0 : lines;
    }
    const auto made = static_cast<std::size_t>(std::ranges::count(rules.text, '\n'));
    xasFuzzRequire(!rules.complete || made == expected, "a line for each port of each rule", rules.text);
}

struct Maker {
    XasMsgType msgtype;
    void (*make)(const XasMessage &msg);
};

constexpr std::array MAKERS = {Maker{XMSG_TIMEZONE, quoteWord}, Maker{XMSG_USER, makeAccounts},
                               Maker{XMSG_IPFILTER_SET, makeFilter}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    XasFuzzInput input{data, size};
    const Maker &maker = MAKERS[input.byte() % MAKERS.size()];
    xasFuzzLog().clear();
    maker.make(input.record(maker.msgtype));
    return 0;
}
