#pragma once
// Pictures as top-down 32-bit pixels (blue, green, red, unused): taken from
// the screen, written to and read from PNG files through the system's
// imaging component (COM initialised by the caller).
#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

// What the screen shows in r, as the window system has drawn it.
bool CaptureScreen(const RECT& r, std::vector<uint32_t>& bits, int& width, int& height);

// Writes width x height pixels as a PNG.
bool WritePng(const std::string& path, const uint32_t* bits, int width, int height);

// Reads a picture file; false when it is missing or cannot be read.
bool ReadPng(const std::string& path, std::vector<uint32_t>& bits, int& width, int& height);
