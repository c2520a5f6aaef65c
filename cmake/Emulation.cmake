# SPDX-License-Identifier: MIT
# How tests, scripts and shells start programs of this build: directly, or for emulation through wrapper scripts, which
# are in a separate folder next to the programs.
set(KOVA_EMULATED "")
if(CMAKE_CROSSCOMPILING_EMULATOR)
    set(KOVA_EMULATED /emulated)
endif()

# Sets a variable to the command that starts the target's program.
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
