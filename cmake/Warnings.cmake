# What every target of this project is compiled with. Records have defaults and are made with the
# fields that differ, so a field that is left out is no mistake.
add_library(pelorino_warnings INTERFACE)
target_compile_options(
  pelorino_warnings
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
            -Woverloaded-virtual -Werror -Wno-missing-field-initializers -ffunction-sections -fdata-sections
            $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)

if(PELORINO_SANITIZE)
  add_compile_options(-fsanitize=${PELORINO_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PELORINO_SANITIZE})
endif()
