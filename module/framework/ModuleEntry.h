// The module's entry point and lifecycle: what the host calls (kcrxEntryPoint,
// DllMain) and the registration and unregistration it runs.
#pragma once

#include "kcrx.h"

extern "C" {
__attribute__((visibility("default"))) KcRx::AppRetCode kcrxEntryPoint(KcRx::AppMsgCode message, void* packet);
__attribute__((visibility("default"))) int DllMain(void* moduleHandle, unsigned long reason, void* reserved);
}

// Registers the service and every command (resource scope of the module in force).
void initApp();
// Removes the service (when registered) and the whole command group.
void unloadApp();
