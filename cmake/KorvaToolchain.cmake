# Compiler launcher, warnings and sanitizer settings shared by every target.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

# Warnings are errors everywhere; third-party headers come in as SYSTEM includes.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                    -Wcast-align -Woverloaded-virtual
                    -Wimplicit-fallthrough -Werror)

set(KORVA_SANITIZE "" CACHE STRING "Sanitizers to build with (for example address,undefined)")
if(KORVA_SANITIZE)
  add_compile_options(-fsanitize=${KORVA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${KORVA_SANITIZE})
endif()

# Link with --no-undefined so that a missing definition in a shared library fails the build.
if(NOT KORVA_SANITIZE)
  add_link_options(LINKER:--as-needed)
endif()
