#pragma once

#include "scene/Mat4.h"

#include <QVector2D>

namespace NELK
{

/// Where a view looks: the scene point in its middle, the scale, and how far both may go.
///
/// Positions are in scene units, y up; the scale is in pixels a scene unit. Out-of-range values are clamped in silence,
/// and what is no number is passed over.
/// With the limit on, the default, the position stays in a range around the middle of the scene that follows from the
/// scale and the sizes: half of the difference between what the scene and the view span.
class Camera
{
public:
    float scale() const { return m_scale; }
    QVector2D position() const { return m_position; }
    float limitX() const { return m_limitX; }
    float limitY() const { return m_limitY; }
    float maxScale() const { return m_maxScale; }

    void setPosition(float x, float y);
    /// Pans by `distance` pixels to the right. False, and nothing done, for less than a pixel and at the limit, which
    /// counts here even while it is off.
    bool moveX(float distance);
    /// Pans by `distance` pixels upward, as moveX; but never beyond the limit, even while it is off.
    bool moveY(float distance);
    /// The picture does not turn: changes nothing and returns false.
    bool rotate(int angle);
    /// The least scale, and the middle of the scene.
    void reset();

    void setScale(float newScale);
    /// Multiplies the scale by `factor` or, where `in` is false, divides it. False, and nothing done, at the end of the
    /// range.
    bool zoomStep(bool in, float factor);
    /// Takes the scale that lies at `ratio` on the way from the greatest to the least. False if it is the present one.
    bool zoomToRatio(float ratio);

    /// Takes effect with the next change of position or scale.
    void setLimited(bool on) { m_limited = on; }
    /// In pixels.
    void setScreenSize(int width, int height);
    /// In scene units.
    void setSceneSize(int width, int height);
    /// `step` is kept and read by nothing. The scale stays as it is.
    void setScaleRange(float least, float greatest, float step);

    /// From the scene plane to pixels around the middle of the view, y up. Flattens z.
    Mat4 viewMatrix() const;

private:
    void updateLimits();
    void keepWithinLimits();

    bool m_limited = true;
    float m_scale = 1.0f;
    QVector2D m_position;
    float m_minScale = 0.0f;
    float m_maxScale = 0.0f;
    float m_scaleStep = 0.0f;
    float m_limitX = 0.0f;
    float m_limitY = 0.0f;
    int m_screenWidth = 0;
    int m_screenHeight = 0;
    int m_sceneWidth = 0;
    int m_sceneHeight = 0;
};

} // namespace NELK
