// SPDX-License-Identifier: MIT
// The build's identification, in a section that is never loaded. Each byte is the text's, exclusive-or'ed
// with the running key that cmake/Version.cmake states; scripts/read-version prints it as plain text.
#include "version_bytes.h"

__asm__(".pushsection VERSION,\"\",%progbits\n"
        ".byte " TEXTDISP_VERSION_BYTES "\n"
        ".popsection\n");

// The linker drops a file of which it needs nothing, and with it that section. It is told that it needs this.
extern "C" {
extern const char TextDispVersionAnchor;
const char TextDispVersionAnchor = 0;
}
