# Compiler settings that hold for everything in the tree.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

add_library(wq_warnings INTERFACE)
target_compile_options(wq_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(wq_warnings INTERFACE -Wno-restrict)  # g++ 12 sees overlaps where strings are joined
endif()
if(PROJECT_IS_TOP_LEVEL)
  target_compile_options(wq_warnings INTERFACE -Werror)
endif()

if(WQ_SANITIZERS)
  add_compile_options(-fsanitize=${WQ_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${WQ_SANITIZERS})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)  # g++ 12 sees what is not there, in std::variant and std::regex
  endif()
endif()
if(WQ_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()
