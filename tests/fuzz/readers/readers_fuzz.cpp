/**
 * The readers of other programs' files, and the little functions of texts that everything is read with.
 *
 * An input: which reader, a value with its length (a key, a tag, a pattern), and the file's text. Each must
 * read what a second model with the C library's own functions reads.
 */
#include "auth/auth_order.h"
#include "auth/pam.h"
#include "config/web_hostname.h"
#include "core/pid_file.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/config_file.h"
#include "files/template.h"
#include "model/models.h"
#include "support/fuzz.h"
#include "wire/text_rule.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

/** "key = number", the number being what stands from the first to the last digit of the second piece. */
bool modelNumber(const std::string &key, const std::string &line, std::uint32_t &value)
{
    const char *rest = line.c_str() + std::strspn(line.c_str(), " \t\n\v\f\r");
    if (std::strncmp(rest, key.c_str(), key.size()) != 0)
        return false;
    std::string piece = rest;
    char *state = nullptr;
    ::strtok_r(piece.data(), "=", &state);
    const char *second = ::strtok_r(nullptr, "=", &state);
    if (second == nullptr)
        return false;
    std::string digits = second;
    digits.erase(0, std::min(digits.find_first_of("0123456789"), digits.size()));
    digits.resize(digits.find_last_of("0123456789") + 1);
    if (digits.empty())
        return false;
    value = static_cast<std::uint32_t>(std::atoi(digits.c_str()));
    return true;
}

void readOrder(const std::string & /*value*/, const std::string &text)
{
    const std::array<const char *, 8> keys = {"LOCAL",   "NIS",      "LDAP",   "RADIUS",
                                              "SECURID", "KERBEROS", "TACACS", "FIRSTRSP"};
    std::array<std::uint32_t, 8> expected{};
    for (std::string line : xasModelLines(text)) {
        line.resize(std::strcspn(line.c_str(), "\r\n"));
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (modelNumber(keys[i], line, expected[i]))
                break;
        }
    }
    XasAuthOrder order{};
    xasParseAuthOrder(text, order);
    xasFuzzRequire(std::memcmp(&order, expected.data(), sizeof order) == 0, "the order", text);
}

void readNumber(const std::string &key, const std::string &line)
{
    std::uint32_t value = 7;
    std::uint32_t expected = 7;
    const bool isFound = xasGetCfgNumber(key.c_str(), line.c_str(), &value) != 0;
    xasFuzzRequire(isFound == modelNumber(key.c_str(), line.c_str(), expected) && value == expected,
                   "a number of a key", key, line);
}

void readWebHostname(const std::string & /*value*/, const std::string &text)
{
    const std::string name = xasWebHostname(text);
    xasFuzzRequire(name == xasModelWebHostname(text), "the web front end's host name", text, name);
}

/** The last line with "TAG = " counts; its last character goes. */
void readSetting(const std::string &tag, const std::string &text)
{
    const std::string key = tag.c_str();
    std::string expected = "?";
    bool isExpected = false;
    for (const std::string &line : xasModelLines(text)) {
        const char *at = std::strstr(line.c_str(), (key + " = ").c_str());
        if (at == nullptr)
            continue;
        const char *equals = std::strchr(at, '=');
        expected = equals + std::min<std::size_t>(2, std::strlen(equals));
        expected.resize(expected.size() - (expected.empty() ? 0 : 1));
        isExpected = true;
    }
    std::string value = "?";
    xasFuzzRequire(xasFindConfData(text, key, value) == isExpected && value == expected, "a module's setting",
                   text, value);
}

void replaceTexts(const std::string &value, const std::string &text)
{
    const std::string pattern = std::string{value.c_str()}.substr(0, value.size() / 2);
    const std::string by = value.substr(std::min(pattern.size(), value.size())).c_str();
    std::string replaced = text;
    if (xasReplaceString(replaced, pattern.c_str(), by.c_str()) != 0)
        return xasFuzzRequire(pattern.empty() && replaced == text, "nothing to replace");
    std::string expected;
    const std::string old = text.substr(0, 5000);
    for (std::size_t at = 0; at < old.size();) {
        const bool isThere = old.compare(at, pattern.size(), pattern) == 0;
        expected += isThere ? by : old.substr(at, 1);
        at += isThere ? pattern.size() : 1;
    }
    xasFuzzRequire(replaced == expected, "texts replaced", replaced, expected);
}

/** A pid file without a name on any file system; now and then it holds the pid of this process, the server.
 */
void readPidFile(const std::string &value, const std::string &text)
{
    constexpr const char *SERVER = "fuzzed-server";
    static const int fd = ::memfd_create("pid", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(fd);
    ::prctl(PR_SET_NAME, SERVER);
    const bool isOwn = value.size() % 4 == 1;
    const std::string content =
        isOwn ? std::to_string(::getpid()) + text.substr(0, text.find_first_of("0123456789")) : text;
    if (::ftruncate(fd, 0) != 0 || ::pwrite(fd, content.data(), content.size(), 0) < 0)
        std::abort();
    const pid_t pid = xasRunningServer(path, isOwn ? SERVER : "smbd");
    xasFuzzRequire(pid == 0 || (pid > 1 && pid == std::atoi(content.c_str())), "the pid of a file", content);
    xasFuzzRequire(!isOwn || pid == ::getpid(), "a server that runs", content);
}

bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           (c != '\0' && std::strchr("_-.,:/@%+=", c) != nullptr);
}

/** No text that a rule lets pass holds what the rule is there to keep out. */
void checkRules(const std::string & /*value*/, const std::string &text)
{
    using enum XasTextRule;
    const bool hasControl = std::ranges::any_of(text, [](unsigned char c) { return c < 32 || c == 127; });
    const auto holds = [&](const char *any) {
        return text.find_first_of(any) != std::string::npos;
    };
    const bool isWord = std::ranges::all_of(text, isPlain) && !text.starts_with('-');
    const bool hasName =
        text.empty() || std::ranges::any_of(text, [](unsigned char c) { return std::isalnum(c); });
    const bool climbs = ("/" + text + "/").find("/../") != std::string::npos;
    const std::array<bool, 10> expected = {!hasControl,
                                           isWord,
                                           isWord && hasName,
                                           !hasControl && !text.starts_with('-'),
                                           !hasControl && !holds(" #"),
                                           !hasControl && !holds(" #[]"),
                                           !hasControl && !holds("\""),
                                           !hasControl && !holds(":"),
                                           !hasControl && !climbs,
                                           !holds("\n\r")};
    for (std::size_t rule = 0; rule < expected.size(); ++rule)
        xasFuzzRequire(xasFitsRule(static_cast<XasTextRule>(rule), text) == expected[rule], "a rule of texts",
                       std::to_string(rule), text);
}

void cutLines(const std::string & /*value*/, const std::string &text)
{
    std::size_t count = 0;
    const std::vector<std::string> lines = xasModelLines(text);
    xasForEachLine(text, [&](std::string_view line) {
        xasFuzzRequire(count < lines.size() && lines[count] == line, "the lines of a text", text, line);
        xasFuzzRequire(xasFirstToken(line, " =\t") == xasModelToken(lines[count], " =\t"), "a first token",
                       line);
        ++count;
    });
    xasFuzzRequire(count == lines.size(), "the lines of a text", text);
    const std::string_view trimmed = xasTrimString(text);
    const std::size_t first = text.find_first_not_of(" \t");
    const std::string expected =
        first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") + 1 - first);
    xasFuzzRequire(trimmed == expected, "a trimmed text", text, trimmed);
}

constexpr std::array READERS = {readOrder,    readNumber,  readWebHostname, readSetting,
                                replaceTexts, readPidFile, checkRules,      cutLines};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    XasFuzzInput input{data, size};
    const auto read = READERS[input.byte() % READERS.size()];
    const std::string value{input.take(input.byte())};
    const std::string text{input.rest()};
    xasFuzzLog().clear();
    read(value, text);
    return 0;
}
