#pragma once

#include "view/View.h"

#include <QMetaObject>
#include <QPointF>

namespace NELK
{

/// Lets a view look at a point of the scene plane, parts of units included.
inline void lookAt(View& view, QPointF position)
{
    QMetaObject::invokeMethod(&view, "slotEyeWatchedCenterChanged", Q_ARG(QPointF, position));
}

inline void lookAt(View& view, QPointF position, float scale)
{
    view.setCameraScale(scale);
    lookAt(view, position);
}

} // namespace NELK
