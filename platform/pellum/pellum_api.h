#pragma once
/// \file
/// Export and import marker of the helper package.
#ifdef PELLUM_BUILD
#define PELLUM_API __declspec(dllexport)
#else
#define PELLUM_API __declspec(dllimport)
#endif
