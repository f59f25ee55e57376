#pragma once

// Registers the images, style sheets and translations compiled into the GUI library.
// Resources in a static library are dropped by the linker unless something calls this.
void initGuiResources();
