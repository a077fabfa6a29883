#pragma once

/// What a name stands for when a cell of the entity atlas is asked for.
enum E_IMAGE_KIND
{
    /// The name of an entity icon.
    IMAGE_ENTITY = 0,
    /// One of the three badges; the name does not matter.
    IMAGE_FOCUS = 1,
    IMAGE_LOCK = 2,
    IMAGE_COMBINE = 3,
    /// The name of a float icon.
    IMAGE_FLOAT = 4,
    /// The path of any image file.
    IMAGE_FILE = 5
};
