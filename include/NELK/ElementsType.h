#pragma once

#include <QMetaType>

namespace NELK
{

/// What is under the mouse.
enum E_ELEMENTS_TYPE
{
    /// The background.
    ELEMENT_NONE = 0,
    ELEMENT_NODE = 1,
    ELEMENT_EDGE = 2
};

} // namespace NELK

Q_DECLARE_METATYPE(NELK::E_ELEMENTS_TYPE)
