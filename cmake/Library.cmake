# libpelorino.so: the rows of public classes whole, and of the rows below what these reach.

add_library(pelorino SHARED $<TARGET_OBJECTS:pelorino_core> $<TARGET_OBJECTS:pelorino_external>)
add_library(Pelorino::pelorino ALIAS pelorino)
target_link_libraries(pelorino PRIVATE pelorino_external pelorino_core)
target_compile_features(pelorino INTERFACE cxx_std_20)

get_property(views GLOBAL PROPERTY PELORINO_PUBLIC_VIEWS)
target_include_directories(pelorino INTERFACE "$<BUILD_INTERFACE:${views}>"
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

set(exports ${PROJECT_SOURCE_DIR}/cmake/pelorino.exports)
set_target_properties(
  pelorino
  PROPERTIES LINKER_LANGUAGE CXX
             VERSION ${PROJECT_VERSION}
             SOVERSION ${PROJECT_VERSION_MAJOR}
             LINK_DEPENDS ${exports})

# A host may unload what it has loaded while a thread of the library still runs: nodelete keeps the
# code in place. now: names are looked up at load, not during the host's first calls.
target_link_options(pelorino PRIVATE -Wl,--version-script=${exports} -Wl,-z,nodelete -Wl,-z,now
                    -Wl,--gc-sections -Wl,--as-needed)
# Addresses that are filled in at load take a bit each instead of 24 bytes, where the linker can.
# One that does not know the word only warns.
include(CheckLinkerFlag)
check_linker_flag(CXX -Wl,--fatal-warnings,-z,pack-relative-relocs PELORINO_PACKS_RELOCATIONS)
if(PELORINO_PACKS_RELOCATIONS)
  target_link_options(pelorino PRIVATE -Wl,-z,pack-relative-relocs)
endif()
if(NOT PELORINO_SANITIZE)
  # The runtimes of the sanitizers are in the program, so that a library cannot name them all.
  target_link_options(pelorino PRIVATE -Wl,--no-undefined)
endif()

# ---- The installed package ----

include(CMakePackageConfigHelpers)
get_property(headers GLOBAL PROPERTY PELORINO_PUBLIC_HEADERS)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Pelorino)

install(TARGETS pelorino EXPORT PelorinoTargets)
install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pelorino)
install(EXPORT PelorinoTargets NAMESPACE Pelorino:: DESTINATION ${package})

configure_package_config_file(cmake/PelorinoConfig.cmake.in PelorinoConfig.cmake
                              INSTALL_DESTINATION ${package} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(PelorinoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/PelorinoConfig.cmake
              ${PROJECT_BINARY_DIR}/PelorinoConfigVersion.cmake DESTINATION ${package})

# Paths relative to the file itself, so that the installed tree can be moved.
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_prefix /prefix/${pkgconfig_folder} /prefix)
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix ${pkgconfig_to_prefix})
configure_file(cmake/pelorino.pc.in pelorino.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/pelorino.pc DESTINATION ${pkgconfig_folder})
