#pragma once

/// Whether start-up (`HSVNInitializeWithOptions`) has begun.
bool HSVNIsInitialized();
