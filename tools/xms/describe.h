/** What message types there are and what their fields mean, for people and for programs. */
#ifndef XAS_XMS_DESCRIBE_H
#define XAS_XMS_DESCRIBE_H

#include "msg/fields.h"
#include "xms/show.h"

/** For each field: name with the element's number left open, offset, bytes, kind, default, meaning (values).
 */
std::vector<std::vector<std::string>> xmsFieldRows(const XasMsgFields &fields);

/** For each group of fields: "eth<n>: n is 1 to 2, 48 bytes apart; the ports ...". */
std::vector<std::string> xmsGroupTexts(const XasMsgFields &fields);

/** The application that the daemon reconfigures; empty for a type that it refuses. */
std::string xmsApplicationText(std::uint32_t msgtype);

/** Whether a type is answered and stored: "acknowledged, stored when applied". */
std::string xmsHandlingText(const XasMsgFields &fields);

/** One aligned line for each message type: number, name, the application it concerns, fields, meaning. */
std::string xmsTypesText();

/** An array of objects, one for each message type. */
XmsJson xmsTypesJson();

/** The fields of a type: names, offsets, widths, kinds, defaults, meanings and values; groups are shown once.
 */
std::string xmsDescribeText(std::uint32_t msgtype, XmsPaint paint);

/** The same as an object, with every field of every element of its groups. */
XmsJson xmsDescribeJson(std::uint32_t msgtype);

#endif
