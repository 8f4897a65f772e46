#include "platform/vcl/graphics_color.h"

#include <windows.h>

namespace Graphics {

int ColorToRGB(TColor color) {
  if (color < 0) return static_cast<int>(GetSysColor(color & 0xFF));
  return color;
}

}  // namespace Graphics
