#pragma once

#include "scene/RecordPool.h"

#include <QHash>

namespace NELK
{

/// Whether `elements` holds under `id` the very record that once had this serial. The record itself may be long gone:
/// only what the map holds now is read.
template <typename Record>
bool holdsRecord(const QHash<qint64, Record*>& elements, qint64 id, const Record* record, quint64 serial)
{
    return record && elements.value(id) == record && RecordPool<Record>::serialOf(record) == serial;
}

} // namespace NELK
