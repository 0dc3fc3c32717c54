# What nearly every file includes, parsed once for a target instead of once for each of its files.
# Files still include what they use: builds without this, such as g++'s, which gains nothing by it,
# hold them to that.
option(PELORINO_PRECOMPILED_HEADERS "Compile common headers once a target: for clang" OFF)

# pelorino_precompile(TARGET [HEADER...]): the standard library, and these too.
function(pelorino_precompile target)
  if(PELORINO_PRECOMPILED_HEADERS)
    target_precompile_headers(
      ${target} PRIVATE <algorithm> <chrono> <cstdint> <functional> <map> <memory> <mutex> <optional>
                        <span> <string> <string_view> <utility> <variant> <vector> ${ARGN})
  endif()
endfunction()
