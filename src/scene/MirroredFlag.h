#pragma once

#include <QHash>

namespace NELK
{

/// Keeps `mirror` in step with a feature of `record` that has no flag of its own.
template <typename Record>
void setMirrored(Record& record, bool hasFeature, QHash<qint64, Record*>& mirror)
{
    if (hasFeature)
        mirror.insert(record.id, &record);
    else
        mirror.remove(record.id);
}

/// Gives a flag of `record` the value `value` and keeps `mirror`, the set of all records with that flag on, in step.
/// Answers whether the flag changed.
template <typename Record>
bool setMirrored(Record& record, bool Record::*flag, bool value, QHash<qint64, Record*>& mirror)
{
    if (record.*flag == value)
        return false;
    record.*flag = value;
    setMirrored(record, value, mirror);
    return true;
}

} // namespace NELK
