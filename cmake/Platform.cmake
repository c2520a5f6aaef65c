# SPDX-License-Identifier: MIT
# Finds DirectFB's header and the logging library.
if(NOT KOVA_DIRECTFB_INCLUDE_DIR)
    find_package(PkgConfig REQUIRED)
    pkg_get_variable(KOVA_DIRECTFB_PREFIX_INCLUDE directfb includedir)
    find_path(KOVA_PUBLISHED_DIRECTFB directfb.h
        HINTS ${KOVA_DIRECTFB_PREFIX_INCLUDE} PATH_SUFFIXES directfb
        DOC "Folder of the published directfb.h")
    set(KOVA_DIRECTFB_INCLUDE_DIR ${KOVA_PUBLISHED_DIRECTFB})
endif()
if(NOT EXISTS ${KOVA_DIRECTFB_INCLUDE_DIR}/directfb.h)
    message(FATAL_ERROR "No directfb.h in '${KOVA_DIRECTFB_INCLUDE_DIR}'. Install libdirectfb-dev, or set "
        "-DKOVA_DIRECTFB_INCLUDE_DIR=DIR to the folder of the platform's header.")
endif()

set(KOVA_UTILITY kova_utility)
if(KOVA_UTILITY_LIBRARY)
    if(NOT EXISTS ${KOVA_UTILITY_LIBRARY})
        message(FATAL_ERROR "No file '${KOVA_UTILITY_LIBRARY}': set -DKOVA_UTILITY_LIBRARY=FILE to the platform's "
            "libUtility.so, or omit it to use the bundled stub.")
    endif()
    # Linked by its file name, so that the library depends on this name even if the file has no SONAME.
    get_filename_component(utility_dir ${KOVA_UTILITY_LIBRARY} DIRECTORY)
    get_filename_component(utility_name ${KOVA_UTILITY_LIBRARY} NAME)
    add_library(kova_platform_utility INTERFACE)
    target_link_options(kova_platform_utility INTERFACE -L${utility_dir})
    target_link_libraries(kova_platform_utility INTERFACE -l:${utility_name})
    set(KOVA_UTILITY kova_platform_utility)
endif()
