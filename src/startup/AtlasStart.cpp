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
    for (const qint32 index : {ImageManager::entityIndex, ImageManager::wordIndex})
        ImageManager::instance(index)->startInitial();
    atlasesStarted = true;
    return true;
}

} // namespace NELK
