#pragma once

/// Must be refused: the conversion is a warning.
inline int narrowed(double number)
{
    return number;
}
