#pragma once
// Export/import marker of the base package (ostrel.dll).
#ifdef OSTREL_BUILD
#define OSTREL_API __declspec(dllexport)
#else
#define OSTREL_API __declspec(dllimport)
#endif
