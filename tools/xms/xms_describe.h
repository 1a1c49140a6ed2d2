/** What message types there are and what their fields mean, for people and for programs. */
#ifndef XMS_XMS_DESCRIBE_H
#define XMS_XMS_DESCRIBE_H

#include "xms/xms_show.h"

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
