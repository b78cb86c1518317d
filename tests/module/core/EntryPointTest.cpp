#include <gtest/gtest.h>

#include <vector>

#include "tests/module/core/windows/windows.h"

struct WindowsModule {
    int threadNotificationsTurnedOff = 0;
};

BOOL DisableThreadLibraryCalls(HINSTANCE module) {
    ++module->threadNotificationsTurnedOff;
    return TRUE;
}

namespace {

TEST(EntryPoint, TurnsOffThreadNotificationsWhenTheProcessAttaches) {
    WindowsModule module;
    EXPECT_EQ(DllMain(&module, DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(module.threadNotificationsTurnedOff, 1);
}

TEST(EntryPoint, DoesNothingElse) {
    WindowsModule module;
    for (const DWORD reason : {0UL, 2UL, 3UL})
        EXPECT_EQ(DllMain(&module, reason, nullptr), TRUE);
    EXPECT_EQ(module.threadNotificationsTurnedOff, 0);
}

}  // namespace
