#pragma once

namespace NELK
{

/// Builds both atlases, the entity icons first; returns when that is done. False, and nothing done, if they have been
/// started in this process before.
bool startAtlases();

} // namespace NELK
