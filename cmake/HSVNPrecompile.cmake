# Precompiled headers: what nearly every source includes of other people's libraries is parsed once for each kind of
# target. No header of the project is among them, so that editing one compiles again what includes it and nothing else.

option(HSVN_PRECOMPILE "Precompile other libraries' headers; off, a source that misses an include of one fails" ON)

# hsvn_precompile(target header...) makes a precompiled header of its own for a target of C++ sources.
function(hsvn_precompile target)
  if(HSVN_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cstdint> <filesystem> <functional> <limits> <map>
                              <memory> <optional> <string> <string_view> <system_error> <utility> <vector> ${ARGN})
  endif()
endfunction()
