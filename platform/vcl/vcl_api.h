#pragma once
// Export/import marker of the component framework package (vcl.dll).
#ifdef VCL_BUILD
#define VCL_API __declspec(dllexport)
#else
#define VCL_API __declspec(dllimport)
#endif
