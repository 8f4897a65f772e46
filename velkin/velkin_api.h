#pragma once
/// \file
/// Export and import marker of the library package.
#ifdef VELKIN_BUILD
#define VELKIN_API __declspec(dllexport)
#else
#define VELKIN_API __declspec(dllimport)
#endif
