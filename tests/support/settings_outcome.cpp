#include "support/settings_outcome.h"

namespace {

/** Walks through a setting's steps as the table has them, and notes what is seen on the way. */
class Walk {
  public:
    explicit Walk(const XasSituation &found) : situation{found} { outcome.files = found.files; }

    XasOutcome toItsEnd()
    {
        for (const XasExpectedBatch &batch : course()) {
            const auto each = [&](const std::vector<std::string> &types,
                                  bool (Walk::*step)(const XasExpectedFile &)) {
                return std::ranges::all_of(types, [&](const std::string &type) {
                    return (this->*step)(situation.setting.file(type));
                });
            };
            if (!each(batch.lookedUp, &Walk::lookUp) || !each(batch.changed, &Walk::edit))
                break;
        }
        return std::move(outcome);
    }

  private:
    [[nodiscard]] std::vector<XasExpectedBatch> course() const
    {
        std::vector<XasExpectedBatch> batches = situation.setting.course;
        if (batches.empty()) {
            for (const XasExpectedFile &file : situation.setting.files)
                batches.push_back({{file.type}, {file.type}});
        }
        return batches;
    }

    /** False when the message ends here; so does `edit`. */
    bool lookUp(const XasExpectedFile &file)
    {
        if (!fails(file, XasFailure::notInList) || file.texts.missing.empty())
            return true;
        log(file.texts.missing);
        reply(1, file.texts.missingReason);
        outcome.success = false;
        restore(file.restoredIfMissing);
        return false;
    }

    bool edit(const XasExpectedFile &file)
    {
        if (fails(file, XasFailure::notInList))
            return true;
        for (unsigned i = 0; i < file.orderReads && isOrderMissing(); ++i)
            logPath("Error opening config file \"%s\"", XAS_ORDER_FILE);
        if (file.orderReads != 0 && isOrderUnreadable()) {
            for (unsigned i = 0; i < file.orderReads; ++i)
                logPath("Error reading config file \"%s\"", XAS_ORDER_FILE);
            return true;
        }
        if (change(file))
            return true;
        logPath(file.texts.edit, situation.path(file));
        outcome.success = outcome.success && file.harmless;
        restore(file.restoredIfEditFails);
        return file.goesOn || situation.setting.goesOn;
    }

    /** Gives a file its new content; false when that fails. */
    bool change(const XasExpectedFile &file)
    {
        if (isModelUnusable(file))
            return false;
        switch (file.way) {
        case XasFileWay::edited:
        case XasFileWay::regenerated:
            return replace(file);
        case XasFileWay::generated:
            return generate(file);
        default:
            files(file) = "-> " + withPath(file.newText, situation.directory);
            return true;
        }
    }

    bool isModelUnusable(const XasExpectedFile &file)
    {
        if (file.model.empty())
            return false;
        const XasExpectedFile &model = situation.setting.file(file.model);
        if (fails(model, XasFailure::notOnDisk))
            reply(2, model.texts.openReason);
        return fails(model, XasFailure::notOnDisk) || fails(model, XasFailure::isEmpty);
    }

    bool generate(const XasExpectedFile &file)
    {
        if (fails(file, XasFailure::notOpened)) {
            if (file.texts.openReason.empty())
                logPath("Error opening config file \"%s\"", situation.path(file));
            reply(2, file.texts.openReason);
            return false;
        }
        if (fails(file, XasFailure::notWritten)) {
            if (file.texts.saveReason.empty())
                log("Error printing line to file");
            reply(3, file.texts.saveReason);
            return false;
        }
        const bool isPam = file.orderReads != 0; // it is everybody's whatever it was
        const std::string mode = isPam ? "0644 " : modeOf(file);
        files(file) = mode + file.newText;
        return true;
    }

    bool replace(const XasExpectedFile &file)
    {
        const std::string path = situation.path(file);
        const bool isThere = outcome.files.contains(name(file));
        const std::string newFile = modeOf(file) + file.newText;
        if (fails(file, XasFailure::notOnDisk) && file.way == XasFileWay::edited)
            return notOpened("Error opening config file \"%s\"", path, file);
        if (fails(file, XasFailure::notOpened))
            return notOpened("Error opening output file \"%s\"", path + ".tmp", file);
        if (fails(file, XasFailure::notRead)) {
            outcome.files[name(file) + ".tmp"] = "0600 "; // as what is at the path
            return notOpened("Error reading config file \"%s\"", path, file);
        }
        if (fails(file, XasFailure::notWritten))
            return notWritten(file);
        if (fails(file, XasFailure::isDirectory))
            return notSaved("Error renaming new config file \"%s\"", path, file);
        if (fails(file, XasFailure::notRenamed)) {
            outcome.files[name(file) + ".old"] = files(file);
            outcome.files[name(file) + ".tmp"] = newFile;
            return notSaved("Error renaming new config file \"%s\"", path, file);
        }
        outcome.files.erase(name(file) + ".tmp");
        if (fails(file, XasFailure::notBackedUp)) {
            files(file) = newFile;
            return notSaved("Error renaming old config file \"%s\"", path, file);
        }
        if (isThere)
            outcome.files[name(file) + ".old"] = files(file);
        files(file) = newFile;
        return true;
    }

    bool notOpened(const char *text, const std::string &path, const XasExpectedFile &file)
    {
        logPath(text, path);
        reply(2, file.texts.openReason);
        return false;
    }

    bool notSaved(const char *text, const std::string &path, const XasExpectedFile &file)
    {
        logPath(text, path);
        reply(3, file.texts.saveReason);
        return false;
    }

    bool notWritten(const XasExpectedFile &file)
    {
        log("Error printing line to file");
        log(file.texts.write);
        reply(3, file.texts.write.empty() ? file.texts.saveReason : file.writeReason);
        return false;
    }

    void restore(const std::vector<std::string> &types)
    {
        for (const std::string &type : types) {
            const XasExpectedFile &file = situation.setting.file(type);
            const auto backup = outcome.files.find(name(file) + ".old");
            if (!situation.canRestore || backup == outcome.files.end() || backup->second == "directory") {
                logPath("Error restoring old config file \"%s\"", situation.path(file));
                continue;
            }
            files(file) = backup->second;
            outcome.files.erase(backup);
        }
    }

    [[nodiscard]] bool fails(const XasExpectedFile &file, XasFailure how) const
    {
        return situation.fails(file, how);
    }

    [[nodiscard]] bool isOrderUnreadable() const
    {
        const XasExpectedFile *failing = situation.failing;
        return situation.failure == XasFailure::notRead && failing != nullptr &&
               failing->path == XAS_ORDER_FILE;
    }

    [[nodiscard]] bool isOrderMissing() const { return !outcome.files.contains("r58authconfig"); }

    static std::string name(const XasExpectedFile &file) { return XasSituation::name(file); }

    std::string &files(const XasExpectedFile &file) { return outcome.files[name(file)]; }

    /** The mode of the new file, and a blank. */
    [[nodiscard]] std::string modeOf(const XasExpectedFile &file) const
    {
        if (file.secret)
            return "0600 ";
        const auto live = outcome.files.find(name(file));
        return live == outcome.files.end() ? "0644 " : live->second.substr(0, 5);
    }

    /** `text` with the path in the place of "%s". */
    static std::string withPath(std::string text, const std::string &path)
    {
        const std::size_t at = text.find("%s");
        return at == std::string::npos ? text : text.replace(at, 2, path);
    }

    void log(const std::string &text)
    {
        if (!text.empty())
            outcome.log.push_back(xasErrorLine(text + "\n"));
    }

    void logPath(const std::string &text, const std::string &path) { log(withPath(text, path)); }

    void reply(std::uint32_t rcode, const std::string &reason)
    {
        if (reason.empty())
            return;
        outcome.rcode = rcode;
        outcome.rstr = reason;
    }

    const XasSituation &situation;
    XasOutcome outcome;
};

} // namespace

bool XasSituation::fails(const XasExpectedFile &file, XasFailure how) const
{
    return how == failure && (failing == nullptr || failing == &file);
}

std::string XasSituation::path(const XasExpectedFile &file) const
{
    if (fails(file, XasFailure::notWritten))
        return fullDisk;
    if (fails(file, XasFailure::notOpened) && file.way == XasFileWay::generated)
        return directory + "/nowhere/" + file.type;
    return file.path.empty() ? directory + "/" + file.type : file.path;
}

std::string XasSituation::name(const XasExpectedFile &file)
{
    return file.path.empty() ? file.type : file.path.substr(file.path.rfind('/') + 1);
}

XasOutcome xasExpectedOutcome(const XasSituation &situation)
{
    return Walk{situation}.toItsEnd();
}
