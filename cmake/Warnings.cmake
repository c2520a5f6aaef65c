# SPDX-License-Identifier: MIT
# What every target of the project is compiled with.
add_library(kova_warnings INTERFACE)
target_compile_options(kova_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(kova_warnings INTERFACE -Wthread-safety)
endif()

option(KOVA_WERROR "Treat warnings as errors" OFF)
if(KOVA_WERROR)
    target_compile_options(kova_warnings INTERFACE -Werror)
endif()

# Enumerations carry values outside their enumerators through the interface, so that check stays out.
set(KOVA_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
set(KOVA_NO_UNDEFINED -Wl,-z,defs)
if(KOVA_SANITIZE)
    add_compile_options(-fsanitize=${KOVA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -fno-sanitize=enum)
    add_link_options(-fsanitize=${KOVA_SANITIZE})
    set(KOVA_NO_UNDEFINED "") # the sanitizers' run-time is found when the program starts
endif()
