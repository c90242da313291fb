#pragma once

/// How long a test waits for something that must come, in ms: long enough for a sanitizer's build
/// on a busy machine; what is there sooner is seen sooner.
constexpr int patienceMs = 60000;
