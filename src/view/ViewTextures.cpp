// The textures of View: the two atlases, and images from files.

#include "view/View.h"

#include "atlas/ImageManager.h"
#include "render/CurrentContextGuard.h"

#include <QImage>

namespace NELK
{

void View::slotImageChanged()
{
    // Before the context is there and after it has gone, initGLObjects will take the image up.
    if (!glReady || entityImages->image().isNull())
        return;
    const CurrentContextGuard current(*this);
    uploadEntityAtlas();
    update();
}

void View::slotWordChanged()
{
    if (!glReady || textImages->image().isNull())
        return;
    const CurrentContextGuard current(*this);
    uploadTextAtlas();
    update();
}

void View::uploadEntityAtlas()
{
    const QImage& image = entityImages->image();
    if (image.isNull())
        return;
    shader.use();
    glBindTexture(GL_TEXTURE_2D, entityTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, image.width(), image.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 image.constBits());
    glGenerateMipmap(GL_TEXTURE_2D);
    entityRows = entityImages->texRowNum();
    entityCols = entityImages->texColNum();
}

void View::uploadTextAtlas()
{
    const QImage& image = textImages->image();
    if (image.isNull())
        return;
    shader.use();
    glBindTexture(GL_TEXTURE_2D, textTexture);

    const QOpenGLPixelTransferOptions previous = savePixelTransfer();
    QOpenGLPixelTransferOptions options;
    options.setAlignment(1);
    applyPixelTransfer(options);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RED, image.width(), image.height(), 0, GL_RED, GL_UNSIGNED_BYTE,
                 image.constBits());
    applyPixelTransfer(previous);

    glGenerateMipmap(GL_TEXTURE_2D);
    textRows = textImages->texRowNum();
    textCols = textImages->texColNum();
}

QOpenGLTexture* View::textureForPath(const QString& path)
{
    if (const auto known = imageTextures.value(path))
        return known.data();
    QImage image(path);
    if (image.isNull() || !glReady)
        return nullptr;

    constexpr int greatestEdge = 256;
    if (image.width() > greatestEdge || image.height() > greatestEdge)
        image = image.scaled(greatestEdge, greatestEdge);
    const CurrentContextGuard current(*this);
    const auto texture = QSharedPointer<QOpenGLTexture>::create(image.mirrored());
    texture->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::Linear);
    texture->setWrapMode(QOpenGLTexture::Repeat);
    imageTextures.insert(path, texture);
    return texture.data();
}

void View::destroyGLObjects()
{
    if (!imageTextures.isEmpty()) {
        const CurrentContextGuard current(*this);
        imageTextures.clear();
    }
    BaseGLView::destroyGLObjects();
}

} // namespace NELK
