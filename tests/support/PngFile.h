#pragma once

#include <QByteArray>
#include <QtEndian>

namespace NELK
{

inline QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// The check sum of a PNG chunk.
inline quint32 crc(const QByteArray& bytes)
{
    quint32 sum = 0xffffffffu;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum & 1u) ? (sum >> 1) ^ 0xedb88320u : sum >> 1;
    }
    return ~sum;
}

inline QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    return bigEndian(static_cast<quint32>(data.size())) + type + data + bigEndian(crc(type + data));
}

/// A flawless PNG file but for its size, which is claimed to be this while there is hardly any data.
inline QByteArray pngClaiming(quint32 width, quint32 height)
{
    const QByteArray header = bigEndian(width) + bigEndian(height) + QByteArray("\x08\x06\0\0\0", 5);
    const QByteArray data = qCompress(QByteArray(1025, '\x7f')).mid(4);
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", header) + pngChunk("IDAT", data) + pngChunk("IEND", {});
}

} // namespace NELK
