/** Messages of all types in a mix, the same for the same seed. Their values are such that the files which
 * they leave do not depend on older messages of the same type, as those of some settings else do. */
#ifndef XAS_FUZZ_SOAK_MIX_H
#define XAS_FUZZ_SOAK_MIX_H

#include "wire/message.h"

#include <random>
#include <string>

struct XasMixedMessage {
    XasMessage msg{};
    std::string users; /**< the list behind it */
    std::string key;   /**< a later message of the same key makes this one forgotten */
};

class XasMix {
  public:
    explicit XasMix(unsigned seed) : engine{seed} {}

    XasMixedMessage next();

    /** An Ethernet message: a network file without gateways would have them behind its last line. */
    XasMixedMessage first();

    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine()) % limit; }

  private:
    std::mt19937 engine;
};

#endif
