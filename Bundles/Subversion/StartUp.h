#pragma once

namespace HSVNAdapter {

/// Starts APR and the line's libraries, once in the life of the process; whether they run.
bool startLibraries();

} // namespace HSVNAdapter
