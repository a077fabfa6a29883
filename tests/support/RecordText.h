#pragma once

#include "scene/InstanceList.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace NELK
{

using Four = std::array<float, 4>;

/// One record as the shaders read it. It is put together number by number, without the types of the code under test.
using RecordFloats = std::array<float, 28>;

/// For comparisons: all floats of a record in all their digits, four by four. Zero has no sign.
inline QString recordText(const RecordFloats& floats)
{
    QString text;
    for (std::size_t i = 0; i < floats.size(); ++i) {
        const float value = floats[i] == 0.0f ? 0.0f : floats[i];
        text += QStringLiteral("%1%2").arg(i % 4 == 0 ? " |" : " ").arg(static_cast<double>(value), 0, 'g', 9);
    }
    return text;
}

/// What a record should say whose matrix has these sixteen floats, column after column.
inline QString recordWith(const float* matrix, Four para1 = {}, Four para2 = {}, Four para3 = {})
{
    RecordFloats floats;
    float* next = std::copy_n(matrix, 16, floats.data());
    for (const Four& para : {para1, para2, para3})
        next = std::copy(para.begin(), para.end(), next);
    return recordText(floats);
}

/// What the record of an upright rectangle around (x, y) should say.
inline QString placedRecord(float x, float y, float width, float height, Four para1 = {}, Four para2 = {},
                            Four para3 = {})
{
    const std::array<float, 16> matrix{width, 0, 0, 0, 0, height, 0, 0, 0, 0, 1, 0, x, y, 0, 1};
    return recordWith(matrix.data(), para1, para2, para3);
}

inline QString recordText(const InstanceRecord& record)
{
    RecordFloats floats;
    std::memcpy(floats.data(), &record, sizeof floats);
    return recordText(floats);
}

/// What a list draws, in its order. A count that is not that of the records is told too.
inline QStringList recordsOf(const InstanceList& list)
{
    QStringList texts;
    for (const InstanceRecord& record : list.records)
        texts.append(recordText(record));
    if (list.count != texts.size())
        texts.append(QStringLiteral("but a count of %1").arg(list.count));
    return texts;
}

/// For lists whose order is that of a hash.
inline QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

} // namespace NELK
