/** Texts that were tampered with. */
#ifndef XAS_TEST_SUPPORT_MUTATED_H
#define XAS_TEST_SUPPORT_MUTATED_H

#include <random>
#include <string>

/** An application list with a few characters lost, doubled or replaced. */
inline std::string xasMutatedList(std::string text, std::mt19937 &random)
{
    const auto below = [&](std::size_t end) {
        return static_cast<std::size_t>(random() % end);
    };
    const std::size_t at = below(text.size() - 8);
    const std::size_t length = 1 + below(8);
    switch (below(3)) {
    case 0:
        return text.erase(at, length);
    case 1:
        return text.insert(at, text.substr(at, length));
    default:
        return text.replace(at, 1, 1, "<>/ \tAa0&"[below(9)]);
    }
}

#endif
