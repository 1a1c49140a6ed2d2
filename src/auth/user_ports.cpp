#include "auth/user_ports.h"

#include "core/assert.h"
#include "core/text.h"
#include "files/generated_file.h"

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
    return xasGenerateFile(path, xasUserPortText(*pxUser), XasFileAccess::kept, XasFileLink::refused);
}
