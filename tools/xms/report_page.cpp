// The page of a report. Nothing in it runs, and nothing is loaded; filters are radio buttons that the style
// sees.
#include "xms/html.h"
#include "xms/report.h"
#include "xms/report_style.h"

#include "msg/type_names.h"
#include "wire/message_names.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <map>
#include <string_view>

namespace {

/** A page that has grown so large ends, and says what it left out. */
constexpr std::size_t PAGE_MAX = 900'000;

/** What is shown at most of a text, of a list, and of a list's bytes. */
constexpr std::size_t TEXT_MAX = 2'400;
constexpr std::size_t LINES_MAX = 300;
constexpr std::size_t LIST_MAX = 60'000;

constexpr std::array<const char *, 4> ENDS = {"applied", "refused", "unanswered", "event"};

const char *endOf(const XmsReportStep &step)
{
    return ENDS[static_cast<std::size_t>(step.end)];
}

std::string number(auto value)
{
    return std::to_string(value);
}

/** Types without a name go together. */
std::uint32_t kindOf(std::uint32_t msgtype)
{
    return xasMsgTypeName(msgtype).empty() ? 0 : msgtype;
}

std::string counted(std::size_t count, const std::string &one)
{
    return number(count) + " " + one + (count == 1 ? "" : "s");
}

std::string timeText(std::int64_t timeMs, const char *form)
{
    const auto seconds = static_cast<std::time_t>(timeMs / 1000);
    std::tm local{};
    std::array<char, 64> text{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(text.data(), text.size(), form, &local) == 0)
        return "?";
    return text.data();
}

std::string clockText(std::int64_t timeMs)
{
    const std::string ms = number(1000 + (timeMs % 1000 + 1000) % 1000);
    return timeText(timeMs, "%H:%M:%S") + "." + ms.substr(1);
}

std::string tookText(std::int64_t ms)
{
    return number(ms) + " ms";
}

std::string element(const std::string &name, const std::string &classes, const std::string &content)
{
    return "<" + name + (classes.empty() ? "" : " class=\"" + classes + "\"") + ">" + content + "</" + name +
           ">";
}

/** The part of a text that is shown of it. */
std::string shortened(std::string_view text)
{
    return text.size() <= TEXT_MAX ? xmsHtml(text) : xmsHtml(text.substr(0, TEXT_MAX)) + " ... and more";
}

std::string lineText(std::string_view line)
{
    const char *kind = line.starts_with("+")   ? "add"
                       : line.starts_with("-") ? "cut"
                       : line.starts_with(" ") ? ""
                                               : "at";
    return element("span", kind, line.size() <= 1 ? xmsHtml(line) + "&#8203;" : shortened(line));
}

/** Lines one below the other, the first of them. */
std::string linesText(const std::vector<std::string_view> &lines, bool isDifference)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(lines.size(), LINES_MAX) && text.size() < LIST_MAX; ++i)
        text += isDifference ? lineText(lines[i]) : element("span", "", shortened(lines[i]));
    if (lines.size() > LINES_MAX || text.size() >= LIST_MAX)
        text += element("span", "at", "... " + counted(lines.size(), "line") + " in all");
    return element("pre", "", text);
}

std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string logText(const std::vector<std::string> &log)
{
    if (log.empty())
        return {};
    return "<details open><summary>Log, " + counted(log.size(), "line") + "</summary>" +
           linesText({log.begin(), log.end()}, false) + "</details>\n";
}

std::string changeText(const XmsFileChange &change)
{
    return "<details open><summary>File <code>" + shortened(change.path) + "</code></summary>" +
           linesText(linesOf(change.difference), true) + "</details>\n";
}

std::string fieldsText(const XmsReportStep &step)
{
    std::string text;
    for (const auto &[name, value] : step.fields)
        text += text.size() >= LIST_MAX ? ""
                                        : "<dt>" + shortened(name) + "</dt><dd>" +
                                              (value.empty() ? "&#8203;" : shortened(value)) + "</dd>\n";
    return text.empty() ? ""
                        : "<details open><summary>" + counted(step.fields.size(), "field") +
                              "</summary><dl class=\"values\">\n" + text + "</dl></details>\n";
}

/** The line that a step begins with, above a bar for the time that it took. `slowest`: what a full bar is. */
std::string headText(const XmsReportStep &step, std::size_t at, std::int64_t slowest)
{
    std::string text = "<time class=\"soft\">" + clockText(step.timeMs) + "</time>\n<h3><a href=\"#s" +
                       number(at) + "\">" + xmsHtml(step.title) + "</a></h3>\n";
    if (!step.from.empty())
        text += element("span", "soft",
                        xmsHtml(step.from) + " #" + number(step.id) +
                            (step.answers == 0 ? "" : " to #" + number(step.answers)) +
                            (step.toDaemon ? " to xasd" : " from xasd")) +
                "\n";
    text += element("span", "end", endOf(step)) + "\n";
    if (step.tookMs)
        text += element("span", "", tookText(*step.tookMs)) + "\n";
    const std::int64_t part = slowest > 0 ? 100 * step.tookMs.value_or(0) / slowest : 0;
    return R"(<div class="head" style="--took: )" + number(part) + "%\">\n" + text + "</div>\n";
}

std::string reasonText(const XmsReportStep &step)
{
    if (step.end != XmsStepEnd::refused)
        return {};
    const std::string reason = step.reason.empty() ? "no reason given" : xmsHtml(step.reason);
    return element("p", "reason", "Code " + number(step.rcode) + ": " + reason) + "\n";
}

/** One message. */
std::string stepText(const XmsReportStep &step, std::size_t at, std::int64_t slowest)
{
    std::string text = "<li class=\"step " + std::string{endOf(step)} + " t" + number(kindOf(step.msgtype)) +
                       "\" id=\"s" + number(at) + "\">\n" + headText(step, at, slowest);
    text += reasonText(step) + fieldsText(step) + logText(step.log);
    for (const XmsFileChange &change : step.changes)
        text += text.size() < 2 * LIST_MAX ? changeText(change) : "";
    return text + "</li>\n";
}

// what stands above

struct Row {
    std::array<std::size_t, 4> ends{};
    std::size_t changes = 0;
    std::int64_t slowest = 0;
};

std::map<std::uint32_t, Row> rowsOf(const XmsReport &report)
{
    std::map<std::uint32_t, Row> rows;
    for (const XmsReportStep &step : report.steps) {
        Row &row = rows[kindOf(step.msgtype)];
        ++row.ends[static_cast<std::size_t>(step.end)];
        row.changes += step.changes.size();
        row.slowest = std::max(row.slowest, step.tookMs.value_or(0));
    }
    return rows;
}

std::string titleOf(std::uint32_t msgtype)
{
    return msgtype == 0 ? "others" : msgShortName(msgtype);
}

Row totalOf(const std::map<std::uint32_t, Row> &rows)
{
    Row total;
    for (const auto &[msgtype, row] : rows) {
        for (std::size_t end = 0; end < row.ends.size(); ++end)
            total.ends[end] += row.ends[end];
        total.changes += row.changes;
        total.slowest = std::max(total.slowest, row.slowest);
    }
    return total;
}

std::string countCell(std::size_t count)
{
    return element("td", "number", count == 0 ? "-" : number(count));
}

/** A row for each type; an outcome that there is none of has no column. */
std::string tableText(const std::map<std::uint32_t, Row> &rows)
{
    const Row total = totalOf(rows);
    const auto column = [](const std::string &title) {
        return R"(<th scope="col" class="number">)" + title + "</th>";
    };
    std::string text = "<tr><th scope=\"col\">type</th>";
    for (std::size_t end = 0; end < ENDS.size(); ++end)
        text += total.ends[end] == 0 ? "" : column(ENDS[end]);
    text += column("files") + column("longest") + "</tr>\n";
    for (const auto &[msgtype, row] : rows) {
        text += "<tr><th scope=\"row\">" + xmsHtml(titleOf(msgtype)) + "</th>";
        for (std::size_t end = 0; end < ENDS.size(); ++end)
            text += total.ends[end] == 0 ? "" : countCell(row.ends[end]);
        text += countCell(row.changes) +
                element("td", "number", row.slowest == 0 ? "-" : tookText(row.slowest)) + "</tr>\n";
    }
    return "<div class=\"wide\" tabindex=\"0\"><table>\n" + text + "</table></div>\n";
}

std::string figuresText(const Row &total)
{
    std::string text;
    for (std::size_t end = 0; end < ENDS.size(); ++end)
        text += element("li", ENDS[end],
                        "<b>" + number(total.ends[end]) + "</b>" + ENDS[end] + (end == 3 ? "s" : "")) +
                "\n";
    text += element("li", "", "<b>" + number(total.changes) + "</b>changes of files");
    return element("ul", "figures", "\n" + text) + "\n";
}

std::string refusalsText(const XmsReport &report)
{
    std::string text;
    for (std::size_t at = 0; at < report.steps.size() && text.size() < LIST_MAX; ++at) {
        const XmsReportStep &step = report.steps[at];
        if (step.end == XmsStepEnd::refused)
            text += "<li><a href=\"#s" + number(at + 1) + "\">" + xmsHtml(step.title) + " #" +
                    number(step.id) + "</a> " +
                    (step.reason.empty() ? "no reason given" : shortened(step.reason)) + "</li>\n";
    }
    return text.empty() ? "" : "<h2>Refused</h2>\n<ul>\n" + text + "</ul>\n";
}

std::string radio(const std::string &name, const std::string &id, const std::string &label, bool isChecked)
{
    return R"(<span><input type="radio" name=")" + name + "\" id=\"" + id + "\"" +
           (isChecked ? " checked" : "") + "><label for=\"" + id + "\">" + label + "</label></span>\n";
}

std::string filtersText(const std::map<std::uint32_t, Row> &rows)
{
    std::string ends = radio("end", "end-all", "all", true);
    for (const char *end : ENDS)
        ends += radio("end", std::string{"end-"} + end, end, false);
    std::string types = radio("type", "type-all", "all", true);
    for (const auto &[msgtype, row] : rows)
        types += radio("type", "type-" + number(msgtype), xmsHtml(titleOf(msgtype)), false);
    return "<form>\n<h2>Show</h2>\n<fieldset><legend>Outcome</legend>\n" + ends +
           "</fieldset>\n<fieldset><legend>Type</legend>\n" + types + "</fieldset>\n</form>\n";
}

/** Whatever is not of the kind that is picked is not shown; on paper everything that is shown is printed. */
std::string filterStyle(const std::map<std::uint32_t, Row> &rows)
{
    std::string style;
    const auto add = [&](const std::string &id, const std::string &kind) {
        style += "body:has(#" + id + ":checked) .step:not(." + kind + ") { display: none; }\n";
    };
    for (const char *end : ENDS)
        add(std::string{"end-"} + end, end);
    for (const auto &[msgtype, row] : rows)
        add("type-" + number(msgtype), "t" + number(msgtype));
    return style;
}

std::string headerText(const XmsReport &report, const std::map<std::uint32_t, Row> &rows)
{
    const std::string seconds = number((report.endMs - report.beginMs) / 1000);
    return "<header>\n<h1>Session " + shortened(report.name) + "</h1>\n<p class=\"soft\">" +
           timeText(report.beginMs, "%Y-%m-%d %H:%M:%S") + ", " + seconds + " s, " +
           counted(report.steps.size(), "message") + ". " +
           (report.hasSecrets ? "<strong>With secrets.</strong>" : "Secrets are masked.") + "</p>\n" +
           figuresText(totalOf(rows)) + refusalsText(report) + "<h2>By type</h2>\n" + tableText(rows) +
           filtersText(rows) + "</header>\n";
}

} // namespace

std::string xmsReportPage(const XmsReport &report)
{
    const auto rows = rowsOf(report);
    const std::int64_t slowest = totalOf(rows).slowest;
    std::string page =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "style-src 'unsafe-inline'\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>Session " +
        shortened(report.name) + "</title>\n<style>" + XMS_REPORT_STYLE + filterStyle(rows) +
        "</style>\n</head>\n<body>\n" + headerText(report, rows) + "<main>\n<h2>Messages</h2>\n" +
        logText(report.before);
    std::string steps;
    std::size_t at = 0;
    for (; at < report.steps.size(); ++at) {
        const std::string step = stepText(report.steps[at], at + 1, slowest);
        if (page.size() + steps.size() + step.size() > PAGE_MAX)
            break;
        steps += step;
    }
    if (!steps.empty())
        page += "<ol class=\"steps\">\n" + steps + "</ol>\n";
    if (at < report.steps.size())
        page += "<p><strong>" + counted(report.steps.size() - at, "further message") +
                " left out: the page would be too large.</strong></p>\n";
    return page + "</main>\n<footer class=\"soft\">Written by xms report.</footer>\n</body>\n</html>\n";
}
