#include "auth/user_ports.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "files/generated_file.h"

#include <utility>

namespace {

std::string maskLine(const char *key, std::uint64_t mask)
{
    return xasFormat("%s=0x%llx\n", key, static_cast<unsigned long long>(mask));
}

template <std::size_t N>
std::string sequenceLine(const char *key, const char (&sequence)[N])
{
    return xasFormat("%s=\"%s\"\n", key, xasFieldString(sequence).c_str());
}

} // namespace

std::string xasUserPortText(const XasUserRecord &user)
{
    return maskLine("ALLOW_LISTEN", user.listen) + maskLine("ALLOW_DIRECT", user.data) +
           maskLine("ALLOW_CLEAR", user.clear) + sequenceLine("ESCAPE_SEQ", user.escseq) +
           sequenceLine("BREAK_SEQ", user.brkseq);
}

int xasLocalUserPortFiles(const XasUserRecord *pxUser, XasReplyStatus * /*reply*/)
{
    xasAssertGiven(pxUser, "pxUser");
    const std::string path = "/etc/zel/" + std::string{xasFieldText(pxUser->login)} + ".conf";
    XasFile file = xasOpenGeneratedFile(path, XasFileAccess::kept, XasFileLink::refused);
    if (!file) {
        xasLogError("Error opening config file \"%s\"\n", path.c_str());
        return 1;
    }
    const bool written = xasWriteGenerated(file.get(), xasUserPortText(*pxUser));
    if (!xasCloseGenerated(std::move(file)) || !written) {
        xasLogError("Error printing line to file\n");
        return 1;
    }
    return 0;
}
