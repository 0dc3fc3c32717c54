#pragma once

/// Marks what the shared library offers. Everything else is hidden.
#define PLR_EXPORT __attribute__((visibility("default")))
