// The tables as a plug-in has them: tests call the host through these.
#include "host/view/application.h"
#include "tavrel/Desktop.h"
#include "tavrel/Kernel.h"

tavrel::HFT gKernelHFT = host::kernelTable();
tavrel::HFT gDesktopHFT = host::desktopTable();
