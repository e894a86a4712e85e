#include "service/request/inflate.h"

#include <zlib.h>

namespace {

constexpr int gzipOrZlib = MAX_WBITS + 32; // told apart by their first bytes
constexpr int bareDeflate = -MAX_WBITS;
constexpr int pieceBytes = 64 * 1024;

/// A stream of zlib with an end.
class InflateStream final
{
    Q_DISABLE_COPY_MOVE(InflateStream)

public:
    InflateStream(const QByteArray &input, int format)
    {
        // zlib reads its input only, but takes it as if it wrote there.
        m_stream.next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(input.constData()));
        m_stream.avail_in = static_cast<uInt>(input.size());
        m_ready = inflateInit2(&m_stream, format) == Z_OK;
    }

    ~InflateStream()
    {
        if (m_ready) {
            inflateEnd(&m_stream);
        }
    }

    /// Appends at most \a most bytes to \a output. Z_OK as long as there may be more.
    int readOn(QByteArray &output, int most)
    {
        if (!m_ready) {
            return Z_MEM_ERROR;
        }
        const int before = output.size();
        output.resize(before + most);
        m_stream.next_out = reinterpret_cast<Bytef *>(output.data()) + before;
        m_stream.avail_out = static_cast<uInt>(most);
        const int end = inflate(&m_stream, Z_NO_FLUSH);
        output.chop(static_cast<int>(m_stream.avail_out));
        return end;
    }

private:
    z_stream m_stream = {};
    bool m_ready = false;
};

Inflated inflatedAs(int format, const QByteArray &compressed, int limit)
{
    InflateStream stream(compressed, format);
    Inflated result;
    int state = Z_OK;
    while (state == Z_OK) {
        // One byte more than allowed shows that there is one.
        const int most = qMin(pieceBytes, limit - result.bytes.size() + 1);
        state = stream.readOn(result.bytes, most);
        if (result.bytes.size() > limit) {
            return {{}, InflateEnd::TooLong};
        }
    }
    // zlib calls it an error of the buffer when the input has ended too early.
    const bool whole = state == Z_STREAM_END || state == Z_BUF_ERROR;
    result.end = whole ? InflateEnd::Whole : InflateEnd::Broken;
    return result;
}

} // namespace

bool isCompression(const QByteArray &contentEncoding)
{
    const QByteArray name = contentEncoding.trimmed().toLower();
    return name == "gzip" || name == "deflate";
}

Inflated inflated(const QByteArray &compressed, int limit)
{
    Inflated result = inflatedAs(gzipOrZlib, compressed, limit);
    if (result.end == InflateEnd::Broken && result.bytes.isEmpty()) {
        // Some services leave away the frame of "deflate".
        Inflated bare = inflatedAs(bareDeflate, compressed, limit);
        if (bare.end != InflateEnd::Broken) {
            return bare;
        }
    }
    return result;
}
