#ifndef BYTES_H
#define BYTES_H

// What a byte is in every encoding that holds ASCII.

#include <QtGlobal>

[[nodiscard]] inline bool isAscii(char c)
{
    return uchar(c) < 0x80;
}

[[nodiscard]] inline bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

#endif // BYTES_H
