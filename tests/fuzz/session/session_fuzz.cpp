/**
 * A session: messages, daemons that end, scripts that fail, alarms, links, queues that are full or gone,
 * other people's files, hours that pass, all in the order that the input tells. Besides what the machine
 * requires, it is in order after each step (XasMachine::requireOrder).
 */
#include "core/link_watch.h"
#include "support/fuzz.h"
#include "support/root.h"
#include "world/machine.h"

#include <array>
#include <csignal>
#include <cstdlib>

namespace {

constexpr unsigned STEPS = 24;

constexpr std::array FILES = {
    "/etc/hosts",    "/etc/sysconfig/network", "/etc/sysconfig/r58authconfig", "/etc/nsswitch.conf",
    "/etc/ntp.conf", "/r58/store/XMSG_ETH",    "/r58/store/XMSG_FIREWALL",     "/etc/.lusers"};

void sendMessage(XasMachine &machine, XasFuzzInput &in)
{
    const std::uint32_t msgtype = in.byte() % 70;
    XasMessage msg = in.record(msgtype);
    msg.xH.id = 77;
    std::string users;
    if (msgtype == XMSG_LOCALUSERS) {
        msg.payload[40] &= std::byte{3}; // the number of users
        msg.payload[41] = {};
        users = in.take(120 + std::to_integer<std::size_t>(msg.payload[40]) * 224);
        users.resize(120 + std::to_integer<std::size_t>(msg.payload[40]) * 224);
    }
    machine.process(msg, users);
}

int waitStatus(std::uint8_t how)
{
    return how >= 240 ? how - 230 : how << 8;
}

/** Some time from now on. */
void endOne(XasMachine &machine, XasFuzzInput &in)
{
    const std::uint8_t which = in.byte();
    const int status = waitStatus(in.byte());
    machine.at(machine.now + std::chrono::milliseconds{in.byte() * 10}, [which, status] {
        const std::vector<pid_t> living = xasLivingProcesses();
        if (!living.empty())
            xasEndProcess(living[which % living.size()], status);
    });
}

void loseQueues(XasMachine &machine, XasFuzzInput &in)
{
    machine.queuesThere = false;
    machine.at(machine.now + std::chrono::milliseconds{in.byte() * 20},
               [&machine] { machine.queuesThere = true; });
    machine.idle(7s);
}

void changeLinks(XasMachine &machine, XasFuzzInput &in)
{
    const std::uint8_t up = in.byte();
    machine.links[0] = (up & 1) != 0;
    machine.links[1] = (up & 2) != 0;
    machine.idle(4s);
}

void failNext(XasMachine &machine, XasFuzzInput &in)
{
    for (std::uint8_t count = in.byte() % 6; count > 0; --count)
        machine.exits.push_back(waitStatus(in.byte()));
}

void letTermPass(XasMachine & /*machine*/, XasFuzzInput &in)
{
    const std::vector<pid_t> living = xasLivingProcesses();
    const std::uint8_t which = in.byte();
    if (!living.empty())
        xasIgnoreNextTerm(living[which % living.size()]);
}

void changeFile(XasMachine & /*machine*/, XasFuzzInput &in)
{
    const std::uint8_t file = in.byte();
    XasMachine::write(FILES[file % FILES.size()], in.text());
}

void raiseSignal(XasMachine &machine, XasFuzzInput &in)
{
    const int signal = in.byte() % 2 == 0 ? SIGALRM : SIGHUP;
    machine.at(machine.now + std::chrono::milliseconds{in.byte()}, [signal] { ::raise(signal); });
}

constexpr std::array<void (*)(XasMachine &, XasFuzzInput &), 14> STEP_KINDS = {
    sendMessage,
    sendMessage,
    sendMessage,
    sendMessage,
    endOne,
    endOne,
    [](XasMachine &machine, XasFuzzInput &in) { machine.idle(std::chrono::milliseconds{in.byte() * 20}); },
    [](XasMachine &machine, XasFuzzInput &in) { machine.now += std::chrono::seconds{in.word()}; },
    raiseSignal,
    failNext,
    changeLinks,
    loseQueues,
    changeFile,
    letTermPass,
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    if (const auto status = xasEnterPrivateRoot(*argc, *argv))
        std::exit(*status);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    xasSetStackBase(__builtin_frame_address(0));
    XasMachine &machine = xasTheMachine();
    machine.reset();
    XasFuzzInput in{data, size};
    for (unsigned step = 0; step < STEPS && !in.isEmpty(); ++step) {
        const std::uint8_t kind = in.byte();
        if (kind % 16 == 15)
            machine.fullFor = in.byte() % 4;
        else
            STEP_KINDS[kind % STEP_KINDS.size()](machine, in);
        machine.requireOrder();
    }
    return 0;
}
