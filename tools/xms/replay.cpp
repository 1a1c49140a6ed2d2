#include "xms/replay.h"
#include "wire/reply_message.h"

#include "xms/asking.h"
#include "xms/recording.h"
#include "xms/setting.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** Closes a file to others and empties it; a pipe or a device is written as it is. */
bool makePrivate(int file)
{
    struct stat status {};
    if (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return true;
    return fchmod(file, 0600) == 0 && ftruncate(file, 0) == 0;
}

/** An empty file for its owner only, one that was there included; a recording holds secrets. */
XmsDescriptor createFile(const std::string &path)
{
    if (path == "-")
        return XmsDescriptor{dup(STDOUT_FILENO)};
    XmsDescriptor file{open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)};
    if (file.get() < 0 || !makePrivate(file.get()))
        throw XmsError{XmsExit::usage, "cannot write " + path + ": " + std::strerror(errno)};
    return file;
}

void writeLine(const XmsDescriptor &file, const XmsJson &line)
{
    const std::string text = xmsJsonLine(line) + "\n";
    if (write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw XmsError{XmsExit::usage, std::string{"cannot write the recording: "} + std::strerror(errno)};
}

/** Reads what the server tells next; false once it has ended or, with everything read, a signal ends us. */
bool readMore(const XmsDescriptor &server, const XmsDescriptor &signals, std::string &buffer)
{
    std::array<pollfd, 2> waits = {{{server.get(), POLLIN, 0}, {signals.get(), POLLIN, 0}}};
    poll(waits.data(), waits.size(), -1);
    if (waits.front().revents == 0)
        return false;
    std::array<char, 16384> block;
    const ssize_t size = recv(server.get(), block.data(), block.size(), 0);
    buffer.append(block.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return size > 0;
}

std::vector<XmsRecordedSetting> readRecording(const std::string &path)
{
    std::ifstream file;
    auto settings = xmsRecordedSettings(xmsOpenInput(path, file), path);
    for (const XmsRecordedSetting &setting : settings)
        xmsRequireMatchingCount(setting.record, setting.users);
    return settings;
}

/** True unless the setting ended differently when it was recorded. */
bool isAsRecorded(const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    const XasReplyPayload &now = outcome.reply;
    return !setting.reply ||
           ((now.success != 0) == (setting.reply->success != 0) && now.rcode == setting.reply->rcode &&
            xasFieldText(now.rstr) == xasFieldText(setting.reply->rstr));
}

XmsJson replayedJson(const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    XmsJson json = xmsOutcomeJson(outcome);
    if (setting.reply) {
        json["recorded"] = {{"success", setting.reply->success != 0},
                            {"rcode", setting.reply->rcode},
                            {"rstr", xasFieldText(setting.reply->rstr)}};
        json["same"] = isAsRecorded(outcome, setting);
    }
    return json;
}

void print(const XmsOptions &options, const XmsOutcome &outcome, const XmsRecordedSetting &setting)
{
    std::string text = xmsOutcomeText(outcome, options.paint);
    if (!isAsRecorded(outcome, setting))
        text += "\n  " + xmsPainted(options.paint, XmsInk::bad, "recorded otherwise") + ": " +
                xmsReplyText(*setting.reply, options.paint);
    std::printf("%s\n", options.json ? xmsJsonLine(replayedJson(outcome, setting)).c_str() : text.c_str());
    std::fflush(stdout);
}

} // namespace

XmsExit xmsRecordCommand(const XmsOptions &options, const std::string &path)
{
    const XmsDescriptor signals = xmsCatchEnd();
    const XmsDescriptor server = xmsConnect(options.socket);
    std::string buffer;
    xmsAskToWatch(server, buffer);
    const XmsDescriptor file = createFile(path);
    writeLine(file, xmsRecordingStart());
    do {
        while (const auto line = xmsTakeLine(buffer))
            writeLine(file, xmsRecordingLine(xmsTrafficFrom(XmsJson::parse(*line))));
    } while (readMore(server, signals, buffer));
    return XmsExit::applied;
}

XmsExit xmsReplayCommand(const XmsOptions &options, const std::string &path, double timeoutSeconds)
{
    const auto settings = readRecording(path);
    const XmsDescriptor server = xmsConnect(options.socket);
    std::size_t others = 0;
    for (const XmsRecordedSetting &setting : settings) {
        const XmsOutcome outcome = xmsAskToSet(server, setting.record, setting.users, timeoutSeconds);
        print(options, outcome, setting);
        if (xmsOutcomeExit(outcome) == XmsExit::noServer)
            return XmsExit::noServer;
        others += isAsRecorded(outcome, setting) ? 0 : 1;
    }
    if (!options.json)
        std::printf("%zu settings replayed, %s\n", settings.size(),
                    others == 0 ? "all as recorded" : (std::to_string(others) + " not as recorded").c_str());
    return others == 0 ? XmsExit::applied : XmsExit::refused;
}
