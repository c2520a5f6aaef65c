# SPDX-License-Identifier: MIT
# Compiler options of every target of the project.
add_library(kova_warnings INTERFACE)
target_compile_options(kova_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(kova_warnings INTERFACE -Wthread-safety)
endif()

option(KOVA_WERROR "Treat warnings as errors" OFF)
if(KOVA_WERROR)
    target_compile_options(kova_warnings INTERFACE -Werror)
endif()

# Callers may pass values outside an enumeration through the interface, so -fsanitize=enum is off.
set(KOVA_SANITIZE "" CACHE STRING "Sanitizers to build with, in the syntax of -fsanitize=")
set(KOVA_NO_UNDEFINED -Wl,-z,defs)
if(KOVA_SANITIZE)
    add_compile_options(-fsanitize=${KOVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -fno-sanitize=enum)
    add_link_options(-fsanitize=${KOVA_SANITIZE})
    set(KOVA_NO_UNDEFINED "") # the sanitizer runtime is resolved when the program starts
endif()
