#pragma once

#include <QtGlobal>

/// What XML from outside may be at the most.
namespace vantiro {

/// Bytes of a reply, characters of an inner document. A reply with a discount on each of a thousand lines is some
/// 150 KiB.
inline constexpr qsizetype maximumXmlSize = 8 * 1024 * 1024;

/// Elements within one another, the root being the first. Writing a tree out recurses, and replies are written to the
/// log: some 500 levels exhaust a thread's stack of 1 MiB.
inline constexpr int maximumXmlDepth = 256;

/// Attributes of one element: the parser compares each with all before it.
inline constexpr int maximumXmlAttributes = 64;

/// Elements, attributes, comments, instructions and sections of the whole document: each becomes an object of some
/// 300 bytes, however short its text. Discounts on ten thousand lines make 70,000.
inline constexpr int maximumXmlNodes = 200'000;

} // namespace vantiro
