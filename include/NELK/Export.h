#pragma once

#include <QtGlobal>

/// Marks what the library exports. The library itself is built with NELK_BUILDING_LIBRARY defined, a host without it.
#if defined(NELK_BUILDING_LIBRARY)
#define NELK_EXPORT Q_DECL_EXPORT
#else
#define NELK_EXPORT Q_DECL_IMPORT
#endif
