#pragma once

#include <QByteArray>

/// Whether \a contentEncoding, the value of that header, names a compression that inflated()
/// undoes: "gzip" or "deflate" (RFC 9110), in any case.
[[nodiscard]] bool isCompression(const QByteArray &contentEncoding);

/// How inflating has ended.
enum class InflateEnd {
    Whole,   ///< at the end of the compressed data or, when they are cut off, of the input
    Broken,  ///< at bytes that are no compressed data
    TooLong, ///< at the limit
};

struct Inflated
{
    QByteArray bytes; ///< what there was until then; nothing when it is too long
    InflateEnd end = InflateEnd::Whole;
};

/// Undoes the compression of \a compressed: gzip (RFC 1952), zlib (RFC 1950) or bare deflate (RFC
/// 1951), told apart by how it begins. Never makes more than \a limit bytes, whatever a few input
/// bytes stand for. Any thread.
[[nodiscard]] Inflated inflated(const QByteArray &compressed, int limit);
