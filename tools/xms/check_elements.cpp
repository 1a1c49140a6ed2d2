#include "xms/check.h"

#include <algorithm>
#include <array>

namespace {

/** Where the daemon looks for an element. */
struct KnownPlace {
    std::string_view name;
    std::string_view parent; /**< empty: anywhere but inside another known element */
    bool isText;
    bool isOnce; /**< of several in one parent the last one counts */
};

constexpr std::array KNOWN = {
    KnownPlace{"APP", "", false, false},         KnownPlace{"NAME", "APP", true, true},
    KnownPlace{"EXE", "APP", true, false},       KnownPlace{"STARTSCRIPT", "APP", true, true},
    KnownPlace{"STOPSCRIPT", "APP", true, true}, KnownPlace{"CFGFILE", "APP", false, false},
    KnownPlace{"TYPE", "CFGFILE", true, true},   KnownPlace{"PATH", "CFGFILE", true, true},
};

const KnownPlace *placeOf(std::string_view name)
{
    const auto *const known = std::ranges::find(KNOWN, name, &KnownPlace::name);
    return known == KNOWN.end() ? nullptr : known;
}

/** The known element around, however far out; empty when there is none. */
std::string_view knownAround(const XmsListScan &scan, const XmsListElement &element)
{
    for (std::size_t at = element.parent; at != XMS_NO_ELEMENT; at = scan.elements[at].parent) {
        if (placeOf(scan.elements[at].name) != nullptr)
            return scan.elements[at].name;
    }
    return {};
}

void checkPlace(const XmsListScan &scan, const XmsListElement &element, const KnownPlace &place,
                XmsFindings &findings)
{
    const std::string_view around = knownAround(scan, element);
    if (around == place.parent)
        return;
    const std::string where = around.empty() ? "outside of every APP" : "inside " + std::string{around};
    findings.push_back({element.line, XmsWorry::error, "place",
                        element.name + " " + where +
                            (place.parent.empty() ? ", applications cannot hold each other"
                                                  : ", it belongs into " + std::string{place.parent})});
}

/** Text that no element of its own holds: the daemon takes it for that of the last known element. */
void checkText(const XmsListElement &element, const KnownPlace *place, XmsFindings &findings)
{
    if (!xmsHasText(element.text) || (place != nullptr && place->isText))
        return;
    findings.push_back({element.line, XmsWorry::error, "text",
                        "text in " + element.name + " that replaces the one of the known element before it"});
}

void checkSpace(const XmsListElement &element, XmsFindings &findings)
{
    if (!xmsHasText(element.text))
        findings.push_back({element.line, XmsWorry::warning, "empty",
                            element.name + " without a text counts as "
                                           "absent"});
    else if (element.text.find_first_of(" \t\n") == 0 ||
             element.text.find_last_of(" \t\n") + 1 == element.text.size())
        findings.push_back(
            {element.line, XmsWorry::warning, "space",
             "white space in front of or behind the text of " + element.name + " becomes a part of it"});
}

void checkRepeats(const XmsListScan &scan, const XmsListElement &element, XmsFindings &findings)
{
    for (const KnownPlace &place : KNOWN) {
        if (!place.isOnce || place.parent != element.name)
            continue;
        const auto found = scan.inside(element, place.name);
        for (std::size_t i = 0; i + 1 < found.size(); ++i)
            findings.push_back({found[i]->line, XmsWorry::warning, "repeated",
                                found[i]->name + " is given again in line " +
                                    std::to_string(found[i + 1]->line) + ", the last one counts"});
    }
}

} // namespace

void xmsCheckElements(const XmsListScan &scan, XmsFindings &findings)
{
    for (const XmsListElement &element : scan.elements) {
        const KnownPlace *place = placeOf(element.name);
        if (place == nullptr && element.parent != XMS_NO_ELEMENT)
            findings.push_back({element.line, XmsWorry::warning, "element",
                                "the daemon knows no element " + element.name + ", and ignores it"});
        if (place != nullptr)
            checkPlace(scan, element, *place, findings);
        if (element.hasAttributes)
            findings.push_back({element.line, XmsWorry::warning, "attribute",
                                "attributes are never read, those of " + element.name + " neither"});
        checkText(element, place, findings);
        if (place != nullptr && place->isText)
            checkSpace(element, findings);
        checkRepeats(scan, element, findings);
    }
}
