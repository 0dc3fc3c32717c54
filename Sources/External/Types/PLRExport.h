#pragma once

/// Marks what the shared library exports. Everything else is hidden.
#define PLR_EXPORT __attribute__((visibility("default")))
