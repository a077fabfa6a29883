#pragma once

#include <QColor>
#include <QString>

/// What a cell of the entity atlas shows.
struct SEntityPayload
{
    /// The file or resource of the picture.
    QString path;
    /// The plain colour that goes with it.
    QColor color;
};
