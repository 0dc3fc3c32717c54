# What nearly every file includes, parsed once instead of once for each file. Files still include
# what they use: builds without this, such as g++'s, which gains nothing by it, hold them to that.
option(PELORINO_PRECOMPILED_HEADERS "Compile common headers once: for clang" OFF)

# pelorino_precompile(TARGET [HEADER...]): the standard library, and these too. Targets of one kind
# with the same headers share what is compiled.
function(pelorino_precompile target)
  if(NOT PELORINO_PRECOMPILED_HEADERS)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  string(MD5 key "${type} ${ARGN}")
  set(shared pelorino_headers_${key})
  if(NOT TARGET ${shared})
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/headers/${key}.cpp CONTENT "")
    add_library(${shared} OBJECT ${PROJECT_BINARY_DIR}/headers/${key}.cpp)
    # The headers' own definitions must be the same as where they are used.
    target_link_libraries(${shared} PRIVATE pelorino_warnings)
    if("<fmt/format.h>" IN_LIST ARGN)
      target_link_libraries(${shared} PRIVATE fmt::fmt-header-only)
    endif()
    if("<gtest/gtest.h>" IN_LIST ARGN)
      target_link_libraries(${shared} PRIVATE GTest::gtest)
    endif()
    if(type STREQUAL EXECUTABLE)
      set_target_properties(${shared} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
      target_compile_options(${shared} PRIVATE -fPIE)
    endif()
    target_precompile_headers(
      ${shared} PRIVATE <algorithm> <chrono> <cstdint> <functional> <map> <memory> <mutex> <optional>
                        <span> <string> <string_view> <utility> <variant> <vector> ${ARGN})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()
