#pragma once

#include <QColor>
#include <QMap>
#include <QString>

/// All images below a directory, however deep: from leaf name without ".png" to path. Of equal names the one met last
/// counts. Files of other names share the empty name, ones in capital ".PNG" included. Symbolic links are passed over.
QMap<QString, QString> scanImages(const QString& directory);

/// A colour table: lines of a name, a comma and a colour in any form that QColor knows. Other lines are passed over; a
/// colour that does not parse is kept as an invalid one. Empty if the file cannot be read.
QMap<QString, QColor> loadColors(const QString& file);
