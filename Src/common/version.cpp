// SPDX-License-Identifier: MIT
// The build's identification, in a section that is never loaded. Each byte is the text's, exclusive-or'ed
// with the running key that cmake/Version.cmake states; scripts/read-version prints it as plain text.
#include "version_bytes.h"

__asm__(".pushsection VERSION,\"\",%progbits\n"
        ".byte " TEXTDISP_VERSION_BYTES "\n"
        ".popsection\n");
