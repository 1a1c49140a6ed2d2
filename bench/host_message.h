/** A host-name message and the files that it changes, as the measurements use them. */
#ifndef XAS_BENCH_HOST_MESSAGE_H
#define XAS_BENCH_HOST_MESSAGE_H

#include "config/hostname.h"
#include "support/files.h"
#include "support/message.h"

#include <string>
#include <utility>
#include <vector>

using BenchFiles = std::vector<std::pair<std::string, std::string>>;

inline XasMessage benchMessage(unsigned number)
{
    XasHostnamePayload payload{};
    xasSetFieldText(payload.hostname, "console" + std::to_string(number));
    xasSetFieldText(payload.domain, "example.org");
    return XasMessageBuilder{XMSG_HOSTNAME}.id(number).payload(payload).build();
}

/** A hosts file of so many lines. */
inline std::string benchHosts(std::size_t lines)
{
    std::string text = "127.0.0.1\tconsole\tlocalhost.localdomain\tlocalhost\n";
    for (std::size_t i = 1; i < lines; ++i)
        text += "192.168.10." + std::to_string(i % 256) + "\tgateway.example.org gateway\n";
    return text;
}

/** The four files, as an appliance has them, in a directory. */
inline BenchFiles benchFiles(const std::string &directory, std::size_t hostsLines = 3)
{
    const BenchFiles texts = {{"hosts", benchHosts(hostsLines)},
                              {"hostname", "console\n"},
                              {"network", "NETWORKING=yes\nHOSTNAME=console\nGATEWAY=192.168.10.1\n"},
                              {"domain", "STATIC_DOMAIN=example.net\n"}};
    BenchFiles files;
    for (const auto &[type, text] : texts) {
        files.emplace_back(type, directory + "/" + type);
        xasWriteFile(files.back().second, text);
    }
    return files;
}

#endif
