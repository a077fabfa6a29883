#include <NELK/InitNelk.h>

#include "atlas/ImageManager.h"
#include "startup/AtlasStart.h"
#include "startup/GLTest.h"

namespace NELK
{

namespace
{

bool initCalled = false;
bool probePassed = false;

E_GL_TEST_CODE firstCall()
{
    if (!startAtlases())
        return GL_TEST_REFUSED;
    const E_GL_TEST_CODE code = runGLTest();
    probePassed = code == GL_TEST_OK;
    return code;
}

} // namespace

E_GL_TEST_CODE INIT_NELK()
{
    if (!initCalled) {
        initCalled = true;
        return firstCall();
    }
    if (!probePassed)
        return GL_TEST_OK;
    return ImageManager::instance(ImageManager::entityIndex)->startReload() ? GL_TEST_OK : GL_TEST_REFUSED;
}

} // namespace NELK
