#pragma once
/// \file
/// Export and import marker of the base package.
#ifdef OSTREL_BUILD
#define OSTREL_API __declspec(dllexport)
#else
#define OSTREL_API __declspec(dllimport)
#endif
