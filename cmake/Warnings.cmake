# What every target of this project is compiled with.
add_library(pelorino_warnings INTERFACE)
target_compile_options(
  pelorino_warnings
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
            -Woverloaded-virtual -Werror -ffunction-sections -fdata-sections
            $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

if(PELORINO_SANITIZE)
  add_compile_options(-fsanitize=${PELORINO_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PELORINO_SANITIZE})
endif()
