#pragma once
// Export/import marker of the library package (velkin.dll).
#ifdef VELKIN_BUILD
#define VELKIN_API __declspec(dllexport)
#else
#define VELKIN_API __declspec(dllimport)
#endif
