#pragma once

#include <QImage>
#include <QWidget>

class QLabel;

namespace NELK
{

class Scene;
class ViewEyePrivate;

/// The overview: the whole scene in small, under a rectangle that shows what the main view shows. It emits the user's
/// wishes for the camera of the main view, and follows that camera only through slotViewWatchedChanged().
class ViewEye : public QWidget
{
    Q_OBJECT

public:
    ViewEye(Scene* shownScene, QWidget* parent);

    /// In pixels of the parent.
    void placeEye(int x, int y, int width, int height);
    /// Takes the scene's present size.
    void refreshEye();
    void updateEye();
    QImage grabEye() const;

Q_SIGNALS:
    /// By scene units, y up.
    void signalEyeWatchedMoved(const QPoint& delta);
    /// A point of the scene plane.
    void signalEyeWatchedCenterChanged(const QPointF& viewOri);
    /// The share of the scene that the main view is to show.
    void signalEyeWatchedScaleChanged(float scale);

protected Q_SLOTS:
    void slotViewWatchedChanged(const QRect& rect, float percentage);

private:
    QLabel* m_watched;
    ViewEyePrivate* m_private;
};

} // namespace NELK
