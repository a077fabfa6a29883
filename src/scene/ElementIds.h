#pragma once

#include <QtGlobal>

namespace NELK
{

/// Nodes from this id on are passed over by all picking and frame selection of a view.
inline constexpr qint64 pickableIdLimit = 12345678900;

/// Nodes from this id on take their icon from the float table instead of the entity table. A bound of its own that
/// happens to have the value of `pickableIdLimit`.
inline constexpr qint64 floatIdLimit = 12345678900;

/// Takes the next id of a running number: the value read, widened with its sign. After the last positive number it
/// goes on at the lowest negative one.
inline qint64 takeNextId(qint32& runningId)
{
    const qint32 id = runningId;
    runningId = static_cast<qint32>(static_cast<quint32>(id) + 1u);
    return id;
}

} // namespace NELK
