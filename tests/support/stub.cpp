#include "support/stub.h"

#include <thread>

namespace {

/** Behind each word and, as a word of its own, behind each call. */
constexpr char WORD_END = '\x1f';
constexpr char CALL_END = '\x1e';

std::vector<std::string> split(const std::string &text, char end)
{
    std::vector<std::string> parts;
    std::istringstream in{text};
    for (std::string part; std::getline(in, part, end);)
        parts.push_back(part);
    return parts;
}

} // namespace

void XasStubs::put(const std::string &path, int exitStatus, std::string_view body)
{
    std::string script = "#!/bin/sh\n";
    script +=
        "printf '%s\\037' \"$0\" \"$@\" '" + std::string{CALL_END} + "' >> " + dir.path(".calls") + "\n";
    script += std::string{body} + "\nexit " + std::to_string(exitStatus) + "\n";
    // Complete before it can be called: a program that is open for writing cannot be executed.
    xasWriteFile(path + ".new", script, 0755);
    if (::rename((path + ".new").c_str(), path.c_str()) != 0)
        ADD_FAILURE() << "cannot put a program at " << path;
}

std::string XasStubs::make(std::string_view name, int exitStatus, std::string_view body)
{
    put(dir.path(name), exitStatus, body);
    return dir.path(name);
}

std::vector<std::vector<std::string>> XasStubs::calls() const
{
    std::vector<std::vector<std::string>> found;
    if (!dir.has(".calls"))
        return found;
    const std::string call_end = std::string{CALL_END} + WORD_END;
    std::string notes = dir.read(".calls");
    for (std::size_t end = notes.find(call_end); end != std::string::npos; end = notes.find(call_end)) {
        found.push_back(split(notes.substr(0, end), WORD_END));
        notes.erase(0, end + call_end.size());
    }
    return found;
}

std::vector<std::string> XasStubs::lines() const
{
    std::vector<std::string> found;
    for (const auto &words : calls()) {
        std::string &line = found.emplace_back();
        for (const std::string &word : words)
            line += (line.empty() ? "" : " ") + word;
    }
    return found;
}

bool XasStubs::await(std::size_t count, std::chrono::milliseconds atMost) const
{
    return xasEventually([&] { return calls().size() >= count; }, atMost);
}

void XasStubs::forget()
{
    std::remove(dir.path(".calls").c_str());
}

void xasPause(std::chrono::milliseconds duration)
{
    std::this_thread::sleep_for(duration);
}
