#include "support/OffscreenGL.h"
#include "support/OpenView.h"
#include "support/SmallNetwork.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QPointer>
#include <QtTest>

#include <array>
#include <memory>

using namespace NELK;

/// A view gets another context with every window that it comes to, and gives back what it had in the last one.
class ViewContextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheSameInEveryWindow();
    void showsTheSameWhenDockedAndUndocked();
    void takesUpWhatChangesOnTheWay();
    void leavesNothingBehind();
    void saysThatItsContextGoes();

    void mayGoWhileAnotherContextIsCurrent();
    void mayGoWhileItsOwnContextIsCurrent();
    void mayGoBeforeItWasShown();
    void mayGoWithItsWindow();
};

namespace
{

/// A window to put a view in.
class Window : public QWidget
{
public:
    Window()
    {
        resize(500, 400);
        show();
    }

    /// The view is shown as big as it is.
    void take(View& view)
    {
        view.setParent(this);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
        QTRY_VERIFY(view.context());
        QVERIFY(QTest::qWaitFor([&view] { return view.isValid(); }));
    }
};

/// How many textures, buffers and programs there are in a context and those that share with it.
int objectsIn(OffscreenGL& gl)
{
    gl.makeCurrent();
    int count = 0;
    for (GLuint name = 1; name < 2000; ++name)
        count += gl.glIsTexture(name) + gl.glIsBuffer(name) + gl.glIsProgram(name);
    return count;
}

/// In pictures of 400 by 300 pixels.
bool showsNetwork(const QImage& picture)
{
    return picture.pixelColor(200, 150) == QColor(Qt::red) && picture.pixelColor(200, 160) == QColor(Qt::white) &&
           picture.pixelColor(60, 150) == QColor(Qt::blue) && picture.pixelColor(267, 130) == QColor(50, 142, 255) &&
           picture.pixelColor(300, 130) == QColor(Qt::white);
}

/// Counts the lines that are written for those who debug.
class DebugLines
{
public:
    DebugLines() : m_previous(qInstallMessageHandler(count)) { seen = 0; }
    ~DebugLines() { qInstallMessageHandler(m_previous); }
    Q_DISABLE_COPY(DebugLines)

    static inline int seen = 0;

private:
    QtMessageHandler m_previous;

    static void count(QtMsgType type, const QMessageLogContext&, const QString&) { seen += type == QtDebugMsg ? 1 : 0; }
};

} // namespace

void ViewContextTest::showsTheSameInEveryWindow()
{
    SmallNetwork network;
    std::array<Window, 2> windows;
    OpenView view(network.graph);
    windows[0].take(view);
    const QImage picture = view.picture();
    QVERIFY(showsNetwork(picture));

    for (int move = 1; move <= 3; ++move) {
        windows.at(static_cast<std::size_t>(move % 2)).take(view);
        QCOMPARE(view.picture(), picture);
        QVERIFY(showsNetwork(view.picture()));
        QCOMPARE(view.takeErrors(), {});
    }
}

void ViewContextTest::showsTheSameWhenDockedAndUndocked()
{
    SmallNetwork network;
    QMainWindow window;
    window.setCentralWidget(new QWidget);
    auto* dock = new QDockWidget(&window);
    auto* place = new QWidget; // so that the view keeps its size
    auto* view = new OpenView(network.graph);
    view->setParent(place);
    place->setFixedSize(view->size());
    dock->setWidget(place);
    window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage picture = view->picture();
    QVERIFY(showsNetwork(picture));

    for (const bool floating : {true, false, true, false}) {
        dock->setFloating(floating);
        QCOMPARE(view->window() == dock, floating);
        QVERIFY(QTest::qWaitForWindowExposed(view->window()));
        QCOMPARE(view->picture(), picture);
        QVERIFY(showsNetwork(view->picture()));
        QCOMPARE(view->takeErrors(), {});
    }
}

/// Without a word: lists and camera are taken up with the new context.
void ViewContextTest::takesUpWhatChangesOnTheWay()
{
    SmallNetwork network;
    std::array<Window, 2> windows;
    OpenView view(network.graph);
    windows[0].take(view);
    QCOMPARE(view.picture().pixelColor(200, 150), QColor(Qt::red));

    network.left.setPos(-SmallNetwork::nodeX, 50);
    network.right.setPos(SmallNetwork::nodeX, 50);
    windows[1].take(view);
    const QImage picture = view.picture();
    QCOMPARE(picture.pixelColor(200, 150), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(200, 100), QColor(Qt::red));
}

void ViewContextTest::leavesNothingBehind()
{
    SmallNetwork network;
    std::array<Window, 2> windows;
    auto view = std::make_unique<OpenView>(network.graph);
    windows[0].take(*view);
    view->picture();
    OffscreenGL beside(view->context());
    const QVector<GLuint> textures{view->entityTexture, view->textTexture};
    const GLuint program = view->shader.id;
    const int present = objectsIn(beside);
    for (const GLuint texture : textures)
        QVERIFY(beside.glIsTexture(texture));
    QVERIFY(beside.glIsProgram(program));

    windows[1].take(*view);
    const int absent = objectsIn(beside);
    // 9 meshes, 8 buffers for instances, 2 textures and the program.
    QVERIFY2(absent <= present - 20, qPrintable(QStringLiteral("%1 of %2 are left").arg(absent).arg(present)));
    for (const GLuint texture : textures)
        QVERIFY(!beside.glIsTexture(texture));
    QVERIFY(!beside.glIsProgram(program));

    for (int round = 0; round < 2; ++round) {
        windows[0].take(*view);
        view->picture();
        QCOMPARE(objectsIn(beside), present);
        windows[1].take(*view);
        QCOMPARE(objectsIn(beside), absent);
    }
    windows[0].take(*view);
    view->picture();
    view.reset();
    QCOMPARE(objectsIn(beside), absent);
    QCOMPARE(beside.takeErrors(), {});
}

void ViewContextTest::saysThatItsContextGoes()
{
    SmallNetwork network;
    std::array<Window, 2> windows;
    OpenView view(network.graph);
    windows[0].take(view);
    QVERIFY(view.glReady);

    const DebugLines lines;
    windows[1].take(view);
    QCOMPARE(DebugLines::seen, 1);
    windows[0].take(view);
    QCOMPARE(DebugLines::seen, 2);
    QVERIFY(view.glReady);
}

/// Both contexts give the same names to their objects, but they are not the same objects.
void ViewContextTest::mayGoWhileAnotherContextIsCurrent()
{
    SmallNetwork network;
    Window window;
    auto view = std::make_unique<OpenView>(network.graph);
    window.take(*view);
    view->picture();

    OffscreenGL other;
    std::array<GLuint, 50> buffers{};
    other.glGenBuffers(buffers.size(), buffers.data());
    for (const GLuint buffer : buffers)
        other.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    QVERIFY(view->entityTexture != 0);
    const int objects = objectsIn(other);
    view.reset();
    QCOMPARE(objectsIn(other), objects);
    QCOMPARE(other.takeErrors(), {});
}

void ViewContextTest::mayGoWhileItsOwnContextIsCurrent()
{
    SmallNetwork network;
    Window window;
    auto view = std::make_unique<OpenView>(network.graph);
    window.take(*view);
    OffscreenGL beside(view->context());
    view->makeCurrent();
    const GLuint texture = view->entityTexture;
    view.reset();
    QVERIFY(!QOpenGLContext::currentContext());
    beside.makeCurrent();
    QVERIFY(!beside.glIsTexture(texture));
}

void ViewContextTest::mayGoBeforeItWasShown()
{
    SmallNetwork network;
    OffscreenGL other;
    {
        OpenView view(network.graph);
        QVERIFY(!view.glReady);
        QCOMPARE(view.lastPaintTime(), 10);
    }
    QVERIFY(other.isCurrent());
    QCOMPARE(other.takeErrors(), {});
}

void ViewContextTest::mayGoWithItsWindow()
{
    SmallNetwork network;
    auto window = std::make_unique<Window>();
    QPointer<OpenView> view = new OpenView(network.graph);
    window->take(*view);
    view->picture();
    window.reset();
    QVERIFY(!view);
    QVERIFY(!QOpenGLContext::currentContext());

    Window next;
    OpenView another(network.graph);
    next.take(another);
    QVERIFY(showsNetwork(another.picture()));
    QCOMPARE(another.takeErrors(), {});
}

QTEST_MAIN(ViewContextTest)

#include "ViewContextTest.moc"
