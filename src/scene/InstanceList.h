#pragma once

#include "scene/InstanceRecord.h"

#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace NELK
{

/// The records of one draw call. `count` is what is drawn: the size of `records` when they were last completed.
///
/// A rebuild restarts the list, adds each record and completes it. Memory once taken is kept, so that rebuilding what
/// has not grown allocates nothing.
struct InstanceList
{
    void restart() { records.clear(); }

    void add(const InstanceRecord& record)
    {
        if (records.size() == records.capacity())
            records.reserve(std::max(records.size() + records.size() / 2, records.size() + 1));
        records.push_back(record);
    }

    void complete() { count = static_cast<qint32>(records.size()); }

    std::vector<InstanceRecord> records;
    qint32 count = 0;
};

} // namespace NELK
