#pragma once

/// Marks what the host system library shows to other libraries.
#define OSTRELSYS_API __attribute__((visibility("default")))
