#pragma once

#include <QHash>

namespace NELK
{

/// Puts `record` into `set`, or takes it out.
template <typename Record>
void setMember(QHash<qint64, Record*>& set, Record& record, bool isMember)
{
    if (isMember)
        set.insert(record.id, &record);
    else
        set.remove(record.id);
}

/// Gives a flag of `record` the value `value` and keeps `mirror`, the set of all records with that flag on, in step.
/// Answers whether the flag changed.
template <typename Record>
bool setMirrored(Record& record, bool Record::*flag, bool value, QHash<qint64, Record*>& mirror)
{
    if (record.*flag == value)
        return false;
    record.*flag = value;
    setMember(mirror, record, value);
    return true;
}

} // namespace NELK
