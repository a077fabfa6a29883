#pragma once

namespace NELK
{

/// What a hit does to the selection.
enum SelectMode
{
    /// The elements hit are selected and all others are not.
    SELECT_REPLACE = 0,
    /// A click flips the element hit; a frame selects the elements hit. Nothing else changes.
    SELECT_ADD = 1,
    /// The elements hit are deselected. Nothing else changes.
    SELECT_REMOVE = 2
};

} // namespace NELK
