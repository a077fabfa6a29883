#pragma once

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x4.hpp>

namespace NELK
{

/// Sixteen floats in four columns, the identity unless told otherwise.
///
/// A type of its own rather than an alias, because glm::mat4 leaves its values undefined on default construction.
struct Mat4
{
    glm::mat4 columns{1.0f};

    /// The sixteen floats, column after column, as OpenGL takes them.
    const float* data() const { return glm::value_ptr(columns); }

    bool operator==(const Mat4& other) const { return columns == other.columns; }
    bool operator!=(const Mat4& other) const { return columns != other.columns; }
};

// Each of these multiplies on the right, so that a sequence reads in the order in which it is written.

inline Mat4 translate(const Mat4& matrix, const glm::vec3& offset)
{
    return {glm::translate(matrix.columns, offset)};
}

inline Mat4 scale(const Mat4& matrix, const glm::vec3& factors)
{
    return {glm::scale(matrix.columns, factors)};
}

/// `angle` is in radians; `axis` need not have length 1.
inline Mat4 rotate(const Mat4& matrix, float angle, const glm::vec3& axis)
{
    return {glm::rotate(matrix.columns, angle, axis)};
}

} // namespace NELK
