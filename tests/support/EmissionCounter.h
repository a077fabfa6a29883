#pragma once

#include <QMetaMethod>
#include <QSignalSpy>

#include <memory>
#include <vector>

namespace NELK
{

/// Counts what an object emits through the signals of its own class, whichever they are.
class EmissionCounter
{
public:
    explicit EmissionCounter(const QObject& sender)
    {
        const QMetaObject& type = *sender.metaObject();
        for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
            if (type.method(i).methodType() == QMetaMethod::Signal)
                m_spies.push_back(std::make_unique<QSignalSpy>(&sender, type.method(i)));
        }
    }

    int signalsWatched() const { return static_cast<int>(m_spies.size()); }

    int count() const
    {
        int emissions = 0;
        for (const std::unique_ptr<QSignalSpy>& spy : m_spies)
            emissions += spy->count();
        return emissions;
    }

private:
    std::vector<std::unique_ptr<QSignalSpy>> m_spies;
};

} // namespace NELK
