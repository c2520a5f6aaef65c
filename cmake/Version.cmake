# SPDX-License-Identifier: MIT
# Writes version_bytes.h into the build tree: the build identification, scrambled. Byte i of the text is XORed with
# (0x5A + 7 i) mod 256, so that no string search finds it by accident.
function(kova_write_version header compiler_flags)
    find_package(Git QUIET)
    set(commit "unknown")
    if(Git_FOUND)
        execute_process(COMMAND ${GIT_EXECUTABLE} describe --always --dirty
            WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE described
            OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
        if(NOT failed)
            set(commit "${described}")
        endif()
    endif()
    set(text "TextDisplay ${PROJECT_VERSION} commit ${commit} for ${CMAKE_SYSTEM_PROCESSOR}")
    string(APPEND text " by ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION} ${compiler_flags}")
    string(HEX "${text}" hex)
    string(REGEX MATCHALL ".." pairs "${hex}")
    set(key 90)
    set(bytes "")
    foreach(pair IN LISTS pairs)
        math(EXPR byte "0x${pair} ^ ${key}")
        list(APPEND bytes ${byte})
        math(EXPR key "(${key} + 7) % 256")
    endforeach()
    list(JOIN bytes "," joined)
    file(CONFIGURE OUTPUT ${header} CONTENT "#define TEXTDISP_VERSION_BYTES \"${joined}\"\n" @ONLY)
endfunction()
