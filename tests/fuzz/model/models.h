/**
 * A second model of every text that the daemon writes, as simple as it can be: what the formats say, written
 * down once more with the C library's own functions, from the record's offsets. It shares nothing with the
 * daemon but the record.
 */
#ifndef XAS_FUZZ_MODEL_MODELS_H
#define XAS_FUZZ_MODEL_MODELS_H

#include "model/record.h"

/** A text, or as much of it as there is when its editor gives up. */
struct XasModelText {
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): usually the text is complete
    XasModelText(std::string newText, bool isComplete = true) : text{std::move(newText)}, complete{isComplete}
    {
    }
    std::string text;
    bool complete;
};

/** `variant`: what the text depends on besides record and old text; each says what. */
using XasModel = XasModelText (*)(const XasRecordBytes &m, unsigned variant, const std::string &old);

XasModelText xasModelGWPrec(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelKernel(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelModprobe(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** Variant: 0 eth0, 1 eth1, 2 bond0 of the first port; 4 more: a slave. Old: the web front end's settings. */
XasModelText xasModelInterface(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** Variant: whether it is enabled. */
XasModelText xasModelEnable(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelGateways(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelAltGW(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelHosts(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelHostname(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelNetworkName(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelDomain(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelResolver(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelPrecedence(const XasRecordBytes &m, unsigned variant, const std::string &old);

XasModelText xasModelNtpStep(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelNtp(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelSyslog(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelLogrotate(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** Variant: the port of SSH. */
XasModelText xasModelFirewall(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelZebra(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelRipd(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelSnmp(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelNfsServers(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelFstab(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelSmb(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelSmbPass(const XasRecordBytes &m, unsigned variant, const std::string &old);

XasModelText xasModelAuthOrder(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** The order: eight words of 32 bits at 120. */
XasModelText xasModelNsswitch(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelYp(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelNisNetwork(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelOpenLdap(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** Old, here and for the others with a template: the template. */
XasModelText xasModelLdap(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelRadius(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelKerberos(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelKdcHosts(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelTacacs(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelUserPorts(const XasRecordBytes &m, unsigned variant, const std::string &old);
/** Variant: not 0 when the local address is known, 192.0.2.1. */
XasModelText xasModelVpn(const XasRecordBytes &m, unsigned variant, const std::string &old);
XasModelText xasModelVpnSecrets(const XasRecordBytes &m, unsigned variant, const std::string &old);

/** The order as the first bytes and words of the record say it, the modules' settings as texts behind: the
 * first server at 152 (257 bytes), its secret, the other two, the kind of login; `use_ldap` and `encrypt`. */
XasModelText xasModelPam(const XasRecordBytes &m, unsigned variant, const std::string &old);

/** The host name that the web front end's settings hold; empty for none. */
std::string xasModelWebHostname(const std::string &text);

#endif
