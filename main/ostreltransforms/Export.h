#pragma once

// What the plug-in shows to its host; everything else stays hidden.
#define OSTREL_API __attribute__((visibility("default")))
