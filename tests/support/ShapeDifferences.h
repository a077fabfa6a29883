#pragma once

#include "scene/EdgeData.h"

#include <QString>

namespace NELK
{

/// Names the points, matrices and sizes that make up the shape of an edge and are not exactly alike in `one` and
/// `other`; empty if the two look the same.
inline QString shapeDifferences(const EdgeData& one, const EdgeData& other)
{
    QString names;
    const auto comparePoint = [&names](const char* name, QVector2D a, QVector2D b) {
        if (a.x() != b.x() || a.y() != b.y())
            names += QStringLiteral("%1 ").arg(name);
    };
    const auto compare = [&names](const char* name, const auto& a, const auto& b) {
        if (a != b)
            names += QStringLiteral("%1 ").arg(name);
    };
    comparePoint("startPos", one.startPos, other.startPos);
    comparePoint("endPos", one.endPos, other.endPos);
    comparePoint("centerPos", one.centerPos, other.centerPos);
    comparePoint("lineStart", one.frame.lineStart, other.frame.lineStart);
    comparePoint("lineEnd", one.frame.lineEnd, other.frame.lineEnd);
    comparePoint("offsetStartA", one.frame.offsetStartA, other.frame.offsetStartA);
    comparePoint("offsetEndA", one.frame.offsetEndA, other.frame.offsetEndA);
    comparePoint("offsetStartB", one.frame.offsetStartB, other.frame.offsetStartB);
    comparePoint("offsetEndB", one.frame.offsetEndB, other.frame.offsetEndB);
    comparePoint("arrowStartBase", one.frame.arrowStartBase, other.frame.arrowStartBase);
    comparePoint("arrowEndBase", one.frame.arrowEndBase, other.frame.arrowEndBase);
    comparePoint("curveStartPos", one.curveStartPos, other.curveStartPos);
    comparePoint("curveEndPos", one.curveEndPos, other.curveEndPos);
    compare("lineAngle", one.frame.lineAngle, other.frame.lineAngle);
    compare("lineMatrix", one.lineMatrix, other.lineMatrix);
    compare("segmentMatrix0", one.segmentMatrix0, other.segmentMatrix0);
    compare("segmentMatrix1", one.segmentMatrix1, other.segmentMatrix1);
    compare("segmentMatrix2", one.segmentMatrix2, other.segmentMatrix2);
    compare("startArrowMatrix", one.startArrowMatrix, other.startArrowMatrix);
    compare("endArrowMatrix", one.endArrowMatrix, other.endArrowMatrix);
    compare("ringDiameter", one.ringDiameter, other.ringDiameter);
    return names;
}

} // namespace NELK
