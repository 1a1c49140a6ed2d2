/** A real SNMP agent and its clients, of the unpacked packages; for the private root. */
#ifndef XAS_TEST_SUPPORT_SNMP_H
#define XAS_TEST_SUPPORT_SNMP_H

#include "support/programs.h"

/** Where agent and clients keep what they keep; words of a shell that go in front of a command. */
inline std::string xasSnmpEnvironment()
{
    std::filesystem::create_directories("/tmp/snmp/cert_indexes"); // they tell when they make it themselves
    return "MIBS= SNMP_PERSISTENT_DIR=/tmp/snmp";
}

/** Runs a client ("snmpget") with these arguments to its end; gives what it printed. */
inline std::string xasRunSnmpClient(const std::string &program, const std::string &arguments)
{
    return xasRunShell(xasSnmpEnvironment() + " " + xasUnpackedProgram("usr/bin/" + program) + " " +
                       arguments)
        .output;
}

/** The command line of an agent in the foreground that reads this file and no other, and logs to `log`. */
inline std::string xasSnmpAgentCommand(const std::string &cfgFileName, const std::string &log)
{
    return xasSnmpEnvironment() + " exec " + xasUnpackedProgram("usr/sbin/snmpd") + " -f " + log +
           " -r -C -c " + cfgFileName;
}

#endif
