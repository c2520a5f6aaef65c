# SPDX-License-Identifier: MIT
# How tests, scripts and shells start programs of this build: as they are, or under emulation by scripts in a folder of
# its own beside them, which hand them to the emulator.
set(KOVA_EMULATED "")
if(CMAKE_CROSSCOMPILING_EMULATOR)
    set(KOVA_EMULATED /emulated)
endif()

# Sets a variable to what starts the target's program.
function(kova_program variable target)
    set(program $<TARGET_FILE:${target}>)
    if(CMAKE_CROSSCOMPILING_EMULATOR)
        list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
        set(script ${CMAKE_CURRENT_BINARY_DIR}${KOVA_EMULATED}/${target})
        file(GENERATE OUTPUT ${script} CONTENT "#!/bin/sh\nexec ${emulator} '${program}' \"$@\"\n"
            FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
        set(program ${script})
    endif()
    set(${variable} ${program} PARENT_SCOPE)
endfunction()
