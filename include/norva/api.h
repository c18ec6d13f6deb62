#pragma once

/// Marks what the shared library exports; everything else stays hidden.
#if defined(NORVA_STATIC)
#define NORVA_API
#else
#define NORVA_API [[gnu::visibility("default")]]
#endif
