#pragma once

#include <csignal>

#include <spawn.h>

namespace Quillory {

// How a program is started: with no signal blocked or ignored, whatever this process does with them.
class SpawnSettings {
public:
    // Further flags of posix_spawn.
    explicit SpawnSettings(short flags = 0)
    {
        posix_spawnattr_init(&attributes);
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setflags(
            &attributes, static_cast<short>(flags | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
        posix_spawn_file_actions_init(&actions);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(SpawnSettings const&) = delete;
    SpawnSettings& operator=(SpawnSettings const&) = delete;

    posix_spawnattr_t attributes {};
    posix_spawn_file_actions_t actions {};
};

}
