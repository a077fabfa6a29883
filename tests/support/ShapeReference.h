#pragma once

#include "scene/Mat4.h"
#include "support/PlanePoint.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace NELK
{

// What the pieces of an edge should look like, by plain trigonometry in doubles.

/// Where a matrix takes a point of the plane.
inline PlanePoint mapped(const Mat4& matrix, PlanePoint point)
{
    const float* m = matrix.data();
    return {m[0] * point.x + m[4] * point.y + m[12], m[1] * point.x + m[5] * point.y + m[13]};
}

using Quad = std::array<PlanePoint, 4>;
using Triangle = std::array<PlanePoint, 3>;

inline const Quad unitQuad{{{-0.5, 0.5}, {0.5, 0.5}, {0.5, -0.5}, {-0.5, -0.5}}};
inline const Triangle arrowMesh{{{-0.5, 0.4}, {-0.5, -0.4}, {0.5, 0.0}}};

/// The corners of a line from `start` to `end` that is `lengthening` longer than the way between them.
inline Quad quadReference(PlanePoint start, PlanePoint end, double width, double lengthening)
{
    const PlanePoint way = end - start;
    const PlanePoint along = directionAt(std::atan2(way.y, way.x));
    const PlanePoint alongHalf = along * ((length(way) + lengthening) * 0.5);
    const PlanePoint acrossHalf = quarterTurnLeft(along) * (width * 0.5);
    const PlanePoint middle = (start + end) * 0.5;
    return {middle - alongHalf + acrossHalf, middle + alongHalf + acrossHalf, middle + alongHalf - acrossHalf,
            middle - alongHalf - acrossHalf};
}

/// The corners of an arrow head at `position` that points along `angle`.
inline Triangle arrowReference(PlanePoint position, double angle, double width)
{
    const double size = width * 1.25 + 88.0;
    const PlanePoint along = directionAt(angle) * size;
    const PlanePoint across = quarterTurnLeft(along);
    Triangle corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        corners[i] = position + along * arrowMesh[i].x + across * arrowMesh[i].y;
    return corners;
}

/// What is wrong with the places to which `matrix` takes the corners of a mesh, in their order; empty if nothing is.
template <typename Corners>
QString meshComplaint(const char* what, const Mat4& matrix, const Corners& mesh, const Corners& reference, double bound)
{
    QString complaint;
    for (std::size_t i = 0; i < mesh.size(); ++i)
        complaint += complaintAbout(what, mapped(matrix, mesh[i]), reference[i], bound);
    return complaint;
}

inline QString quadComplaint(const char* what, const Mat4& matrix, const Quad& reference, double bound)
{
    return meshComplaint(what, matrix, unitQuad, reference, bound);
}

inline QString arrowComplaint(const char* what, const Mat4& matrix, const Triangle& reference, double bound)
{
    return meshComplaint(what, matrix, arrowMesh, reference, bound);
}

/// Where the ends and arrow heads of a line stand.
struct FrameReference
{
    FrameReference(PlanePoint start, PlanePoint end, double radius)
    {
        const PlanePoint way = end - start;
        const PlanePoint toRim = way * (radius / length(way));
        right = quarterTurnRight(toRim);
        lineStart = start + toRim;
        lineEnd = end - toRim;
        arrowStartBase = start + toRim * 1.4;
        arrowEndBase = end - toRim * 1.4;
        angle = std::atan2(way.y, way.x);
    }

    PlanePoint lineStart, lineEnd;
    PlanePoint arrowStartBase, arrowEndBase;
    /// One radius to the right of the way from start to end, y up.
    PlanePoint right;
    double angle = 0.0;
};

} // namespace NELK
