// The satellite DLL carries resources only (satellite.rc); it is loaded as data.
