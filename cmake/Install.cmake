# SPDX-License-Identifier: MIT
# What `cmake --install` installs: the library with its headers, pkg-config file and CMake package, and the tool. The
# stub logging library is for development machines and optional: on a device it would hide the real one.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS kova_textdisp LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
if(KOVA_INSTALL_UTILITY)
    if(NOT TARGET kova_utility)
        message(FATAL_ERROR "-DKOVA_INSTALL_UTILITY=ON installs the bundled stub, but -DKOVA_UTILITY_LIBRARY selects "
            "the platform's library: use only one of the two options.")
    endif()
    install(TARGETS kova_utility LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT utility)
endif()

install(FILES
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp_types.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp_dfb.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kova COMPONENT development)

# Written by hand: an exported target would contain the logging library of the build machine.
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KovaTextDisplay)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KovaTextDisplayConfig.cmake.in
    ${PROJECT_BINARY_DIR}/KovaTextDisplayConfig.cmake INSTALL_DESTINATION ${package_dir}
    PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KovaTextDisplayConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
        ${PROJECT_BINARY_DIR}/KovaTextDisplayConfig.cmake
        ${PROJECT_BINARY_DIR}/KovaTextDisplayConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)

# Filled in at installation, because `cmake --install --prefix` can change the prefix.
foreach(name PROJECT_DESCRIPTION PROJECT_VERSION CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
    install(CODE "set(${name} \"${${name}}\")" COMPONENT development)
endforeach()
install(CODE "configure_file(\"${PROJECT_SOURCE_DIR}/cmake/kova_textdisp.pc.in\"
    \"${PROJECT_BINARY_DIR}/kova_textdisp.pc\" @ONLY)" COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/kova_textdisp.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(KOVA_BUILD_TOOLS)
    install(TARGETS kova-caption RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    if(TARGET kova_caption_reference)
        set(reference ${PROJECT_BINARY_DIR}/tools/kova-caption)
        install(FILES ${reference}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
        install(FILES ${reference}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME kova-caption COMPONENT tool)
    endif()
endif()
