#pragma once

#include <NELK/Export.h>

namespace NELK
{

/// What INIT_NELK found.
enum E_GL_TEST_CODE
{
    /// OpenGL will do, or no context could be made at all, which shows at the first view; or, from the second call on,
    /// the entity icons were read again or nothing was to be done.
    GL_TEST_OK = 0,
    /// First call: a view had started the atlases before, and OpenGL was not tested. Later call: icons are still being
    /// painted and nothing was read; call once more, later.
    GL_TEST_REFUSED = 1,
    /// The functions of OpenGL 3.3 core are not there; views will stay blank.
    GL_TEST_NO_GL = 2,
    /// OpenGL will do, and its vendor is Intel.
    GL_TEST_INTEL = 3
};

/// Starts the library: builds the atlas of entity icons and that of characters, and tests OpenGL. Returns when that is
/// done, which takes as long as all images and glyphs take.
///
/// Call it once on the user interface thread, when the QApplication exists, before the first view is shown, with the
/// working directory where "entity/" and "Floats/" are. Then return to the event loop before the first label or image:
/// until events have been handled the atlases have not arrived. A label set before then stays blank until it is set
/// again, and an icon is not taken. A host that does not call it leaves the building to the first view.
///
/// Text is drawn with "msyh.ttf", "msyh.ttc" or "simsun.ttc", whichever of these the folder of fonts holds first
/// (QStandardPaths::FontsLocation). Without any of them all text stays blank.
///
/// Called again after a first call that returned GL_TEST_OK, it reads the icons and colours on disk again. After a
/// first call with any other result it does nothing and returns GL_TEST_OK: a host is told of a failure once.
NELK_EXPORT E_GL_TEST_CODE INIT_NELK();

} // namespace NELK
