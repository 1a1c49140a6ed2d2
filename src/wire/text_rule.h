/**
 * What a text of a message may hold, so that it cannot break the file or the command that it goes into. The
 * rule stands beside each field (wire/field.h); the daemon checks a message by these rules before it acts on
 * it, and the message tool before it sends one.
 */
#ifndef XAS_WIRE_TEXT_RULE_H
#define XAS_WIRE_TEXT_RULE_H

#include "wire/message.h"

#include <span>
#include <string>
#include <string_view>

/** Whatever is made of these characters alone a shell reads as one word, unless it begins with "-". */
inline constexpr std::string_view XAS_PLAIN_CHARACTERS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.,:/@%+=";

enum class XasTextRule : std::uint8_t {
    line,     /**< anything but control characters (bytes below 32, and 127) */
    word,     /**< a plain word: letters, digits and _-.,:/@%+=, not beginning with "-"; or nothing */
    host,     /**< a plain word with a letter or a digit in it; or nothing */
    option,   /**< a line that does not begin with "-" */
    secret,   /**< a line without blank, tab and "#" */
    pamValue, /**< a secret without "[" and "]" */
    quoted,   /**< a line without a double quote */
    column,   /**< a line without ":" */
    path,     /**< a line without a ".." component */
    sequence, /**< anything but line feed and carriage return */
};

/** True for a text that a shell reads as one word as it stands, and no program as an option. */
[[nodiscard]] bool xasIsPlainWord(std::string_view text);

/** True when the bytes of `path` between slashes are ".." anywhere. */
[[nodiscard]] bool xasHasParentComponent(std::string_view path);

/** True when `text` is what the rule allows. */
[[nodiscard]] bool xasFitsRule(XasTextRule rule, std::string_view text);

/** Whether the daemon reads a field of this message; `element` counts from 0 in the field's group. */
using XasReadCondition = bool (*)(const XasMessage &msg, std::size_t element);

/** A text of a message, or the name in a host record; the same again every `stride` bytes when it is
 * repeated. */
struct XasTextField {
    std::string_view name;  /**< empty for a group whose elements are single values */
    std::string_view group; /**< empty for a field that is not repeated */
    std::size_t offset;     /**< of the first element, from the start of the record */
    std::size_t width;
    std::size_t stride;
    std::size_t count;
    bool isHost; /**< a host record: its name counts when it holds one */
    XasTextRule rule;
    XasReadCondition isRead; /**< null: always */
};

/** The name that people know an element of a field by: "hostname", "mount1.rem_dir", "slave2". */
std::string xasElementName(std::string_view name, std::string_view group, std::size_t element);

/** The name of the first text, in the order of `fields`, that the daemon would read and that does not fit its
 * rule; empty when all do. */
std::string xasFindUnfitText(std::span<const XasTextField> fields, const XasMessage &msg);

#endif
