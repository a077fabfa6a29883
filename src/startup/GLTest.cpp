#include "startup/GLTest.h"

#include "startup/ContextFormat.h"

#include <QString>

namespace NELK
{

GLTest::GLTest()
{
    setFormat(contextFormat());
}

void GLTest::initializeGL()
{
    if (!initializeOpenGLFunctions()) {
        result = GL_TEST_NO_GL;
        return;
    }
    const QString vendor = QString::fromLatin1(reinterpret_cast<const char*>(glGetString(GL_VENDOR)));
    const bool isIntel = vendor.contains(QLatin1String("intel"), Qt::CaseInsensitive);
    result = isIntel ? GL_TEST_INTEL : GL_TEST_OK;
}

E_GL_TEST_CODE runGLTest()
{
    GLTest probe;
    probe.setAttribute(Qt::WA_QuitOnClose, false); // it may be the only window so far
    probe.showMinimized();                         // makes the window and the context, and runs initializeGL
    probe.close();
    return probe.result;
}

} // namespace NELK
