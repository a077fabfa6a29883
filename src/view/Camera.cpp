#include "view/Camera.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace NELK
{

namespace
{

constexpr float tolerance = std::numeric_limits<float>::epsilon();

bool isSame(float a, float b)
{
    return std::abs(a - b) <= tolerance;
}

/// Whether a pan by `distance` pixels goes somewhere from `position`: not by less than a pixel, nor on from the limit.
bool canMove(float distance, float position, float limit)
{
    if (std::abs(distance) < 1.0f)
        return false;
    const float room = distance > 0.0f ? limit - position : limit + position;
    return std::abs(room) >= 1.0f;
}

/// How far the camera may stand off the middle. A view that spans more than the scene may still move by the difference.
float limitOf(int sceneLength, int screenLength, float scale)
{
    return std::abs(static_cast<float>(sceneLength) - static_cast<float>(screenLength) / scale) * 0.5f;
}

} // namespace

void Camera::setPosition(float x, float y)
{
    if (std::isnan(x) || std::isnan(y))
        return;
    m_position = {x, y};
    keepWithinLimits();
}

bool Camera::moveX(float distance)
{
    if (!canMove(distance, m_position.x(), m_limitX))
        return false;
    const float x = m_position.x() + distance / m_scale;
    m_position.setX(m_limited ? std::clamp(x, -m_limitX, m_limitX) : x);
    return true;
}

bool Camera::moveY(float distance)
{
    if (!canMove(distance, m_position.y(), m_limitY))
        return false;
    m_position.setY(std::clamp(m_position.y() + distance / m_scale, -m_limitY, m_limitY));
    return true;
}

bool Camera::rotate(int /*angle*/)
{
    return false;
}

void Camera::reset()
{
    setScale(m_minScale);
    setPosition(0.0f, 0.0f);
}

void Camera::setScale(float newScale)
{
    // Before the first resize there is no range, and a scale of 0 would be the only one within it.
    if (m_maxScale > 0.0f && !std::isnan(newScale))
        m_scale = std::clamp(newScale, m_minScale, m_maxScale);
    updateLimits();
    keepWithinLimits();
}

bool Camera::zoomStep(bool in, float factor)
{
    if (isSame(m_scale, in ? m_maxScale : m_minScale))
        return false;
    setScale(in ? m_scale * factor : m_scale / factor);
    return true;
}

bool Camera::zoomToRatio(float ratio)
{
    const float target = (m_maxScale - m_minScale) * (1.0f - ratio) + m_minScale;
    if (isSame(target, m_scale))
        return false;
    setScale(target);
    return true;
}

void Camera::setScreenSize(int width, int height)
{
    m_screenWidth = width;
    m_screenHeight = height;
    updateLimits();
}

void Camera::setSceneSize(int width, int height)
{
    m_sceneWidth = width;
    m_sceneHeight = height;
    updateLimits();
}

void Camera::setScaleRange(float least, float greatest, float step)
{
    m_minScale = least;
    m_maxScale = greatest;
    m_scaleStep = step;
}

Mat4 Camera::viewMatrix() const
{
    const Mat4 moved = NELK::translate({}, {-m_position.x() * m_scale, -m_position.y() * m_scale, 0.0f});
    return NELK::scale(moved, {m_scale, m_scale, 0.0f});
}

void Camera::updateLimits()
{
    m_limitX = limitOf(m_sceneWidth, m_screenWidth, m_scale);
    m_limitY = limitOf(m_sceneHeight, m_screenHeight, m_scale);
}

void Camera::keepWithinLimits()
{
    if (m_limited)
        m_position = {std::clamp(m_position.x(), -m_limitX, m_limitX), std::clamp(m_position.y(), -m_limitY, m_limitY)};
}

} // namespace NELK
