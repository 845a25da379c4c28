// The layer tools' one persistent setting store: the two switches of layer
// isolation, kept for the module's lifetime and saved as DWORD values in the
// user profile, in the key "LayerTools" under the current profile's
// "UserInterfaceSettings". The key is never created here: without it nothing
// is written.
#pragma once

class LayerToolsUtils {
public:
    // Isolation locks (and fades) the other layers instead of turning them off.
    static bool bLockFlag;
    // Isolation in a layout viewport freezes the other layers in that viewport only.
    static bool bFreezeFlag;

    // Stores both flags ("LockFlag", "FreezeFlag") in the existing profile key.
    static void WriteToProfile();
    // Loads each flag whose value can be read; the others keep their values.
    static void ReadFromProfile();

    LayerToolsUtils() = delete;
};
