#pragma once

#include "startup/AtlasStart.h"
#include "support/IconFolder.h"

#include <QColor>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace NELK
{

/// Builds the process's atlases, with entity icons of one colour each, named after it.
class PlainIcons
{
public:
    explicit PlainIcons(const QStringList& colors)
    {
        for (const QString& color : colors)
            IconFolder::write(QStringLiteral("entity/zh/256/%1.png").arg(color), plainPicture(QColor(color)));
        startAtlases();
        QCoreApplication::processEvents();
    }

private:
    IconFolder m_folder;
};

} // namespace NELK
