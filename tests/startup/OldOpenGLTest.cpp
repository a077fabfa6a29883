#include "startup/ContextFormat.h"
#include "support/OpenView.h"
#include "support/SmallNetwork.h"

#include <QOpenGLFunctions>
#include <QtTest>

#include <memory>

using namespace NELK;

/// A view where the driver has no OpenGL 3.3. The environment has told it so.
class OldOpenGLTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void hasNothingToAskFor();
    void staysBlank();
    void staysBlankWhateverHappens();
    void mayMoveToAnotherWindow();

private:
    std::unique_ptr<SmallNetwork> m_network;
    std::unique_ptr<OpenView> m_view;
};

namespace
{

/// Where there is no context at all, Qt is the one who complains.
bool hasContexts()
{
    return QOpenGLContext().create();
}

void expectWarning()
{
    if (hasContexts())
        QTest::ignoreMessage(QtWarningMsg, "OpenGL not Support, exit.");
}

bool isOfOneColor(const QImage& picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return false;
        }
    }
    return true;
}

} // namespace

void OldOpenGLTest::initTestCase()
{
    if (hasCoreFunctions(contextFormat()))
        QSKIP("this driver cannot be told to do without OpenGL 3.3");
}

void OldOpenGLTest::init()
{
    m_network = std::make_unique<SmallNetwork>();
    m_view = std::make_unique<OpenView>(m_network->graph);
    expectWarning();
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void OldOpenGLTest::cleanup()
{
    if (m_view->context()) {
        m_view->makeCurrent();
        QCOMPARE(m_view->context()->functions()->glGetError(), GLenum(GL_NO_ERROR));
        m_view->doneCurrent();
    }
    m_view.reset();
    m_network.reset();
}

void OldOpenGLTest::hasNothingToAskFor()
{
    QVERIFY(!hasCoreFunctions(QSurfaceFormat()));
    QSurfaceFormat asked;
    asked.setVersion(3, 3);
    asked.setProfile(QSurfaceFormat::CoreProfile);
    QVERIFY(!hasCoreFunctions(asked));
    QCOMPARE(contextFormat().version(), QSurfaceFormat().version());
}

void OldOpenGLTest::staysBlank()
{
    QVERIFY(!m_view->glReady);
    QVERIFY(isOfOneColor(m_view->picture()));
    QCOMPARE(m_view->lastPaintTime(), 10);
}

void OldOpenGLTest::staysBlankWhateverHappens()
{
    m_view->resize(300, 200);
    m_view->setViewSize(300, 200);
    m_view->resizeGL(300, 200);
    m_view->paintGL();
    m_view->repaint();
    m_view->rebuildAll();
    m_network->left.setSelect(true);
    m_view->rebuildParallel();
    m_view->zoom(true);
    m_view->fitToView();
    m_view->slotImageChanged();
    m_view->slotWordChanged();
    QVERIFY(!m_view->textureForPath(QStringLiteral(":/icon/nobody.png")));
    QVERIFY(!m_view->textureForPath(QStringLiteral(":/imagetag/tools/resource-gen/simpleword_3500.txt")));

    QVERIFY(!m_view->glReady);
    QVERIFY(isOfOneColor(m_view->picture()));
    QCOMPARE(m_view->entityTexture, 0u);
    QCOMPARE(m_view->lastPaintTime(), 10);
}

void OldOpenGLTest::mayMoveToAnotherWindow()
{
    QWidget window;
    expectWarning();
    m_view->setParent(&window);
    window.show();
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(isOfOneColor(m_view->picture()));
    QCOMPARE(m_view->lastPaintTime(), 10);
    m_view->setParent(nullptr);
}

QTEST_MAIN(OldOpenGLTest)

#include "OldOpenGLTest.moc"
