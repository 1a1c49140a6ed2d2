/** The host name that the appliance's web front end keeps in its network settings, an XML file. */
#ifndef XAS_CONFIG_WEB_HOSTNAME_H
#define XAS_CONFIG_WEB_HOSTNAME_H

#include <string>
#include <string_view>

/** The longest host name that is taken. */
inline constexpr std::size_t XAS_WEB_HOSTNAME_MAX = 63;

/** The host name in the text of those settings: on each line that holds "<HOSTNAME>" what stands between the
 * line's first ">" and the next "<"; the last one that can be taken counts. It has 1 to 63 characters, and
 * only letters, digits and "_-.,:/@%+=": the file that it goes into is sourced by a shell, which must read it
 * as one word. Empty when there is none. */
std::string xasWebHostname(std::string_view text);

/** Reads "/www/xml/network.xml". Returns 0 with the name in `hostname`; 1, `hostname` left alone, when there
 * is none or, after logging, when the file cannot be opened. */
[[nodiscard]] int xasGetXmlHostname(std::string &hostname);

#endif
