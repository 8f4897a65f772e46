#pragma once
// Export/import marker of the second platform package (pellum.dll).
#ifdef PELLUM_BUILD
#define PELLUM_API __declspec(dllexport)
#else
#define PELLUM_API __declspec(dllimport)
#endif
