# SPDX-License-Identifier: MIT
# What `cmake --install` installs: each library with its headers, pkg-config file and CMake package, and the tool. The
# stub logging library is for development machines and optional: on a device it would hide the real one.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS kova_textdisp kova_captions LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
if(KOVA_INSTALL_UTILITY)
    if(NOT TARGET kova_utility)
        message(FATAL_ERROR "-DKOVA_INSTALL_UTILITY=ON installs the bundled stub, but -DKOVA_UTILITY_LIBRARY selects "
            "the platform's library: use only one of the two options.")
    endif()
    install(TARGETS kova_utility LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT utility)
endif()

install(FILES
        ${PROJECT_SOURCE_DIR}/include/kova/kova_captions.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_captions_carriage.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_captions_draw.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_captions_settings.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp_types.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp.h
        ${PROJECT_SOURCE_DIR}/include/kova/kova_textdisp_dfb.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kova COMPONENT development)

# Written by hand: an exported target would contain the logging library of the build machine.
function(kova_install_package library package)
    set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
    configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/${package}Config.cmake.in
        ${PROJECT_BINARY_DIR}/${package}Config.cmake INSTALL_DESTINATION ${package_dir}
        PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
        COMPATIBILITY SameMinorVersion)
    install(FILES
            ${PROJECT_BINARY_DIR}/${package}Config.cmake
            ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

    # Filled in at installation, because `cmake --install --prefix` can change the prefix.
    foreach(name PROJECT_DESCRIPTION PROJECT_VERSION CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
        install(CODE "set(${name} \"${${name}}\")" COMPONENT development)
    endforeach()
    install(CODE "configure_file(\"${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in\"
        \"${PROJECT_BINARY_DIR}/${library}.pc\" @ONLY)" COMPONENT development)
    install(FILES ${PROJECT_BINARY_DIR}/${library}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
kova_install_package(kova_textdisp KovaTextDisplay)
kova_install_package(kova_captions KovaCaptions)

if(KOVA_BUILD_TOOLS)
    install(TARGETS kova-caption RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    if(TARGET kova_caption_reference)
        set(reference ${PROJECT_BINARY_DIR}/tools/kova-caption)
        install(FILES ${reference}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
        install(FILES ${reference}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME kova-caption COMPONENT tool)
    endif()
endif()
