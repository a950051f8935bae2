#pragma once

// Marks what the runtime core shows to other libraries; all else stays hidden.
#define ORTCORE_API __attribute__((visibility("default")))
