#pragma once
/// \file
/// Export and import marker of the framework package.
#ifdef VCL_BUILD
#define VCL_API __declspec(dllexport)
#else
#define VCL_API __declspec(dllimport)
#endif
