/** Whole numbers in JSON that others wrote: the library itself takes any number for any type. */
#ifndef XAS_XMS_JSON_NUMBER_H
#define XAS_XMS_JSON_NUMBER_H

#include "xms/show.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

/** The whole number called `key`. Throws std::invalid_argument when there is none, or one that a T does not
 * hold. */
template <class T>
T xmsNumberAt(const XmsJson &object, const char *key)
{
    const XmsJson none = nullptr;
    const auto at = object.find(key);
    const XmsJson *found = at != object.end() ? &*at : &none;
    if (found->is_number_unsigned() && std::in_range<T>(found->get<std::uint64_t>()))
        return static_cast<T>(found->get<std::uint64_t>());
    if (found->is_number_integer() && !found->is_number_unsigned() &&
        std::in_range<T>(found->get<std::int64_t>()))
        return static_cast<T>(found->get<std::int64_t>());
    throw std::invalid_argument{std::string{key} + " is no such number"};
}

/** The same; `otherwise` when there is none. */
template <class T>
T xmsNumberAt(const XmsJson &object, const char *key, T otherwise)
{
    return object.contains(key) ? xmsNumberAt<T>(object, key) : otherwise;
}

#endif
