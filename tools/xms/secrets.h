/**
 * Secrets of messages are shown only to who asks for them. Which fields hold one stands in the fields'
 * descriptions; of what is not described, everything may be one.
 */
#ifndef XAS_XMS_SECRETS_H
#define XAS_XMS_SECRETS_H

#include "xms/show.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

/** What stands in place of a secret. */
inline constexpr std::string_view XMS_MASK = "********";

/** The fields that hold a secret: "secret1", "user2.password" of a list of users; "payload" or "bytes" for
 * what is not described. */
std::vector<std::string> xmsSecretFields(const XmsTraffic &traffic);

/** The same record with XMS_MASK for each secret; what is not described becomes zero. */
XasMessage xmsMaskedRecord(XasMessage record);
XmsTraffic xmsMasked(XmsTraffic traffic);

/** The secrets that have been met, to hide them in files and log lines. */
class XmsKnownSecrets {
  public:
    void learn(const XmsTraffic &traffic);
    void learn(const XasMessage &record);

    /** `text` with XMS_MASK for each of them; one of less than four characters only where it is a word. */
    [[nodiscard]] std::string hide(std::string_view text) const;

  private:
    struct LongestFirst {
        bool operator()(const std::string &a, const std::string &b) const
        {
            return a.size() != b.size() ? a.size() > b.size() : a < b;
        }
    };
    std::set<std::string, LongestFirst> secrets;
};

#endif
