#pragma once

#include <QImage>
#include <QPolygon>
#include <QWidget>

namespace NELK
{

/// The button that folds the overview away and brings it back: a triangle in one half of its square, which turns over
/// with each press.
class TriangleWidget : public QWidget
{
    Q_OBJECT

public:
    /// Of the square that the button takes.
    static constexpr int edgeLength = 28;

    explicit TriangleWidget(QWidget* parent);

    QSize sizeHint() const override { return {edgeLength, edgeLength}; }
    /// Emits signalOn(), also when nothing changed.
    void setOn(bool on);

Q_SIGNALS:
    void signalOn(bool on);

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void shape();
    void setHover(bool hover);

    /// What is painted, and what takes the mouse.
    QPolygon m_polygon;
    bool m_hover = false;
    QImage m_expand;
    QImage m_expandHover;
    QImage m_fold;
    QImage m_foldHover;
    /// The overview is there, and a press folds it away.
    bool m_on = true;
};

} // namespace NELK
