#include "atlas/ImageManager.h"
#include "support/EveryKind.h"
#include "support/IconFolder.h"
#include "support/OpenView.h"
#include "support/Pixels.h"

#include <NELK/GraphScene.h>

#include <QFile>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <QtTest>

#include <array>

using namespace NELK;

namespace
{

/// Lets an atlas paint what was asked for, and hands it to all views.
void tick(qint32 manager)
{
    ImageManager* images = ImageManager::instance(manager);
    QMetaObject::invokeMethod(images, "slotUpdateTimerEvent");
    images->waitForRun();
    QCoreApplication::processEvents();
}

/// Counts its repaints.
class CountingView : public OpenView
{
public:
    using OpenView::OpenView;
    int repaints = 0;

protected:
    void paintGL() override
    {
        ++repaints;
        OpenView::paintGL();
    }
};

/// A context that has nothing to do with any view.
struct OtherContext
{
    /// Unless it shares its objects with one.
    explicit OtherContext(QOpenGLContext* shared = nullptr)
    {
        surface.create();
        context.setShareContext(shared);
        if (!context.create() || !context.makeCurrent(&surface))
            qFatal("There is no second context.");
    }
    ~OtherContext() { context.doneCurrent(); }

    bool isCurrent() const { return QOpenGLContext::currentContext() == &context && context.surface() == &surface; }

    QOffscreenSurface surface;
    QOpenGLContext context;
};

constexpr std::array<GLenum, 8> unpackParameters{GL_UNPACK_ALIGNMENT,   GL_UNPACK_SKIP_IMAGES,  GL_UNPACK_SKIP_ROWS,
                                                 GL_UNPACK_SKIP_PIXELS, GL_UNPACK_IMAGE_HEIGHT, GL_UNPACK_ROW_LENGTH,
                                                 GL_UNPACK_LSB_FIRST,   GL_UNPACK_SWAP_BYTES};
constexpr std::array<GLint, 8> unusualParameters{8, 1, 2, 3, 4, 5, GL_TRUE, GL_TRUE};
constexpr std::array<GLint, 8> defaultParameters{4, 0, 0, 0, 0, 0, GL_FALSE, GL_FALSE};

/// A node whose label shows black on red, on its own below the middle of the view.
GraphNode addLabel(GraphScene& graph, const QString& text)
{
    GraphNode node = addNode(graph, {0, 128 + 38}, text);
    node.setLabelColor(Qt::black, Qt::red);
    return node;
}

/// What the view shows of the label.
QImage labelOf(const QImage& picture)
{
    return picture.copy(0, picture.height() / 2 - 38, picture.width(), 76);
}

/// Whether any pixel is almost of the color.
bool shows(const QImage& picture, QRgb color)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (difference(picture.pixel(x, y), color) < 20)
                return true;
        }
    }
    return false;
}

constexpr QRgb ink = qRgb(0, 0, 0);

} // namespace

class ViewAtlasTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void showsBlackSquaresUntilTheIconsArrive();
    void showsANewCharacterOnceItIsPainted();
    void keepsItsTextWhenTheAtlasGrows();
    void showsANewIconOnceItIsPainted();
    void keepsItsIconsWhenTheAtlasGrows();
    void takesUpAtTheFirstShowWhatCameBefore();
    void takesAnAtlasWhileAnotherContextIsCurrent();
    void leavesTheContextThatWasCurrent();
    void repaintsWithANewAtlas();
    void doesNothingWithANewAtlasBeforeItIsReady();
    void uploadsTextWhateverTheUnpackParameters();
    void showsTheStateOfTheLastRebuild();

    void loadsATextureOnce();
    void loadsNoTextureWithoutAnImage();
    void loadsTexturesOfAtMost256Pixels_data();
    void loadsTexturesOfAtMost256Pixels();
    void loadsTexturesUpsideDownWithMipmaps();
    void freesItsTextures();

private:
    QScopedPointer<GraphScene> graph;
    QScopedPointer<CountingView> view;
    QTemporaryDir folder;
};

void ViewAtlasTest::initTestCase()
{
    graph.reset(new GraphScene);
    view.reset(new CountingView(*graph));
}

void ViewAtlasTest::cleanup()
{
    graph->clear();
    QCOMPARE(view->takeErrors(), QList<GLenum>());
}

void ViewAtlasTest::cleanupTestCase()
{
    view.reset();
    graph.reset();
}

/// The first test of all: later there are atlases.
void ViewAtlasTest::showsBlackSquaresUntilTheIconsArrive()
{
    addNode(*graph, {0, 0});
    const QImage before = view->grabFramebuffer();
    QCOMPARE(nameOf(before.pixel(pixelAt(before, 0.0, 0.0))), QStringLiteral("#000000"));
    const QImage after = view->picture();
    QVERIFY(nameOf(after.pixel(pixelAt(after, 0.0, 0.0))) != QStringLiteral("#000000"));
}

void ViewAtlasTest::showsANewCharacterOnceItIsPainted()
{
    view->picture();
    addLabel(*graph, QStringLiteral("\u03a9"));
    QVERIFY(!shows(labelOf(view->rebuiltPicture()), ink));
    tick(ImageManager::wordIndex);
    const QImage painted = view->picture();
    QVERIFY(shows(labelOf(painted), ink));
    QCOMPARE(view->rebuiltPicture(), painted);
}

void ViewAtlasTest::keepsItsTextWhenTheAtlasGrows()
{
    addLabel(*graph, QStringLiteral("Agave"));
    const QImage before = labelOf(view->rebuiltPicture());
    QVERIFY(shows(before, ink));
    const int columns = ImageManager::instance(ImageManager::wordIndex)->texColNum();

    for (ushort code = 0x0410; code < 0x0430; ++code)
        ImageManager::instance(ImageManager::wordIndex)->requestWord(code);
    tick(ImageManager::wordIndex);
    QCOMPARE(ImageManager::instance(ImageManager::wordIndex)->texColNum(), columns + 1);
    // Until the next rebuild each character is cropped for the grid that there was, which is off by half a pixel.
    QVERIFY(meanDifference(labelOf(view->picture()), before) < 2.0);
    QVERIFY(meanDifference(labelOf(view->rebuiltPicture()), before) < 0.1);
}

void ViewAtlasTest::showsANewIconOnceItIsPainted()
{
    view->picture();
    const QString path = folder.filePath(QStringLiteral("icon.png"));
    IconFolder::write(path, plainPicture(QColor(0, 128, 0)));
    GraphNode node = addNode(*graph, {0, 0});
    node.setImage(path, true);
    const QImage before = view->rebuiltPicture();
    QCOMPARE(nameOf(before.pixel(pixelAt(before, 0.0, 0.0))), QStringLiteral("#ffffff"));
    tick(ImageManager::entityIndex);
    const QImage after = view->picture();
    for (const double inside : {-127.0, 0.0, 127.0})
        QCOMPARE(nameOf(after.pixel(pixelAt(after, inside, inside))), QStringLiteral("#008000"));
}

void ViewAtlasTest::keepsItsIconsWhenTheAtlasGrows()
{
    const QString path = folder.filePath(QStringLiteral("kept.png"));
    IconFolder::write(path, plainPicture(QColor(0, 0, 128)));
    addNode(*graph, {0, 0}).setImage(path, true);
    tick(ImageManager::entityIndex);
    const QImage before = view->rebuiltPicture();
    QCOMPARE(nameOf(before.pixel(pixelAt(before, 0.0, 0.0))), QStringLiteral("#000080"));

    ImageManager* images = ImageManager::instance(ImageManager::entityIndex);
    const int columns = images->texColNum();
    for (int i = 0; i < 2 * columns + 1; ++i)
        images->requestCell(IMAGE_FILE, folder.filePath(QStringLiteral("blank %1.png").arg(i)));
    tick(ImageManager::entityIndex);
    QCOMPARE(images->texColNum(), columns + 1);
    const QImage after = view->picture();
    for (const double inside : {-127.0, 0.0, 127.0})
        QCOMPARE(nameOf(after.pixel(pixelAt(after, inside, inside))), QStringLiteral("#000080"));
}

void ViewAtlasTest::takesUpAtTheFirstShowWhatCameBefore()
{
    CountingView newView(*graph);
    addLabel(*graph, QStringLiteral("\u03a3"));
    tick(ImageManager::wordIndex);
    QVERIFY(!newView.glReady);
    QVERIFY(shows(labelOf(newView.picture()), ink));
    QCOMPARE(newView.takeErrors(), QList<GLenum>());
}

void ViewAtlasTest::takesAnAtlasWhileAnotherContextIsCurrent()
{
    view->picture();
    addLabel(*graph, QStringLiteral("\u0394"));
    view->rebuildAll();
    {
        const OtherContext other;
        tick(ImageManager::wordIndex);
        QVERIFY(other.isCurrent());
        QCOMPARE(other.context.functions()->glGetError(), GLenum{GL_NO_ERROR});
    }
    QVERIFY(shows(labelOf(view->picture()), ink));
}

void ViewAtlasTest::leavesTheContextThatWasCurrent()
{
    view->picture();
    for (void (CountingView::*slot)() : {&CountingView::slotImageChanged, &CountingView::slotWordChanged}) {
        view->doneCurrent();
        (view.data()->*slot)();
        QVERIFY(!QOpenGLContext::currentContext());

        view->makeCurrent();
        (view.data()->*slot)();
        QCOMPARE(QOpenGLContext::currentContext(), view->context());
        view->doneCurrent();

        const OtherContext other;
        (view.data()->*slot)();
        QVERIFY(other.isCurrent());
    }
}

void ViewAtlasTest::repaintsWithANewAtlas()
{
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.data()));
    QTRY_VERIFY(view->repaints > 0);
    for (void (CountingView::*slot)() : {&CountingView::slotImageChanged, &CountingView::slotWordChanged}) {
        QCoreApplication::processEvents();
        view->repaints = 0;
        (view.data()->*slot)();
        QCOMPARE(view->repaints, 0);
        QTRY_COMPARE(view->repaints, 1);
    }
}

void ViewAtlasTest::doesNothingWithANewAtlasBeforeItIsReady()
{
    view->doneCurrent();
    CountingView newView(*graph);
    newView.slotImageChanged();
    newView.slotWordChanged();
    QVERIFY(!newView.glReady);
    QVERIFY(!QOpenGLContext::currentContext());
    QCOMPARE(newView.entityTexture, 0u);
    QCOMPARE(newView.textTexture, 0u);
}

void ViewAtlasTest::uploadsTextWhateverTheUnpackParameters()
{
    addLabel(*graph, QStringLiteral("Agave"));
    const QImage expected = view->rebuiltPicture();

    view->makeCurrent();
    for (std::size_t i = 0; i < unpackParameters.size(); ++i)
        view->glPixelStorei(unpackParameters[i], unusualParameters[i]);
    view->slotWordChanged();
    for (std::size_t i = 0; i < unpackParameters.size(); ++i) {
        GLint parameter = -1;
        view->glGetIntegerv(unpackParameters[i], &parameter);
        QCOMPARE(parameter, unusualParameters[i]);
        view->glPixelStorei(unpackParameters[i], defaultParameters[i]);
    }
    view->doneCurrent();
    QCOMPARE(view->picture(), expected);
}

void ViewAtlasTest::showsTheStateOfTheLastRebuild()
{
    GraphNode node = addNode(*graph, {0, 0});
    const QImage shown = view->rebuiltPicture();
    node.setShow(false);
    node.setPos(50, 50);
    QCOMPARE(view->picture(), shown);
    QVERIFY(view->rebuiltPicture() != shown);
}

void ViewAtlasTest::loadsATextureOnce()
{
    view->picture();
    const QString path = folder.filePath(QStringLiteral("once.png"));
    IconFolder::write(path, plainPicture(Qt::blue, {16, 16}));
    QOpenGLTexture* texture = view->textureForPath(path);
    QVERIFY(texture);
    QVERIFY(QFile::remove(path));
    QCOMPARE(view->textureForPath(path), texture);

    const QString otherPath = folder.filePath(QStringLiteral("other.png"));
    IconFolder::write(otherPath, plainPicture(Qt::blue, {16, 16}));
    QVERIFY(view->textureForPath(otherPath) != texture);
}

void ViewAtlasTest::loadsNoTextureWithoutAnImage()
{
    view->picture();
    const QString path = folder.filePath(QStringLiteral("late.png"));
    QVERIFY(!view->textureForPath(path));
    IconFolder::write(path, QByteArray("no picture"));
    QVERIFY(!view->textureForPath(path));
    // What was not there is looked for again.
    IconFolder::write(path, plainPicture(Qt::blue));
    QVERIFY(view->textureForPath(path));
}

void ViewAtlasTest::loadsTexturesOfAtMost256Pixels_data()
{
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QSize>("texture");

    QTest::newRow("small") << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("largest") << QSize(256, 256) << QSize(256, 256);
    QTest::newRow("too wide") << QSize(257, 10) << QSize(256, 256);
    QTest::newRow("too high") << QSize(10, 300) << QSize(256, 256);
    QTest::newRow("too large") << QSize(600, 400) << QSize(256, 256);
}

void ViewAtlasTest::loadsTexturesOfAtMost256Pixels()
{
    QFETCH(QSize, image);
    QFETCH(QSize, texture);

    view->picture();
    const QString path = folder.filePath(QStringLiteral("%1 by %2.png").arg(image.width()).arg(image.height()));
    IconFolder::write(path, plainPicture(Qt::blue, image));
    const QOpenGLTexture* loaded = view->textureForPath(path);
    QCOMPARE(QSize(loaded->width(), loaded->height()), texture);
}

void ViewAtlasTest::loadsTexturesUpsideDownWithMipmaps()
{
    view->picture();
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    const QImage image = opaquePicture(1, {64, 32});
    IconFolder::write(path, image);
    QOpenGLTexture* texture = view->textureForPath(path);
    QCOMPARE(texture->minificationFilter(), QOpenGLTexture::LinearMipMapLinear);
    QCOMPARE(texture->magnificationFilter(), QOpenGLTexture::Linear);
    QCOMPARE(texture->wrapMode(QOpenGLTexture::DirectionS), QOpenGLTexture::Repeat);
    QCOMPARE(texture->wrapMode(QOpenGLTexture::DirectionT), QOpenGLTexture::Repeat);

    view->makeCurrent();
    QImage pixels(64, 32, QImage::Format_RGBA8888);
    texture->bind();
    view->glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.bits());
    GLint quarter = 0;
    view->glGetTexLevelParameteriv(GL_TEXTURE_2D, 2, GL_TEXTURE_WIDTH, &quarter);
    texture->release();
    view->doneCurrent();
    // The first row of a texture is the lowest.
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 64; ++x)
            QCOMPARE(pixels.pixel(x, y), image.pixel(x, 31 - y));
    }
    QCOMPARE(quarter, 16);
}

void ViewAtlasTest::freesItsTextures()
{
    QScopedPointer<CountingView> doomed(new CountingView(*graph));
    doomed->picture();
    const QString path = folder.filePath(QStringLiteral("freed.png"));
    IconFolder::write(path, plainPicture(Qt::blue, {16, 16}));
    const GLuint texture = doomed->textureForPath(path)->textureId();
    OtherContext sharing(doomed->context());
    QVERIFY(sharing.context.functions()->glIsTexture(texture));
    sharing.context.doneCurrent(); // so that only the view's own context can free it
    doomed.reset();
    QVERIFY(sharing.context.makeCurrent(&sharing.surface));
    QVERIFY(!sharing.context.functions()->glIsTexture(texture));
}

QTEST_MAIN(ViewAtlasTest)

#include "ViewAtlasTest.moc"
