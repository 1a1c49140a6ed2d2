// Messages of all types in a mix, through the dispatcher on a whole machine (world/machine.h), for days of
// its time: daemons die at random, logs are copied and rotated when it is time. Memory, descriptors, children
// and the volume of the log stay level, and the files are in the end those of a fresh machine that is sent
// the last message of each type alone.
#include "core/log_maintenance.h"
#include "soak/mix.h"
#include "support/fuzz.h"
#include "support/root.h"
#include "world/machine.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

namespace {

constexpr unsigned SEED = 20051013;
constexpr unsigned LOOK_EVERY = 10;

struct Levels {
    std::size_t memory;
    std::uint64_t logLines;
    std::uint64_t executed;
};

Levels levelsNow(XasMachine &machine)
{
    const auto info = ::mallinfo2();
    return {info.uordblks + info.hblkhd, xasFuzzLogLines(), machine.executed};
}

/** The messages that the files are made of: of each key the last, in their order. Single users count since
 * the last list of them. */
class LastMessages {
  public:
    void note(XasMixedMessage message)
    {
        const bool isSingle = message.msg.xH.msgtype == XMSG_USER;
        if (message.msg.xH.msgtype == XMSG_LOCALUSERS)
            std::erase_if(messages, [](const auto &m) { return m.msg.xH.msgtype == XMSG_USER; });
        if (!isSingle)
            std::erase_if(messages, [&](const auto &m) { return m.key == message.key; });
        messages.push_back(std::move(message));
    }
    [[nodiscard]] const std::vector<XasMixedMessage> &all() const { return messages; }

  private:
    std::vector<XasMixedMessage> messages;
};

void dieSometimes(XasMachine &machine, XasMix &mix)
{
    const std::vector<pid_t> living = xasLivingProcesses();
    if (living.empty() || mix.below(4) != 0)
        return;
    const pid_t pid = living[mix.below(static_cast<std::uint32_t>(living.size()))];
    const int status = mix.below(2) == 0 ? 11 : static_cast<int>(mix.below(256)) << 8;
    machine.at(machine.now + std::chrono::milliseconds{mix.below(2000)},
               [pid, status] { xasEndProcess(pid, status); });
}

void sendOne(XasMachine &machine, const XasMixedMessage &message)
{
    XasMessage msg = message.msg;
    msg.xH.id = 77;
    machine.ran.clear();
    xasFuzzLog().clear();
    machine.process(msg, message.users);
}

/** Files whose content the last messages alone decide: no backups, and the ports of listed users alone. */
XasFiles decidedFiles(XasMachine &machine)
{
    machine.idle(std::chrono::seconds{3});
    XasFiles files = XasMachine::files();
    std::erase_if(files, [&](const auto &file) {
        const std::string &path = file.first;
        const bool isPorts = path.starts_with("/etc/zel/") && path.ends_with(".conf");
        const std::string login = isPorts ? path.substr(9, path.size() - 14) : "";
        const bool isEmptyList = path == "/etc/.lusers" && file.second.empty(); // is none, and none is empty
        return isEmptyList || path.ends_with(".old") || path.starts_with("/www/") ||
               (isPorts && !machine.accounts.contains(login));
    });
    return files;
}

std::size_t compare(const XasFiles &files, const XasFiles &fresh)
{
    std::size_t differences = 0;
    for (const auto &[path, content] : fresh) {
        const auto found = files.find(path);
        if (found != files.end() && found->second == content)
            continue;
        ++differences;
        std::printf("%s differs:\n%s---- of a fresh daemon:\n%s----\n", path.c_str(),
                    found == files.end() ? "(none)\n" : found->second.c_str(), content.c_str());
    }
    for (const auto &[path, content] : files) {
        // The ports of a user who was removed stay; a new password makes him an account again, but no ports.
        if (!fresh.contains(path) && !path.starts_with("/etc/zel/")) {
            ++differences;
            std::printf("%s is not there of a fresh daemon\n", path.c_str());
        }
    }
    return differences;
}

/** True when a level is as high in the end as in the beginning, or nearly so. */
bool isLevel(const char *what, double begin, double end, double more)
{
    std::printf("%-28s %12.2f %12.2f\n", what, begin, end);
    return end <= begin * 1.1 + more && end + more >= begin * 0.9;
}

int soak(unsigned long count)
{
    XasMachine &machine = xasTheMachine();
    machine.reset();
    ::alarm(XAS_ALARM_PERIOD);
    XasMix mix{SEED};
    LastMessages last;
    const XasMixedMessage first = mix.first();
    sendOne(machine, first);
    last.note(first);
    const auto started = std::chrono::steady_clock::now();
    const unsigned long tenth = std::max(count / 10, 1UL);
    Levels
        at[4]{}; // at the end of the first and the second tenth, and at the beginning and the end of the last
    for (unsigned long i = 1; i <= count; ++i) {
        dieSometimes(machine, mix);
        const XasMixedMessage message = mix.next();
        sendOne(machine, message);
        last.note(message);
        machine.now += std::chrono::milliseconds{mix.below(1000)};
        if (i % LOOK_EVERY == 0)
            machine.requireOrder();
        const unsigned long places[] = {tenth, 2 * tenth, count - tenth, count};
        for (std::size_t place = 0; place < 4; ++place) {
            if (i == places[place])
                at[place] = levelsNow(machine);
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
    const double days = std::chrono::duration<double>(machine.now).count() / 86400;
    std::printf(
        "%lu messages, %.2f days of the machine's time in %.0f s; %lu programs run, %zu daemons alive\n",
        count, days, seconds, static_cast<unsigned long>(machine.executed), xasLivingProcesses().size());
    std::printf("%lu daemons were started while they ran\n",
                static_cast<unsigned long>(machine.startedTwice));
    std::printf("%-28s %12s %12s\n", "", "second tenth", "last tenth");
    const auto each = static_cast<double>(tenth);
    bool isFine = isLevel("memory in use, bytes", static_cast<double>(at[1].memory),
                          static_cast<double>(at[3].memory), 65536);
    isFine &= isLevel("log lines each message", static_cast<double>(at[1].logLines - at[0].logLines) / each,
                      static_cast<double>(at[3].logLines - at[2].logLines) / each, 0.5);
    isFine &=
        isLevel("programs run each message", static_cast<double>(at[1].executed - at[0].executed) / each,
                static_cast<double>(at[3].executed - at[2].executed) / each, 0.5);
    const XasFiles files = decidedFiles(machine);
    machine.reset();
    sendOne(machine, first);
    for (const XasMixedMessage &message : last.all())
        sendOne(machine, message);
    const std::size_t differences = compare(files, decidedFiles(machine));
    std::printf("%zu files, %zu differ from those after the last %zu messages alone\n", files.size(),
                differences, last.all().size());
    return isFine && differences == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (const auto status = xasEnterPrivateRoot(argc, argv))
        return *status;
    xasSetStackBase(__builtin_frame_address(0));
    return soak(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000);
}
