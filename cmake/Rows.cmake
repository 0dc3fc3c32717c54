# A row of the architecture is one static library. It publishes its own folders as include
# directories and links the rows below it, so an include of a row above has no path to resolve to.
#
#   pelorino_row(NAME database FOLDERS components/Database/Sqlite ... BELOW runtime PRIVATE SQLite::SQLite3)
#
# File names are unique in the tree: headers are included by their plain name.

set_property(GLOBAL PROPERTY PELORINO_ROWS "")

function(pelorino_row)
  cmake_parse_arguments(ROW "" "NAME" "FOLDERS;BELOW;PRIVATE;FAST" ${ARGN})
  set(target pelorino_${ROW_NAME})
  set(sources)
  set(directories)
  foreach(folder IN LISTS ROW_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND sources ${found})
    list(APPEND directories ${PROJECT_SOURCE_DIR}/${folder})
  endforeach()

  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE pelorino_warnings ${ROW_PRIVATE})
    set(common_headers)
    if("fmt::fmt-header-only" IN_LIST ROW_PRIVATE)
      set(common_headers <fmt/format.h>)
    endif()
    pelorino_precompile(${target} ${common_headers})
    # For size: whoever embeds the library carries it along, and the store and the network take most
    # of its time. FAST names the files on the road of a call, which the host waits for.
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-Os>)
    list(TRANSFORM ROW_FAST PREPEND ${PROJECT_SOURCE_DIR}/)
    set_source_files_properties(${ROW_FAST} PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-O2>)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${directories})
  foreach(below IN LISTS ROW_BELOW)
    target_link_libraries(${target} ${scope} pelorino_${below})
  endforeach()
  set_target_properties(${target} PROPERTIES PELORINO_FOLDERS "${ROW_FOLDERS}" PELORINO_BELOW
                                                                            "${ROW_BELOW}")
  set_property(GLOBAL APPEND PROPERTY PELORINO_ROWS ${target})
endfunction()

# Public headers are included as <pelorino/Name.h>, in this tree as in an installed one. A row of
# public headers is a view of its folders under that name.
function(pelorino_public_headers target)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL INTERFACE_LIBRARY)
    set(scope INTERFACE)
  else()
    set(scope PUBLIC)
  endif()
  set(view ${PROJECT_BINARY_DIR}/public/${target})
  file(REMOVE_RECURSE ${view})
  file(MAKE_DIRECTORY ${view}/pelorino)
  foreach(folder IN LISTS ARGN)
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/PLR*.h
         ${PROJECT_SOURCE_DIR}/${folder}/SK*.h)
    foreach(header IN LISTS headers)
      get_filename_component(name ${header} NAME)
      file(CREATE_LINK ${header} ${view}/pelorino/${name} SYMBOLIC)
    endforeach()
    set_property(GLOBAL APPEND PROPERTY PELORINO_PUBLIC_HEADERS ${headers})
  endforeach()
  target_include_directories(${target} ${scope} $<BUILD_INTERFACE:${view}>)
  set_property(GLOBAL APPEND PROPERTY PELORINO_PUBLIC_VIEWS ${view})
endfunction()
