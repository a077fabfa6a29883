#include "startup/AtlasStart.h"

#include "atlas/ImageManager.h"

namespace NELK
{

namespace
{

bool atlasesStarted = false;

} // namespace

bool startAtlases()
{
    if (atlasesStarted)
        return false;
    for (const int index : {0, 1})
        ImageManager::instance(index)->startInitial();
    atlasesStarted = true;
    return true;
}

} // namespace NELK
