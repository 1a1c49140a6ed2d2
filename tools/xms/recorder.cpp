#include "xms/recorder.h"

#include "xms/asking.h"
#include "xms/feed.h"
#include "xms/recording.h"
#include "xms/secrets.h"
#include "xms/watched_files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
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

/** An empty file for its owner only, one that was there included; a recording may hold secrets. */
XmsDescriptor createFile(const std::string &path)
{
    if (path == "-")
        return XmsDescriptor{dup(STDOUT_FILENO)};
    XmsDescriptor file{open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)};
    if (file.get() < 0 || !makePrivate(file.get()))
        throw XmsError{XmsExit::usage, "cannot write " + path + ": " + std::strerror(errno)};
    return file;
}

struct Recorder {
    XmsDescriptor file;
    bool withSecrets;
    std::optional<XmsWatchedFiles> files;
    XmsKnownSecrets secrets;
};

void writeLine(const Recorder &recorder, const XmsJson &line)
{
    const std::string text = xmsJsonLine(line) + "\n";
    if (write(recorder.file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw XmsError{XmsExit::usage, std::string{"cannot write the recording: "} + std::strerror(errno)};
}

void writeChanges(Recorder &recorder)
{
    if (!recorder.files)
        return;
    for (const XmsFileChange &change : recorder.files->takeChanges())
        writeLine(recorder,
                  xmsChangeLine(recorder.withSecrets ? change : xmsMaskedChange(change, recorder.secrets)));
}

void writeEvent(Recorder &recorder, const XmsTraffic &traffic)
{
    recorder.secrets.learn(traffic);
    writeLine(recorder, xmsRecordingLine(traffic, recorder.withSecrets));
    if (!traffic.toDaemon)
        writeChanges(recorder);
}

void writeEvent(Recorder &recorder, const XmsLogLine &line)
{
    writeLine(recorder,
              xmsLogJson({line.timeMs, recorder.withSecrets ? line.text : recorder.secrets.hide(line.text)}));
}

/** Secrets that were set before the recording stand in the files, too. */
XmsKnownSecrets storedSecrets(const std::string &socket)
{
    XmsKnownSecrets secrets;
    for (const XasMessage &record : xmsAskAllStored(xmsConnect(socket)))
        secrets.learn(record);
    return secrets;
}

} // namespace

XmsExit xmsRecordCommand(const XmsOptions &options, const XmsRecordOptions &record)
{
    const XmsDescriptor signals = xmsCatchEnd();
    XmsFeed feed{options.socket, options.logs, &signals};
    Recorder recorder{.file = createFile(record.path),
                      .withSecrets = options.secrets,
                      .files = std::nullopt,
                      .secrets = storedSecrets(options.socket)};
    if (record.files)
        recorder.files.emplace(record.list);
    writeLine(recorder, xmsRecordingStart());
    while (const auto events = feed.next()) {
        for (const XmsEvent &event : *events)
            std::visit([&](const auto &each) { writeEvent(recorder, each); }, event);
    }
    writeChanges(recorder);
    return XmsExit::applied;
}
