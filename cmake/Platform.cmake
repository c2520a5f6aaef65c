# SPDX-License-Identifier: MIT
# Where DirectFB's header and the logging library are.
if(NOT KOVA_DIRECTFB_INCLUDE_DIR)
    find_package(PkgConfig REQUIRED)
    pkg_get_variable(KOVA_DIRECTFB_PREFIX_INCLUDE directfb includedir)
    find_path(KOVA_PUBLISHED_DIRECTFB directfb.h
        HINTS ${KOVA_DIRECTFB_PREFIX_INCLUDE} PATH_SUFFIXES directfb
        DOC "Folder of the published directfb.h")
    set(KOVA_DIRECTFB_INCLUDE_DIR ${KOVA_PUBLISHED_DIRECTFB})
endif()
if(NOT EXISTS ${KOVA_DIRECTFB_INCLUDE_DIR}/directfb.h)
    message(FATAL_ERROR "No directfb.h in '${KOVA_DIRECTFB_INCLUDE_DIR}'. Install libdirectfb-dev, or give the folder "
        "of the platform's header with -DKOVA_DIRECTFB_INCLUDE_DIR=DIR.")
endif()

set(KOVA_UTILITY kova_utility)
if(KOVA_UTILITY_LIBRARY)
    if(NOT EXISTS ${KOVA_UTILITY_LIBRARY})
        message(FATAL_ERROR "No file '${KOVA_UTILITY_LIBRARY}': give -DKOVA_UTILITY_LIBRARY=FILE the platform's "
            "libUtility.so, or leave it out for the bundled stand-in.")
    endif()
    # By its name, so that it is needed by name at run time also when the file carries none.
    get_filename_component(utility_dir ${KOVA_UTILITY_LIBRARY} DIRECTORY)
    get_filename_component(utility_name ${KOVA_UTILITY_LIBRARY} NAME)
    add_library(kova_platform_utility INTERFACE)
    target_link_options(kova_platform_utility INTERFACE -L${utility_dir})
    target_link_libraries(kova_platform_utility INTERFACE -l:${utility_name})
    set(KOVA_UTILITY kova_platform_utility)
endif()
