#pragma once

#include "scene/InstanceRecord.h"

#include <QtGlobal>

#include <vector>

namespace NELK
{

/// The records of one draw call. `count` is what is drawn: the size of `records` when they were last completed.
struct InstanceList
{
    std::vector<InstanceRecord> records;
    qint32 count = 0;
};

} // namespace NELK
