/** Which bytes are control characters: in a value they could begin a line, or drive a terminal. */
#ifndef XAS_WIRE_CONTROL_H
#define XAS_WIRE_CONTROL_H

/** True for a byte below 32 and for 127. Bytes of 128 and above are text. */
[[nodiscard]] constexpr bool xasIsControl(char c)
{
    const auto code = static_cast<unsigned char>(c);
    return code < ' ' || code == 0x7F;
}

#endif
